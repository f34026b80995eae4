#include "gen/GenerateCluster.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

using Places = std::vector<std::pair<std::int32_t, std::int32_t>>; // column, row

// The land cells, by where they lie in the cluster.
Places LandOf(Vec2i cluster) {
    ClusterRecord record;
    GenerateCluster(ClusterKey(cluster), record);
    Places land;
    for (std::int32_t row = 0; row < kClusterCells; ++row) {
        for (std::int32_t col = 0; col < kClusterCells; ++col) {
            const auto at =
                record.cells.find(CellKey(cluster * kClusterCells + Vec2i{col, row}).id);
            if (at == record.cells.end()) {
                ADD_FAILURE() << col << ", " << row;
            } else if (at->second == 1) {
                land.emplace_back(col, row);
            }
        }
    }
    return land;
}

TEST(GenerateCluster, MakesTheKnownIslands) {
    EXPECT_EQ(LandOf({0, 0}), (Places{{10, 1},
                                      {13, 1},
                                      {6, 3},
                                      {8, 3},
                                      {5, 4},
                                      {4, 5},
                                      {7, 7},
                                      {11, 7},
                                      {2, 8},
                                      {9, 9},
                                      {1, 11},
                                      {6, 14},
                                      {7, 15},
                                      {11, 15}}));
    EXPECT_EQ(LandOf({1, 0}), (Places{{10, 0}, {12, 3}, {3, 5}, {0, 6}, {3, 8}, {9, 13}}));
    EXPECT_EQ(LandOf({1, 1}), (Places{{2, 1},
                                      {6, 2},
                                      {10, 2},
                                      {6, 3},
                                      {3, 4},
                                      {12, 4},
                                      {14, 4},
                                      {0, 5},
                                      {8, 7},
                                      {11, 8},
                                      {13, 14}}));
}

TEST(GenerateCluster, AboutSixCellsInAHundredHoldLand) {
    std::size_t land = 0;
    for (std::int32_t x = 0; x < 1000; ++x) {
        land += LandOf({x, 3}).size();
    }
    EXPECT_NEAR(static_cast<double>(land) / 256000.0, 6.0 / 101.0, 0.002);
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

TEST(CellFlagMap, BehavesLikeAnOrderedMap) {
    CellFlagMap map;
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(map.find(3), map.end());
    map[5] = 1;
    map[-7] = 1;
    map[3] = 0;
    map[5] = 0;
    EXPECT_EQ(map.size(), 3u);
    EXPECT_EQ(map.begin()->first, -7);
    EXPECT_EQ(map.find(5)->second, 0);
    EXPECT_EQ(map.find(4), map.end());
    map.clear();
    EXPECT_TRUE(map.empty());
}

} // namespace
