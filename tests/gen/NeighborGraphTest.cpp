#include "gen/Clusters.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "WorldDigest.h"
#include "gen/ErrorCapture.h"

namespace {

using Ids = std::vector<std::int32_t>;

ClusterRecord RecordWith(Vec2i cluster, std::initializer_list<Vec2i> land) {
    ClusterRecord record;
    record.key = ClusterKey(cluster);
    record.cells[CellKey(cluster * kClusterCells).id] = 0;
    for (const Vec2i cell : land) {
        record.cells[CellKey(cell).id] = 1;
    }
    return record;
}

CellNeighborMap Build(const std::vector<const ClusterRecord*>& records) {
    const ErrorDrop quiet;
    CellNeighborMap out;
    out[CellKey({1, 1})].push_back(CellKey({2, 2})); // must not survive
    BuildNeighborGraph(records.data(), static_cast<std::int32_t>(records.size()), out);
    return out;
}

Ids IdsOf(const std::vector<GridKey>& keys) {
    Ids ids;
    for (const GridKey& key : keys) {
        ids.push_back(key.id);
    }
    return ids;
}

TEST(NeighborGraph, NeedsThreeCellsOffALine) {
    const ClusterRecord none = RecordWith({0, 0}, {});
    const ClusterRecord two = RecordWith({0, 0}, {{3, 3}, {5, 9}});
    const ClusterRecord line = RecordWith({0, 0}, {{3, 3}, {5, 5}, {9, 9}, {6, 6}});
    EXPECT_TRUE(Build({&none}).empty());
    EXPECT_TRUE(Build({&two, nullptr, &none}).empty());
    EXPECT_TRUE(Build({&line}).empty());
    EXPECT_TRUE(Build({}).empty());
}

// The first cell is the triangulation's first point, and the seed's third point is the far one.
TEST(NeighborGraph, LinksATriangleInOrderOfDiscovery) {
    const std::int32_t first = CellKey({0, 0}).id;
    const std::int32_t far = CellKey({4, 0}).id;
    const std::int32_t near = CellKey({2, 3}).id;
    const ClusterRecord record = RecordWith({0, 0}, {{0, 0}, {4, 0}, {2, 3}});
    const CellNeighborMap map = Build({&record});
    ASSERT_EQ(map.size(), 3u);
    EXPECT_EQ(IdsOf(map.at({0, 0, first})), (Ids{near, far}));
    EXPECT_EQ(IdsOf(map.at({0, 0, near})), (Ids{first, far}));
    EXPECT_EQ(IdsOf(map.at({0, 0, far})), (Ids{near, first}));
}

// A record with a negative id, like one never generated, adds nothing.
TEST(NeighborGraph, SkipsNegativeClusters) {
    const ClusterRecord land = RecordWith({0, 0}, {{0, 0}, {4, 0}, {2, 3}});
    const ClusterRecord south = RecordWith({0, -1}, {{3, -3}, {9, -4}});
    ClusterRecord unset = RecordWith({0, 0}, {{7, 7}});
    unset.key = {};
    EXPECT_EQ(Build({&south, &land, &unset}).size(), 3u);
}

// Every neighbour is mutual, listed once, and never the cell itself; keys hold decoded coordinates.
void CheckMap(const CellNeighborMap& map) {
    for (const auto& [cell, list] : map) {
        const Vec2i place = DecodeCellId(cell.id);
        EXPECT_EQ((Vec2i{cell.x, cell.y}), place);
        EXPECT_GE(list.size(), 2u);
        std::set<std::int32_t> seen;
        for (const GridKey& other : list) {
            EXPECT_TRUE(seen.insert(other.id).second);
            EXPECT_NE(other.id, cell.id);
            ASSERT_EQ(map.count(other), 1u);
            const Ids back = IdsOf(map.at(other));
            EXPECT_EQ(std::count(back.begin(), back.end(), cell.id), 1);
        }
    }
}

TEST(NeighborGraph, LinksBothWaysOverTheWholeWorld) {
    const ErrorDrop quiet;
    for (std::int32_t i = 0; i < 150; ++i) {
        const CellNeighborMap map = NeighborsAround({i * 37 - 500, i % 40});
        CheckMap(map);
        ASSERT_FALSE(testing::Test::HasFailure()) << i;
    }
}

// The clusters west of column 0 pack their cells far to the east, one row lower.
TEST(NeighborGraph, CellsWestOfTheAxisDecodeFarToTheEast) {
    const ErrorDrop quiet;
    const CellNeighborMap map = NeighborsAround({0, 0});
    CheckMap(map);
    std::size_t east = 0;
    std::size_t home = 0;
    for (const auto& [cell, list] : map) {
        EXPECT_TRUE((cell.x >= 0 && cell.x < 32) || (cell.x >= kCellIdFactor - 16))
            << cell.x << ", " << cell.y;
        EXPECT_TRUE(cell.x < 32 ? cell.y >= 0 && cell.y < 32 : cell.y >= 15 && cell.y < 31);
        ++(cell.x < 32 ? home : east);
    }
    EXPECT_GT(east, 0u);
    EXPECT_GT(home, 20u);
}

// The same cluster twice gives each of its cells twice; equal cells count once.
TEST(NeighborGraph, BearsTheSameClusterTwice) {
    ClusterRecord record;
    GenerateCluster(ClusterKey({3, 4}), record);
    const CellNeighborMap once = Build({&record});
    const CellNeighborMap twice = Build({&record, &record});
    ASSERT_EQ(once.size(), twice.size());
    for (const auto& [cell, list] : once) {
        EXPECT_EQ(IdsOf(list), IdsOf(twice.at(cell)));
    }
}

} // namespace
