#include "gen/GEN_DungeonGenerator.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <numeric>
#include <set>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "WorldDigest.h"
#include "gen/ErrorCapture.h"

namespace {

// Cells of every quadrant and some whose seeds wrap.
GridKey SampleCell(std::int32_t i) {
    return CellKey({i * 7919 - 900000, i * 104729 - 3000000});
}

using Ends = std::pair<std::int32_t, std::int32_t>; // of an edge

const DungeonRoom& RoomOf(const DungeonRecord& record, std::int32_t id) {
    return record.rooms[static_cast<std::size_t>(id)];
}

bool Inside(Vec2i tile, const DungeonRoom& room) {
    return tile.x >= room.minCorner.x && tile.x < room.maxCorner.x && tile.y >= room.minCorner.y &&
           tile.y < room.maxCorner.y;
}

DungeonRoom MakeRoom(std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h) {
    return {x, y, w, h, {x + w / 2, y - h / 2}, {x, y - h}, {x + w, y}, {}};
}

bool OneTileApart(const DungeonRoom& a, const DungeonRoom& b) {
    return a.maxCorner.x < b.minCorner.x || b.maxCorner.x < a.minCorner.x ||
           a.maxCorner.y < b.minCorner.y || b.maxCorner.y < a.minCorner.y;
}

void CheckRooms(const DungeonRecord& record) {
    std::vector<std::int32_t> mainRooms;
    for (std::size_t i = 0; i < record.rooms.size(); ++i) {
        const DungeonRoom& room = record.rooms[i];
        EXPECT_TRUE(std::min(room.w, room.h) >= 3 && std::max(room.w, room.h) <= 25) << i;
        EXPECT_TRUE(room.x >= 0 && room.x + room.w <= 511) << i;
        EXPECT_TRUE(room.y - room.h >= 0 && room.y <= 511) << i;
        const DungeonRoom derived = MakeRoom(room.x, room.y, room.w, room.h);
        EXPECT_EQ(room.center, derived.center);
        EXPECT_EQ(room.minCorner, derived.minCorner);
        EXPECT_EQ(room.maxCorner, derived.maxCorner);
        for (std::size_t k = 0; k < i; ++k) {
            EXPECT_TRUE(OneTileApart(room, record.rooms[k])) << i << ", " << k;
        }
        if (room.w >= 10 && room.h >= 10) {
            mainRooms.push_back(static_cast<std::int32_t>(i));
        } else {
            EXPECT_TRUE(room.spawnPoints.empty());
        }
    }
    EXPECT_EQ(record.mainRooms, mainRooms);
}

// Sets of rooms that edges have joined: each room's parent in its set.
using RoomSets = std::vector<std::int32_t>;

RoomSets Separate(const DungeonRecord& record) {
    RoomSets sets(record.rooms.size());
    std::iota(sets.begin(), sets.end(), 0);
    return sets;
}

// False when the edge's ends are in one set already.
bool Join(const DungeonEdge& edge, RoomSets& sets) {
    const auto root = [&sets](std::int32_t room) {
        while (sets[static_cast<std::size_t>(room)] != room) {
            room = sets[static_cast<std::size_t>(room)];
        }
        return room;
    };
    const std::int32_t b = root(edge.b);
    return std::exchange(sets[static_cast<std::size_t>(root(edge.a))], b) != b;
}

// The weight of a minimum spanning tree, found in another way than the generator's.
std::int64_t LeastWeight(const DungeonRecord& record) {
    std::vector<DungeonEdge> edges = record.edges;
    std::sort(edges.begin(), edges.end(), [](const DungeonEdge& a, const DungeonEdge& b) {
        return a.lengthSquared < b.lengthSquared;
    });
    RoomSets sets = Separate(record);
    std::int64_t weight = 0;
    for (const DungeonEdge& edge : edges) {
        weight += Join(edge, sets) ? edge.lengthSquared : 0;
    }
    return weight;
}

std::set<Ends> EndsOf(const std::vector<DungeonEdge>& edges) {
    std::set<Ends> ends;
    for (const DungeonEdge& edge : edges) {
        ends.insert({edge.a, edge.b});
    }
    return ends;
}

void CheckTree(const DungeonRecord& record) {
    const std::size_t n = record.adjacency.size();
    ASSERT_GT(n, 0u);
    ASSERT_GE(record.hallwayEdges.size(), n - 1);
    RoomSets sets = Separate(record);
    std::int64_t weight = 0;
    for (std::size_t i = 0; i + 1 < n; ++i) {
        EXPECT_TRUE(Join(record.hallwayEdges[i], sets)) << "a circle of corridors in the tree";
        weight += record.hallwayEdges[i].lengthSquared;
    }
    EXPECT_EQ(weight, LeastWeight(record));
    EXPECT_EQ(EndsOf(record.hallwayEdges).size(), record.hallwayEdges.size());
    const auto extra = static_cast<std::size_t>(std::ceil(static_cast<float>(n - 1) * 0.3f));
    EXPECT_EQ(record.hallwayEdges.size(), std::min(n - 1 + extra, EndsOf(record.edges).size()));
}

// What the rooms and corridors say each tile should be.
void CheckTiles(const DungeonRecord& record) {
    auto expected = std::make_unique<std::array<std::uint8_t, 512 * 512>>();
    expected->fill(0);
    const auto paint = [&expected](const DungeonRoom& room, std::uint8_t value) {
        for (std::int32_t y = room.minCorner.y; y < room.maxCorner.y; ++y) {
            for (std::int32_t x = room.minCorner.x; x < room.maxCorner.x; ++x) {
                expected->at(static_cast<std::size_t>(y * 512 + x)) = value;
            }
        }
    };
    for (const DungeonRoom& hallway : record.hallways) {
        paint(hallway, 1);
    }
    for (const std::int32_t id : record.mainRooms) {
        paint(RoomOf(record, id), 2);
    }
    EXPECT_TRUE(*expected == record.tiles);
    for (std::int32_t i = 0; i < 512; ++i) {
        EXPECT_EQ(record.TileAt(511, i) + record.TileAt(i, 511), 0) << i;
    }
}

// Walks over painted tiles from the first main room.
void CheckWalk(const DungeonRecord& record) {
    std::vector<char> reached(512 * 512, 0);
    std::vector<Vec2i> open = {RoomOf(record, record.mainRooms[0]).minCorner};
    while (!open.empty()) {
        const Vec2i at = open.back();
        open.pop_back();
        if (at.x < 0 || at.y < 0 || at.x > 511 || at.y > 511 || record.TileAt(at.x, at.y) == 0 ||
            std::exchange(reached[static_cast<std::size_t>(at.y * 512 + at.x)], 1) != 0) {
            continue;
        }
        for (const Vec2i step : {Vec2i{1, 0}, Vec2i{-1, 0}, Vec2i{0, 1}, Vec2i{0, -1}}) {
            open.push_back(at + step);
        }
    }
    for (const auto& [id, list] : record.adjacency) {
        const Vec2i corner = record.rooms[id].minCorner;
        EXPECT_EQ(reached[static_cast<std::size_t>(corner.y * 512 + corner.x)], 1) << id;
    }
}

void CheckPoints(std::int32_t seed, std::size_t neighborCount, const DungeonRecord& record) {
    for (const std::int32_t id : record.mainRooms) {
        const DungeonRoom& room = RoomOf(record, id);
        const std::int32_t count = std::max(0, seed % (room.w * room.h / 20));
        EXPECT_EQ(room.spawnPoints.size(), static_cast<std::size_t>(count));
        for (const Vec2i point : room.spawnPoints) {
            EXPECT_TRUE(Inside(point, room));
        }
    }
    ASSERT_EQ(record.compassPoints.size(), std::min(neighborCount, record.mainRooms.size()));
    std::set<std::int32_t> rooms;
    for (const Vec2i point : record.compassPoints) {
        for (const std::int32_t id : record.mainRooms) {
            if (Inside(point, RoomOf(record, id))) {
                EXPECT_TRUE(rooms.insert(id).second) << "two compass points in one room";
            }
        }
    }
    EXPECT_EQ(rooms.size(), record.compassPoints.size());
}

TEST(Dungeon, HoldsTogetherEverywhere) {
    const ErrorDrop quiet;
    const auto record = std::make_unique<DungeonRecord>();
    const GEN_DungeonGenerator generator;
    int negativeWidths = 0;
    int fullTrees = 0;
    for (std::int32_t i = 0; i < 700; ++i) {
        const GridKey key = SampleCell(i);
        const std::size_t neighborCount = static_cast<std::size_t>(i % 11);
        generator.Generate(key, neighborCount, *record);
        CheckRooms(*record);
        CheckTree(*record);
        CheckTiles(*record);
        CheckWalk(*record);
        CheckPoints(key.id, neighborCount, *record);
        ASSERT_FALSE(HasFailure()) << "cell " << key.x << ", " << key.y;
        negativeWidths += std::any_of(record->hallways.begin(), record->hallways.end(),
                                      [](const DungeonRoom& h) { return h.w < 0; });
        fullTrees += record->adjacency.size() == record->mainRooms.size();
    }
    EXPECT_GT(negativeWidths, 0) << "the sample must hold some";
    EXPECT_EQ(fullTrees, 700);
}

TEST(Dungeon, DependsOnTheCellAlone) {
    const ErrorDrop quiet;
    const GEN_DungeonGenerator generator;
    const auto fresh = std::make_unique<DungeonRecord>();
    generator.Generate(CellKey({12, 34}), 5, *fresh);
    const auto used = std::make_unique<DungeonRecord>();
    for (std::int32_t i = 0; i < 20; ++i) {
        generator.Generate(SampleCell(i), 9, *used);
    }
    used->rooms.resize(300);
    used->adjacency[999] = {1, 2};
    used->tiles.fill(7);
    generator.Generate({12, 34, -1}, 5, *used); // the key's own id is not looked at
    EXPECT_EQ(DigestOf(*used), DigestOf(*fresh));
    // Neighbours change nothing but the compass points, of which there is at most one a room.
    generator.Generate(CellKey({12, 34}), 0, *fresh);
    generator.Generate(CellKey({12, 34}), 1000000, *used);
    EXPECT_TRUE(fresh->compassPoints.empty());
    EXPECT_EQ(std::exchange(used->compassPoints, {}).size(), used->mainRooms.size());
    EXPECT_EQ(DigestOf(*used), DigestOf(*fresh));
}

// A record that goes from cell to cell stops asking for memory but for its map.
TEST(Dungeon, AReusedRecordKeepsItsMemory) {
    const ErrorDrop quiet;
    const GEN_DungeonGenerator generator;
    const auto record = std::make_unique<DungeonRecord>();
    generator.Generate(CellKey({40, 50}), 6, *record);
    const auto memory = [&record] {
        std::vector<const void*> places = {record->rooms.data(),     record->edges.data(),
                                           record->mainRooms.data(), record->hallwayEdges.data(),
                                           record->hallways.data(),  record->compassPoints.data()};
        for (const DungeonRoom& room : record->rooms) {
            places.push_back(room.spawnPoints.data());
        }
        return places;
    };
    const std::vector<const void*> before = memory();
    generator.Generate(CellKey({40, 50}), 6, *record);
    EXPECT_EQ(memory(), before);
}

// Sizes that leave no main room, or none but tiny ones.
TEST(Dungeon, BearsOtherRoomSizes) {
    const ErrorDrop quiet;
    const auto record = std::make_unique<DungeonRecord>();
    for (const auto& [smallest, largest] : {std::pair{1, 2}, {2, 4}, {3, 5}, {40, 400}, {0, 0}}) {
        GEN_DungeonGenerator generator;
        generator.minRoomSize = smallest;
        generator.maxRoomSize = largest;
        generator.Generate(CellKey({1, 1}), 3, *record);
        EXPECT_LE(record->compassPoints.size(), record->mainRooms.size());
        for (const DungeonRoom& room : record->rooms) {
            EXPECT_GE(room.w, smallest);
            EXPECT_LE(room.maxCorner.x, 511);
            EXPECT_GE(room.minCorner.y, 0);
        }
    }
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
        EXPECT_EQ(hallway.x, 0);
        EXPECT_EQ(hallway.center, Vec2i{});
        rectangles.push_back({hallway.minCorner.x, hallway.minCorner.y, hallway.w, hallway.h});
    }
    return rectangles;
}

