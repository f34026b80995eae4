// A block of clusters, cell by cell.
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
        : arguments(theArguments), cellSide(arguments.scale), side(kClusterCells * cellSide),
          size(arguments.last - arguments.first + Vec2i{1, 1}),
          picture(size.x * side, size.y * side), progress("drawing", 2 * Count()) {}

    // Clusters touch no pixel of each other, so each is drawn by whoever generates it.
    void DrawLand() {
        ForEachIndex(Count(), arguments.threads, [this](std::size_t i) {
            const Vec2i place = PlaceOf(i);
            ClusterRecord record;
            GenerateCluster(ClusterKey(arguments.first + place), record);
            DrawCluster(record, place);
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

    // Of cluster i, counted row by row from the south-west, relative to the first.
    Vec2i PlaceOf(std::size_t i) const {
        const auto number = static_cast<std::int32_t>(i);
        return {number % size.x, number / size.x};
    }

    // The upper left pixel of a cell, relative to the lower left one of the picture.
    Vec2i CornerOf(Vec2i cell) const {
        return {cell.x * cellSide, picture.Height() - (cell.y + 1) * cellSide};
    }

    void DrawCluster(const ClusterRecord& record, Vec2i place) {
        const Vec2i corner = CornerOf(place * kClusterCells + Vec2i{0, kClusterCells - 1});
        const Vec2i first = record.key.Coords() * kClusterCells;
        const bool shaded = (record.key.x + record.key.y) % 2 != 0;
        picture.Fill({corner.x, corner.y, side, side}, shaded ? Tone::SeaShade : Tone::Sea);
        picture.Fill({corner.x, corner.y, side, 1}, Tone::Grid);
        picture.Fill({corner.x, corner.y, 1, side}, Tone::Grid);
        for (const auto& [id, flag] : record.cells) {
            if (flag == 1) {
                DrawIsland(CornerOf(CellOfId(id, first) - arguments.first * kClusterCells));
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
        const bool around = arguments.graph == Graph::Around && cluster == NearestToGraphCell();
        const Block block(around ? arguments.graphCell / kClusterCells : cluster);
        ClusterData data{block.Middle(), {}};
        if (around) {
            GenerateCluster(ClusterKey(cluster), data.record);
        }
        if (around || arguments.graph == Graph::Whole) {
            data.neighbors = block.Neighbors();
        } else if (arguments.graph == Graph::Middle) {
            for (const auto& [cell, list] : block.Neighbors()) {
                if (data.record.cells.find(cell.id) != data.record.cells.end()) {
                    data.neighbors[cell] = list;
                }
            }
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
        if (from.x < 0 || to.x < 0) { // west of the world a graph has cells, but none is seen
            return;
        }
        const Vec2i first = arguments.first * kClusterCells;
        const Vec2i middle{cellSide / 2, cellSide / 2};
        picture.GraphLine(CornerOf(from - first) + middle, CornerOf(to - first) + middle,
                          static_cast<float>(cellSide) / 8.0f);
    }

    const Arguments& arguments;
    std::int32_t cellSide; // pixels
    std::int32_t side;     // of a cluster, pixels
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
