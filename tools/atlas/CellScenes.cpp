// Cells tile by tile: one of them, or nine.
#include "atlas/CellView.h"
#include "atlas/Parallel.h"
#include "atlas/Records.h"
#include "atlas/Scenes.h"
#include "atlas/TiledMap.h"

#include <array>
#include <cstddef>
#include <string>

namespace {

constexpr std::int32_t kTourSide = 3; // cells

void DrawOne(const Cell& cell, const CellView& view, const Overlays& overlays) {
    if (cell.dungeon == nullptr) {
        view.Fill(IsInWorld(cell.key.Coords()) ? Tone::Sea : Tone::Void);
        return;
    }
    view.DrawTiles(*cell.dungeon);
    view.DrawOverlays(*cell.dungeon, overlays);
}

// Nine cells around one, numbered row by row from the south-west.
class Tour {
public:
    Tour(const Arguments& theArguments, Picture& thePicture)
        : arguments(theArguments), picture(thePicture), side(kCellTiles * arguments.scale) {}

    void DrawCells(std::array<Cell, 9>& cells) {
        const Block block(arguments.first / kClusterCells);
        Progress progress("drawing", cells.size());
        ForEachIndex(cells.size(), arguments.threads, [&](std::size_t i) {
            cells[i] = GenerateCell(arguments.first + OffsetOf(i), block);
            DrawOne(cells[i], {picture, CornerOf(OffsetOf(i)), side}, arguments.overlays);
            progress.Add();
        });
    }

    void DrawOver(const std::array<Cell, 9>& cells) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const Vec2i corner = CornerOf(OffsetOf(i));
            const Cell& cell = cells[i];
            picture.Outline({corner.x, corner.y, side, side}, Tone::Grid);
            if (IsInWorld(cell.key.Coords())) {
                const std::string name =
                    std::to_string(cell.key.x) + "," + std::to_string(cell.key.y);
                picture.Text(corner + Vec2i{8, 8}, name, 3);
            }
        }
        for (const Cell& cell : cells) {
            for (const GridKey& neighbor : cell.neighbors) {
                DrawLink(cell.key.Coords(), CellOfId(neighbor.id, cell.key.Coords()));
            }
        }
    }

private:
    static Vec2i OffsetOf(std::size_t i) {
        const auto number = static_cast<std::int32_t>(i);
        return {number % kTourSide - 1, number / kTourSide - 1};
    }

    // The upper left corner of the cell at this offset from the middle one.
    Vec2i CornerOf(Vec2i offset) const { return {(offset.x + 1) * side, (1 - offset.y) * side}; }

    void DrawLink(Vec2i from, Vec2i to) {
        const Vec2i middle{side / 2, side / 2};
        if (IsLinkSeen(from, to)) {
            picture.GraphLine(CornerOf(from - arguments.first) + middle,
                              CornerOf(to - arguments.first) + middle, 2.5f);
        }
    }

    const Arguments& arguments;
    Picture& picture;
    std::int32_t side; // of a cell, in pixels
};

} // namespace

Picture DrawCell(const Arguments& arguments, DataFile& data, OutputFile* tiledMap) {
    const Cell cell = GenerateCell(arguments.first, Block(arguments.first / kClusterCells));
    const std::int32_t side = kCellTiles * arguments.scale;
    Picture picture(side, side);
    DrawOne(cell, {picture, {0, 0}, side}, arguments.overlays);
    data.Add(cell);
    if (tiledMap != nullptr) {
        WriteTiledMap(cell, *tiledMap);
    }
    return picture;
}

Picture DrawTour(const Arguments& arguments, DataFile& data) {
    const std::int32_t side = kTourSide * kCellTiles * arguments.scale;
    Picture picture(side, side);
    std::array<Cell, 9> cells;
    Tour tour(arguments, picture);
    tour.DrawCells(cells);
    tour.DrawOver(cells);
    for (const Cell& cell : cells) {
        if (IsInWorld(cell.key.Coords())) {
            data.Add(cell);
        }
    }
    return picture;
}
