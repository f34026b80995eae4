#include "gen/Clusters.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace {

// Where land lies in the cluster, row by row, as 16 * row + column.
std::vector<int> LandOf(Vec2i cluster) {
    ClusterRecord record;
    GenerateCluster(ClusterKey(cluster), record);
    std::vector<int> land;
    for (std::int32_t i = 0; i < kClusterCells * kClusterCells; ++i) {
        const Vec2i place = {i % kClusterCells, i / kClusterCells};
        const auto at = record.cells.find(CellKey(cluster * kClusterCells + place).id);
        if (at == record.cells.end()) {
            ADD_FAILURE() << place.x << ", " << place.y;
        } else if (at->second == 1) {
            land.push_back(i);
        }
    }
    return land;
}

TEST(GenerateCluster, MakesTheKnownIslands) {
    EXPECT_EQ(LandOf({0, 0}), (std::vector{0x1a, 0x1d, 0x36, 0x38, 0x45, 0x54, 0x77, 0x7b, 0x82,
                                           0x99, 0xb1, 0xe6, 0xf7, 0xfb}));
    EXPECT_EQ(LandOf({1, 0}), (std::vector{0x0a, 0x3c, 0x53, 0x60, 0x83, 0xd9}));
    EXPECT_EQ(LandOf({1, 1}),
              (std::vector{0x12, 0x26, 0x2a, 0x36, 0x43, 0x4c, 0x4e, 0x50, 0x78, 0x8b, 0xed}));
}

// The flags follow from the id, the cells' ids from x and y.
TEST(GenerateCluster, RewritesARecordCompletely) {
    ClusterRecord fresh;
    GenerateCluster({5, 9, 77}, fresh);
    ClusterRecord used;
    used.cells[-12345] = 1;
    GenerateCluster({-3, 1, 4}, used);
    GenerateCluster({5, 9, 77}, used);
    EXPECT_EQ(used.cells, fresh.cells);
    EXPECT_EQ(used.key.id, 77);
    EXPECT_EQ(fresh.cells.begin()->first, 9 * 16 * kCellIdFactor + 5 * 16);

    ClusterRecord elsewhere;
    GenerateCluster({0, 0, 77}, elsewhere);
    EXPECT_TRUE(std::equal(fresh.cells.begin(), fresh.cells.end(), elsewhere.cells.begin(),
                           elsewhere.cells.end(),
                           [](const auto& a, const auto& b) { return a.second == b.second; }));
}

// Ids wrap within the clusters of row 127 and its like; the map must ascend all the same.
TEST(GenerateCluster, KeepsIdsAscendingWhereTheyWrap) {
    int wrapped = 0;
    for (const std::int32_t y : {-2147483647 - 1, -129, -128, -1, 0, 127, 128, 2147483647}) {
        for (const std::int32_t x : {-2147483647 - 1, -65536, -1, 0, 127, 65535, 2147483647}) {
            ClusterRecord record;
            GenerateCluster(ClusterKey({x, y}), record);
            ASSERT_EQ(record.cells.size(), 256u);
            EXPECT_TRUE(std::is_sorted(record.cells.begin(), record.cells.end()));
            const std::int32_t firstMade = CellKey(Vec2i{x, y} * kClusterCells).id;
            wrapped += record.cells.begin()->first != firstMade ? 1 : 0;
            EXPECT_NE(record.cells.find(firstMade), record.cells.end());
        }
    }
    EXPECT_GT(wrapped, 0);
}

} // namespace
