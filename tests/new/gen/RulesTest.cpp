// What the rules fix for the generator's small parts: random numbers, ids, corridors and tiles.
#include <limits>
#include <memory>
#include <numeric>
#include <random>

#include <gtest/gtest.h>

#include "gen/GEN_DungeonGenerator.h"
#include "gen/Random.h"
#include "support/Holds.h"

namespace {

constexpr std::int32_t kLow = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHigh = std::numeric_limits<std::int32_t>::max();

DungeonRoom MakeRoom(std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h) {
    return {x, y, w, h, {x + w / 2, y - h / 2}, {x, y - h}, {x + w, y}, {}};
}

using Rectangles = std::vector<std::array<std::int32_t, 4>>; // left, bottom, width, height

Rectangles HallwaysBetween(const DungeonRoom& a, const DungeonRoom& b) {
    const auto record = std::make_unique<DungeonRecord>();
    record->rooms = {a, b};
    record->hallwayEdges = {{0, 1, 0}};
    GEN_DungeonGenerator::BuildHallways(*record);
    Rectangles rectangles;
    for (const DungeonRoom& hallway : record->hallways) {
        EXPECT_EQ(hallway.maxCorner, (hallway.minCorner + Vec2i{hallway.w, hallway.h}));
        rectangles.push_back({hallway.minCorner.x, hallway.minCorner.y, hallway.w, hallway.h});
    }
    return rectangles;
}

} // namespace

TEST(RulesTest, NumbersAreDrawnWithTheLeastOutputs) {
    constexpr std::uint32_t top = 0xffffffffu;
    struct Draw {
        std::int32_t lo, hi;
        std::vector<std::uint32_t> outputs;
        std::int32_t expected;
    };
    const Draw draws[] = {
        {7, 7, {}, 7}, // one number takes no draw
        {kLow, kHigh, {top}, kHigh},
        {kLow, kHigh, {0x80000000u}, 0},
        // 2^32 = 101 * 42524428 + 68: the 68 largest outputs are drawn again.
        {0, 100, {top, 4294967228u, 4294967227u}, 100},
        {-3, 97, {5u}, 2},
        {0, 511, {top}, 511}, // a power of two never redraws
        {kLow, 0, {0x80000001u, 0x80000000u}, 0},
    };
    for (const Draw& draw : draws) {
        std::size_t used = 0;
        const auto engine = [&] { return draw.outputs.at(used++); };
        EXPECT_EQ(UniformInt(engine, draw.lo, draw.hi), draw.expected) << draw.lo;
        EXPECT_EQ(used, draw.outputs.size()) << draw.lo << ", " << draw.hi;
    }
    Twister twister;
    twister.discard(9999);
    EXPECT_EQ(twister(), 4123659995u) << "the published generator";
    static_assert(Twister::default_seed == std::mt19937::default_seed);
}

TEST(RulesTest, KeysWrapAndDecodeByTruncation) {
    static_assert(CellKeyAt({-1, -12287}).id == 0 && CellKeyAt({-12288, 24576}).id == 2097119);
    static_assert(ClusterKeyOfCell({-15, 16}).id == 65535 && ClusterKey({1, 1}).id == 65536);
    static_assert(CellKey({32768, 2048}).id == kLow && CellKey({174762, 174762}).id == -1434976246);
    static_assert(GridKey{}.id == -666 && CellOrigin({-2, 3}) == Vec2i{-24576, 36864});
    static_assert(CellKey({32768, 2048}) < CellKey({0, 0}), "a wrapped id is negative");
    static_assert(!(GridKey{1, 2, 7} < GridKey{8, 9, 7}), "the id alone counts");
    static_assert(DecodeCellId(CellKey({1, -1}).id) == Vec2i{-1048559, 0});
    static_assert(DecodeCellId(kLow) == Vec2i{-32768, -2048});
    static_assert(DecodeClusterId(ClusterKey({-1, 1}).id) == Vec2i{65534, 0});
    static_assert(DecodeClusterId(ClusterKey({-1, -1}).id) == Vec2i{-1, -1});
}

