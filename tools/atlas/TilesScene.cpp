// A block of clusters as the pictures of a map that is dragged and zoomed.
#include "atlas/OutputFile.h"
#include "atlas/Parallel.h"
#include "atlas/PngFile.h"
#include "atlas/Scenes.h"
#include "atlas/System.h"
#include "atlas/Tiles.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <system_error>

namespace {

// The pictures of one zoom.
class ZoomLevel {
public:
    ZoomLevel(const Arguments& theArguments, std::int32_t theZoom)
        : arguments(theArguments), zoom(theZoom), tiles(TilesOf(arguments, zoom)) {
        layers.links = layers.clusters = layers.grid = layers.names = true;
        layers.overlays = arguments.overlays;
    }

    void Write() const {
        const Vec2i size = tiles.last - tiles.first + Vec2i{1, 1};
        for (std::int32_t x = tiles.first.x; x <= tiles.last.x; ++x) {
            MakeFolder(FolderOf(x));
        }
        const auto count = static_cast<std::size_t>(size.x) * static_cast<std::size_t>(size.y);
        Progress progress("zoom " + std::to_string(zoom), count);
        ForEachIndex(count, arguments.threads, [&](std::size_t i) {
            const auto number = static_cast<std::int32_t>(i);
            WriteOne({zoom, tiles.first.x + number % size.x, tiles.first.y + number / size.x});
            progress.Add();
        });
    }

private:
    std::string FolderOf(std::int32_t column) const {
        return arguments.output + '/' + std::to_string(zoom) + '/' + std::to_string(column) + '/';
    }

    static void MakeFolder(const std::string& folder) {
        std::error_code error;
        std::filesystem::create_directories(PathOf(folder), error);
        if (error) {
            throw std::system_error(error, "cannot write " + folder);
        }
    }

    void WriteOne(const PicturePlace& place) const {
        thread_local TilePainter painter; // keeps what the next picture shows, too
        OutputFile file(FolderOf(place.column) + std::to_string(place.row) + ".png");
        WritePng(painter.Draw(place, layers), file);
        file.Close();
        file.PutInPlace();
    }

    const Arguments& arguments;
    std::int32_t zoom;
    TileRange tiles;
    Layers layers;
};

} // namespace

void WriteTiles(const Arguments& arguments) {
    for (std::int32_t zoom = arguments.zooms.x; zoom <= arguments.zooms.y; ++zoom) {
        ZoomLevel(arguments, zoom).Write();
    }
}
