// A block of clusters, cell by cell.
#include "ClusterBlock.h"
#include "atlas/Parallel.h"
#include "atlas/Records.h"
#include "atlas/Scenes.h"
#include "gen/Clusters.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace {

// Pixels per cell from which shores and names find room.
constexpr std::int32_t kLeastDetailed = 6;

struct ClusterData {
    ClusterRecord record;
    CellNeighborMap neighbors; // those that are shown
};

class ClusterScene {
public:
    explicit ClusterScene(const Arguments& theArguments)
        : arguments(theArguments), cellSide(arguments.scale),
          size(arguments.last - arguments.first + Vec2i{1, 1}),
          picture(size.x * kClusterCells * cellSide, size.y * kClusterCells * cellSide),
          progress("drawing", 2 * Count()) {}

    // Clusters touch no pixel of each other, so each is drawn by whoever generates it.
    void DrawLand() {
        ForEachIndex(Count(), arguments.threads, [this](std::size_t i) {
            ClusterRecord record;
            GenerateCluster(ClusterKey(ClusterAt(i)), record);
            DrawCluster(record);
            progress.Add();
        });
    }

    void DrawGraph(DataFile& data) {
        std::vector<ClusterData> row(static_cast<std::size_t>(size.x));
        for (std::int32_t y = 0; y < size.y; ++y) {
            ForEachIndex(row.size(), arguments.threads, [&](std::size_t x) {
                row[x] = Generate(arguments.first + Vec2i{static_cast<std::int32_t>(x), y});
                progress.Add();
            });
            for (const ClusterData& cluster : row) {
                DrawLinks(cluster);
                data.Add(cluster.record, cluster.neighbors);
            }
        }
    }

    Picture Take() { return std::move(picture); }

private:
    std::size_t Count() const {
        return static_cast<std::size_t>(size.x) * static_cast<std::size_t>(size.y);
    }

    // Of cluster i, counted row by row from the south-west.
    Vec2i ClusterAt(std::size_t i) const {
        const auto number = static_cast<std::int32_t>(i);
        return arguments.first + Vec2i{number % size.x, number / size.x};
    }

    // The upper left pixel of a cell.
    Vec2i CornerOf(Vec2i cell) const {
        const Vec2i place = cell - arguments.first * kClusterCells;
        return {place.x * cellSide, picture.Height() - (place.y + 1) * cellSide};
    }

    void DrawCluster(const ClusterRecord& record) {
        const Vec2i first = record.key.Coords() * kClusterCells;
        const Vec2i last = LastCellOf(record.key.Coords());
        const Vec2i corner = CornerOf({first.x, last.y});
        const Vec2i extent = (last - first + Vec2i{1, 1}) * cellSide;
        const bool shaded = (record.key.x + record.key.y) % 2 != 0;
        picture.Fill({corner.x, corner.y, extent.x, extent.y}, shaded ? Tone::SeaShade : Tone::Sea);
        picture.Fill({corner.x, corner.y, extent.x, 1}, Tone::Grid);
        picture.Fill({corner.x, corner.y, 1, extent.y}, Tone::Grid);
        for (const auto& [id, flag] : record.cells) {
            const Vec2i cell = CellOfId(id, first);
            if (flag == 1 && IsInWorld(cell)) {
                DrawIsland(CornerOf(cell));
            }
        }
        if (cellSide < kLeastDetailed) {
            return;
        }
        const std::int32_t dot = cellSide / kLeastDetailed;
        const std::string name = std::to_string(record.key.x) + "," + std::to_string(record.key.y);
        picture.Text(corner + Vec2i{2 * dot + 1, 2 * dot + 1}, name, dot);
    }

    void DrawIsland(Vec2i corner) {
        const Area whole{corner.x, corner.y, cellSide, cellSide};
        picture.Fill(whole, Tone::Land);
        if (cellSide >= kLeastDetailed) {
            picture.Outline(whole, Tone::Shore);
        }
    }

    ClusterData Generate(Vec2i cluster) const {
        ClusterData data;
        GenerateCluster(ClusterKey(cluster), data.record);
        const bool isAround = arguments.graph == Graph::Around;
        const bool hasGraph =
            isAround ? cluster == NearestToGraphCell() : arguments.graph != Graph::None;
        if (hasGraph) {
            const Vec2i middle = isAround ? arguments.graphCell / kClusterCells : cluster;
            data.neighbors = ClusterBlock(middle).Neighbors();
        }
        if (arguments.graph == Graph::Middle) {
            std::erase_if(data.neighbors, [&data](const auto& entry) {
                return !data.record.cells.contains(entry.first.id);
            });
        }
        return data;
    }

    // The cluster of the picture that bears the graph around a cell, which may be a neighbour's.
    Vec2i NearestToGraphCell() const {
        const Vec2i cluster = arguments.graphCell / kClusterCells;
        return {std::clamp(cluster.x, arguments.first.x, arguments.last.x),
                std::clamp(cluster.y, arguments.first.y, arguments.last.y)};
    }

    void DrawLinks(const ClusterData& cluster) {
        const Vec2i near = cluster.record.key.Coords() * kClusterCells;
        for (const auto& [cell, list] : cluster.neighbors) {
            for (const GridKey& neighbor : list) {
                DrawLink(CellOfId(cell.id, near), CellOfId(neighbor.id, near));
            }
        }
    }

    void DrawLink(Vec2i from, Vec2i to) {
        const Vec2i middle{cellSide / 2, cellSide / 2};
        if (IsLinkSeen(from, to)) {
            picture.GraphLine(CornerOf(from) + middle, CornerOf(to) + middle,
                              static_cast<float>(cellSide) / 8.0f);
        }
    }

    const Arguments& arguments;
    std::int32_t cellSide; // pixels
    Vec2i size;            // clusters
    Picture picture;
    Progress progress; // a cluster is drawn in two halves, its land and its graph
};

} // namespace

Picture DrawClusters(const Arguments& arguments, DataFile& data) {
    ClusterScene scene(arguments);
    scene.DrawLand();
    scene.DrawGraph(data);
    return scene.Take();
}