TEST(RulesTest, HallwaysRunStraightWhereRoomsFaceEachOtherAndInAnLElsewhere) {
    const DungeonRoom upper = MakeRoom(100, 200, 20, 20);
    const DungeonRoom lower = MakeRoom(105, 150, 12, 12);
    EXPECT_EQ(HallwaysBetween(upper, lower), (Rectangles{{108, 150, 3, 30}}));
    EXPECT_EQ(HallwaysBetween(lower, upper), (Rectangles{{108, 150, 3, 30}}));
    const DungeonRoom left = MakeRoom(10, 120, 20, 20);
    const DungeonRoom right = MakeRoom(90, 118, 12, 12);
    EXPECT_EQ(HallwaysBetween(left, right), (Rectangles{{30, 109, 60, 3}}));
    const DungeonRoom low = MakeRoom(45, 55, 10, 10);
    const DungeonRoom high = MakeRoom(195, 305, 10, 10);
    EXPECT_EQ(HallwaysBetween(low, high), (Rectangles{{55, 48, 146, 3}, {198, 48, 3, 247}}));
    EXPECT_EQ(HallwaysBetween(high, low), (Rectangles{{48, 298, 147, 3}, {48, 55, 3, 246}}));
}

TEST(RulesTest, PaintingStaysWithinTheTilesAndRoomsCoverCorridors) {
    const auto record = std::make_unique<DungeonRecord>();
    const auto hallway = [](Vec2i from, Vec2i to) {
        return DungeonRoom{0, 0, to.x - from.x, to.y - from.y, {}, from, to, {}};
    };
    record->hallways = {hallway({10, 10}, {9, 13}),     hallway({50, 60}, {53, 40}),
                        hallway({-900, 100}, {3, 101}), hallway({509, 200}, {4000, 201}),
                        hallway({300, -40}, {301, 2}),  hallway({300, 511}, {301, 70000}),
                        hallway({400, 400}, {403, 410})}; // the last runs into a room
    record->rooms = {MakeRoom(399, 415, 10, 10), MakeRoom(400, 404, 9, 3)};
    record->mainRooms = {0};
    GEN_DungeonGenerator::PaintTiles(*record);
    EXPECT_EQ(std::accumulate(record->tiles.begin(), record->tiles.end(), 0),
              3 + 3 + 2 + 1 + 5 * 3 + 100 * 2);
    EXPECT_EQ(record->TileAt(402, 404), kTileHallway);
    EXPECT_EQ(record->TileAt(402, 405), kTileRoom);
}

TEST(RulesTest, ThreeExtraEdgesForEveryTenAndReversedOnesCountAsNew) {
    const auto record = std::make_unique<DungeonRecord>();
    record->rooms.resize(12);
    for (std::int32_t i = 0; i < 11; ++i) {
        record->hallwayEdges.push_back({i, i + 1, 1});
    }
    record->edges = {{0, 1, 1}, {1, 0, 1}, {3, 4, 1}, {5, 3, 1},
                     {5, 3, 1}, {8, 2, 1}, {9, 2, 1}, {9, 3, 1}};
    GEN_DungeonGenerator::AddExtraEdges(*record);
    std::string added;
    for (std::size_t i = 11; i < record->hallwayEdges.size(); ++i) {
        const DungeonEdge& edge = record->hallwayEdges[i];
        added += std::to_string(edge.a) + '-' + std::to_string(edge.b) + ' ';
    }
    EXPECT_EQ(added, "1-0 5-3 8-2 9-2 ");
}

TEST(RulesTest, OtherRoomSizesAreBorne) {
    const ErrorLines quiet;
    const auto record = std::make_unique<DungeonRecord>();
    for (const auto& [least, most] : {std::pair{1, 2}, {2, 4}, {3, 5}, {40, 400}, {0, 0}}) {
        GEN_DungeonGenerator generator;
        generator.minRoomSize = least;
        generator.maxRoomSize = most;
        generator.Generate(CellKey({1, 1}), 3, *record);
        EXPECT_LE(record->compassPoints.size(), record->mainRooms.size()) << most;
        for (const DungeonRoom& room : record->rooms) {
            EXPECT_TRUE(room.w >= least && room.maxCorner.x <= 511 && room.minCorner.y >= 0);
        }
    }
}