TEST(DungeonHallways, RunStraightWhereTheRoomsFaceEachOtherAndInAnLElsewhere) {
    const DungeonRoom upper = MakeRoom(100, 200, 20, 20);
    const DungeonRoom lower = MakeRoom(105, 150, 12, 12);
    EXPECT_EQ(HallwaysBetween(upper, lower), (Rectangles{{108, 150, 3, 30}}));
    EXPECT_EQ(HallwaysBetween(lower, upper), (Rectangles{{108, 150, 3, 30}}));
    const DungeonRoom left = MakeRoom(10, 120, 20, 20);
    const DungeonRoom right = MakeRoom(90, 118, 12, 12);
    EXPECT_EQ(HallwaysBetween(left, right), (Rectangles{{30, 109, 60, 3}}));
    EXPECT_EQ(HallwaysBetween(right, left), (Rectangles{{30, 109, 60, 3}}));
    const DungeonRoom lowLeft = MakeRoom(45, 55, 10, 10);
    const DungeonRoom highRight = MakeRoom(195, 305, 10, 10);
    EXPECT_EQ(HallwaysBetween(lowLeft, highRight),
              (Rectangles{{55, 48, 146, 3}, {198, 48, 3, 247}}));
    EXPECT_EQ(HallwaysBetween(highRight, lowLeft),
              (Rectangles{{48, 298, 147, 3}, {48, 55, 3, 246}}));
}

