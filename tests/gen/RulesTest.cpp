// What the rules fix for the generator's small parts: random numbers, ids, painting.
#include "gen/GEN_DungeonGenerator.h"
#include "gen/Random.h"
#include "support/Limits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

TEST(RulesTest, DrawsNoMoreOutputsThanItNeeds) {
    constexpr std::uint32_t top = 0xffffffffu;
    struct Draw {
        std::int32_t lo, hi;
        std::vector<std::uint32_t> outputs;
        std::int32_t expected;
    };
    const Draw draws[] = {
        {7, 7, {}, 7}, // one number takes no draw
        {kLow, kHigh, {0x80000000u}, 0},
        {0, 3, {top}, 3}, // 4 divides 2^32: no output is drawn again
        // 2^32 = 101 * 42524428 + 68: the 68 largest outputs are drawn again.
        {0, 100, {top, 4294967228u, 4294967227u}, 100},
        {-3, 97, {5u}, 2},
        {kLow, 0, {0x80000001u, 0x80000000u}, 0},
    };
    for (const Draw& draw : draws) {
        std::size_t used = 0;
        const auto engine = [&] { return draw.outputs.at(used++); };
        EXPECT_EQ(UniformInt(engine, draw.lo, draw.hi), draw.expected) << draw.lo;
        EXPECT_EQ(used, draw.outputs.size()) << draw.lo << ", " << draw.hi;
    }
}

TEST(RulesTest, KeysWrapAndDecodingTruncates) {
    static_assert(CellKeyAt({-1, -12287}).id == 0 && CellKeyAt({-12288, 24576}).id == 2097119);
    static_assert(ClusterKeyOfCell({-15, 16}).id == 65535 && ClusterKey({1, 1}).id == 65536);
    static_assert(CellKey({32768, 2048}).id == kLow && CellKey({174762, 174762}).id == -1434976246);
    static_assert(GridKey{}.id == -666 && CellOrigin({-2, 3}) == Vec2i{-24576, 36864});
    static_assert(CellKey({32768, 2048}) < CellKey({0, 0}), "a wrapped id is negative");
    static_assert(!(GridKey{1, 2, 7} < GridKey{8, 9, 7}), "the id alone counts");
    static_assert(DecodeCellId(CellKey({1, -1}).id) == Vec2i{-1048559, 0});
    static_assert(DecodeClusterId(ClusterKey({-1, 1}).id) == Vec2i{65534, 0});
}

TEST(RulesTest, PaintingIsCutToTheCell) {
    const auto record = std::make_unique<DungeonRecord>();
    record->hallways.resize(2);
    record->hallways[0].minCorner = {510, -3};
    record->hallways[0].maxCorner = {600, 1};
    record->hallways[1].minCorner = {-5, 511};
    record->hallways[1].maxCorner = {1, 700};
    GEN_DungeonGenerator::PaintTiles(*record);
    EXPECT_EQ(std::count(record->tiles.begin(), record->tiles.end(), kTileHallway), 3);
    EXPECT_EQ(record->tiles[511] + record->tiles[511 * 512], 2 * kTileHallway);
}
