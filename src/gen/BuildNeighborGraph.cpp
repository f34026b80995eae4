#include "gen/BuildNeighborGraph.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "gen/GridKey.h"
#include "gen/Triangulate.h"

namespace {

struct LandCells {
    std::vector<GridKey> keys;
    std::vector<DelaunayPoint> points; // ids are indices of keys
};

void CollectLand(const ClusterRecord& record, LandCells& land) {
    for (const auto& [id, flag] : record.cells) {
        if (flag != 1) {
            continue;
        }
        const Vec2i cell = DecodeCellId(id);
        DelaunayPoint point;
        point.id = static_cast<std::int32_t>(land.keys.size());
        point.x = static_cast<float>(cell.x);
        point.y = static_cast<float>(cell.y);
        land.points.push_back(point);
        land.keys.push_back({cell.x, cell.y, id});
    }
}

void AddOnce(std::vector<GridKey>& list, const GridKey& key) {
    const auto same = [&key](const GridKey& other) { return other.id == key.id; };
    if (std::none_of(list.begin(), list.end(), same)) {
        list.push_back(key);
    }
}

// Finds each cell's entry once; the map's nodes stay where they are.
class NeighborLists {
public:
    NeighborLists(const std::vector<GridKey>& cellKeys, CellNeighborMap& map)
        : keys(cellKeys), out(map), lists(cellKeys.size(), nullptr) {}

    /// Joins a cell to two others, in this order.
    void Join(std::int32_t cell, std::int32_t first, std::int32_t second) {
        std::vector<GridKey>*& list = lists[static_cast<std::size_t>(cell)];
        if (list == nullptr) {
            list = &out[keys[static_cast<std::size_t>(cell)]];
            list->reserve(kUsualNeighbors);
        }
        AddOnce(*list, keys[static_cast<std::size_t>(first)]);
        AddOnce(*list, keys[static_cast<std::size_t>(second)]);
    }

private:
    static constexpr std::size_t kUsualNeighbors = 8;

    const std::vector<GridKey>& keys;
    CellNeighborMap& out;
    std::vector<std::vector<GridKey>*> lists;
};

} // namespace

void BuildNeighborGraph(const ClusterRecord* const* records, std::int32_t count,
                        CellNeighborMap& out) {
    out.clear();
    LandCells land;
    for (std::int32_t i = 0; i < count; ++i) {
        const ClusterRecord* record = records[i];
        if (record != nullptr && record->key.id >= 0) {
            CollectLand(*record, land);
        }
    }
    std::vector<DelaunayTriangle> triangles;
    Triangulate(land.points, triangles);
    NeighborLists lists(land.keys, out);
    for (const DelaunayTriangle& triangle : triangles) {
        lists.Join(triangle.a, triangle.b, triangle.c);
        lists.Join(triangle.b, triangle.a, triangle.c);
        lists.Join(triangle.c, triangle.b, triangle.a);
    }
}