// Rooms paint over corridors, small rooms not at all, and nothing outside the tiles.
TEST(DungeonHallways, PaintingStaysWithinTheTiles) {
    const auto record = std::make_unique<DungeonRecord>();
    const auto hallway = [](Vec2i from, Vec2i to) {
        return DungeonRoom{0, 0, to.x - from.x, to.y - from.y, {}, from, to, {}};
    };
    record->hallways = {hallway({10, 10}, {9, 13}),        // one column less than none
                        hallway({50, 60}, {53, 40}),       // upside down
                        hallway({-900, 100}, {3, 101}),    // leaves on the left
                        hallway({509, 200}, {4000, 201}),  // on the right
                        hallway({300, -40}, {301, 2}),     // below
                        hallway({300, 511}, {301, 70000}), // above
                        hallway({400, 400}, {403, 410})};  // runs into a room
    record->rooms = {MakeRoom(399, 415, 10, 10), MakeRoom(400, 404, 9, 3)};
    record->mainRooms = {0};
    GEN_DungeonGenerator::PaintTiles(*record);
    EXPECT_EQ(std::accumulate(record->tiles.begin(), record->tiles.end(), 0),
              3 + 3 + 2 + 1 + 5 * 3 + 100 * 2);
    for (const Vec2i tile : {Vec2i{2, 100}, {509, 200}, {300, 1}, {300, 511}, {402, 404}}) {
        EXPECT_EQ(record->TileAt(tile.x, tile.y), kTileHallway) << tile.x;
    }
    EXPECT_EQ(record->TileAt(402, 405), kTileRoom);
    EXPECT_EQ(record->TileAt(403, 404), kTileEmpty);
}

TEST(DungeonTree, AddsThreeEdgesForEveryTenAndCountsReversedOnesAsNew) {
    const auto record = std::make_unique<DungeonRecord>();
    record->rooms.resize(12);
    for (std::int32_t i = 0; i < 11; ++i) {
        record->hallwayEdges.push_back({i, i + 1, 1});
    }
    record->edges = {{0, 1, 1}, {1, 0, 1}, {3, 4, 1}, {5, 3, 1},
                     {5, 3, 1}, {8, 2, 1}, {9, 2, 1}, {9, 3, 1}};
    GEN_DungeonGenerator::AddExtraEdges(*record);
    std::vector<Ends> added;
    for (std::size_t i = 11; i < record->hallwayEdges.size(); ++i) {
        added.emplace_back(record->hallwayEdges[i].a, record->hallwayEdges[i].b);
    }
    EXPECT_EQ(added, (std::vector<Ends>{{1, 0}, {5, 3}, {8, 2}, {9, 2}}));
}

} // namespace
