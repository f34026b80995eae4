#include "gen/Clusters.h"

#include "gen/Random.h"
#include "gen/Triangulate.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {

constexpr std::size_t kUsualCellNeighbors = 8;
constexpr std::int32_t kLastLandDraw = 5; // of 0 to 100

void CollectLand(const ClusterRecord& record, std::vector<GridKey>& keys,
                 std::vector<DelaunayPoint>& points) {
    for (const auto& [id, flag] : record.cells) {
        if (flag == 1) {
            const Vec2i cell = DecodeCellId(id);
            const Vec2f place = ToVec2f(cell);
            const auto index = static_cast<std::int32_t>(keys.size());
            points.push_back({.id = index, .x = place.x, .y = place.y});
            keys.push_back({cell.x, cell.y, id});
        }
    }
}

void AddOnce(std::vector<GridKey>& list, const GridKey& key) {
    if (std::none_of(list.begin(), list.end(),
                     [&key](const GridKey& other) { return other.id == key.id; })) {
        list.push_back(key);
    }
}

} // namespace

void GenerateCluster(const GridKey& key, ClusterRecord& record) {
    record.key = key;
    record.cells.clear();
    Twister rng(static_cast<std::uint32_t>(key.id));
    const Vec2i corner = key.Coords() * kClusterCells;
    for (std::int32_t row = 0; row < kClusterCells; ++row) {
        for (std::int32_t col = 0; col < kClusterCells; ++col) {
            const std::int32_t id = CellKey(corner + Vec2i{col, row}).id;
            const std::int32_t land = UniformInt(rng, 0, 100) <= kLastLandDraw ? 1 : 0;
            // The ids ascend, but for one step where they may wrap.
            record.cells.emplace_hint(record.cells.end(), id, land);
        }
    }
}

void BuildNeighborGraph(const ClusterRecord* const* records, std::int32_t count,
                        CellNeighborMap& out) {
    out.clear();
    std::vector<GridKey> keys;
    std::vector<DelaunayPoint> points; // ids are indices of keys
    for (std::int32_t i = 0; i < count; ++i) {
        const ClusterRecord* const record = records[i];
        if (record != nullptr && record->key.id >= 0) {
            CollectLand(*record, keys, points);
        }
    }
    std::vector<DelaunayTriangle> triangles;
    Triangulate(points, triangles);
    std::vector<std::vector<GridKey>> neighbors(keys.size());
    ForEachCorner(triangles, [&](std::int32_t cell, std::int32_t first, std::int32_t second) {
        std::vector<GridKey>& list = neighbors[static_cast<std::size_t>(cell)];
        list.reserve(kUsualCellNeighbors);
        AddOnce(list, keys[static_cast<std::size_t>(first)]);
        AddOnce(list, keys[static_cast<std::size_t>(second)]);
    });
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (!neighbors[i].empty()) {
            out.emplace(keys[i], std::move(neighbors[i]));
        }
    }
}
