#include "gen/GridKey.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

Vec2i Coordinates(const GridKey& key) {
    return {key.x, key.y};
}

} // namespace

TEST(GridKeyTest, PositionsBelongToCellsByTruncation) {
    EXPECT_EQ(Coordinates(CellKeyAt({12288, 24576})), (Vec2i{1, 2}));
    EXPECT_EQ(Coordinates(CellKeyAt({-1, -12287})), (Vec2i{0, 0})) << "no cell of its own";
    EXPECT_EQ(Coordinates(CellKeyAt({-12288, -24577})), (Vec2i{-1, -2}));
    EXPECT_EQ(Coordinates(CellKeyAt({kHighest, kLowest})), (Vec2i{174762, -174762}));
    EXPECT_EQ(Coordinates(ClusterKeyOfCell({15, 16})), (Vec2i{0, 1}));
    EXPECT_EQ(Coordinates(ClusterKeyOfCell({-15, -16})), (Vec2i{0, -1}));
    EXPECT_EQ(CellOrigin({-2, 3}), (Vec2i{-24576, 36864}));
}

TEST(GridKeyTest, PacksIdsInWrappingArithmetic) {
    EXPECT_EQ(CellKey({3, 2}).id, 2 * 1048560 + 3);
    EXPECT_EQ(ClusterKey({1, 1}).id, 65536);
    // 4096 rows of cells fill the 32 bits.
    EXPECT_EQ(CellKey({0, 2048}).id, 2147450880);
    EXPECT_EQ(CellKey({32768, 2048}).id, kLowest);
    EXPECT_EQ(CellKey({174762, 174762}).id, -1434976246);
    EXPECT_EQ(GridKey{}.id, -666);
}

TEST(GridKeyTest, OrdersByTheSignedIdAlone) {
    EXPECT_LT(ClusterKey({5, -1}), ClusterKey({0, 0}));
    EXPECT_LT(CellKey({32768, 2048}), CellKey({0, 0})) << "a wrapped id is negative";
    const GridKey a{1, 2, 7};
    const GridKey b{8, 9, 7};
    EXPECT_FALSE(a < b);
    EXPECT_FALSE(b < a);
}

TEST(GridKeyTest, DecodesByTruncation) {
    for (const Vec2i c : {Vec2i{0, 0}, {1, 1}, {-1, 0}, {-1, -1}, {65534, 3}, {-65534, -3}}) {
        EXPECT_EQ(DecodeClusterId(ClusterKey(c).id), c);
    }
    for (const Vec2i c : {Vec2i{1, 2}, {-1, 0}, {-3, -2}, {1048559, 2047}, {-1048559, -2047}}) {
        EXPECT_EQ(DecodeCellId(CellKey(c).id), c);
    }
    // Beyond the packing range an id names other coordinates.
    EXPECT_EQ(DecodeClusterId(ClusterKey({-1, 1}).id), (Vec2i{65534, 0}));
    EXPECT_EQ(DecodeCellId(CellKey({1, -1}).id), (Vec2i{-1048559, 0}));
    EXPECT_EQ(DecodeCellId(kLowest), (Vec2i{-32768, -2048}));
}
