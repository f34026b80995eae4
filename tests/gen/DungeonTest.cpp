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

#include "gen/DungeonHallways.h"
#include "gen/DungeonRooms.h"
#include "gen/ErrorCapture.h"
#include "gen/WorldDigest.h"

namespace {

// Cells of every quadrant and some whose seeds wrap.
GridKey SampleCell(std::int32_t i) {
    return CellKey({i * 7919 - 900000, i * 104729 - 3000000});
}

const DungeonRoom& RoomOf(const DungeonRecord& record, std::int32_t id) {
    return record.rooms[static_cast<std::size_t>(id)];
}

bool Inside(Vec2i tile, const DungeonRoom& room) {
    return tile.x >= room.minCorner.x && tile.x < room.maxCorner.x && tile.y >= room.minCorner.y &&
           tile.y < room.maxCorner.y;
}

void CheckRoom(const DungeonRoom& room) {
    EXPECT_GE(room.w, 3);
    EXPECT_LE(room.w, 25);
    EXPECT_GE(room.h, 3);
    EXPECT_LE(room.h, 25);
    EXPECT_GE(room.x, 0);
    EXPECT_LE(room.x + room.w, 511);
    EXPECT_GE(room.y - room.h, 0);
    EXPECT_LE(room.y, 511);
    EXPECT_EQ(room.center, (Vec2i{room.x + room.w / 2, room.y - room.h / 2}));
    EXPECT_EQ(room.minCorner, (Vec2i{room.x, room.y - room.h}));
    EXPECT_EQ(room.maxCorner, (Vec2i{room.x + room.w, room.y}));
}

bool OneTileApart(const DungeonRoom& a, const DungeonRoom& b) {
    return a.maxCorner.x < b.minCorner.x || b.maxCorner.x < a.minCorner.x ||
           a.maxCorner.y < b.minCorner.y || b.maxCorner.y < a.minCorner.y;
}

void CheckRooms(const DungeonRecord& record) {
    std::vector<std::int32_t> mainRooms;
    for (std::size_t i = 0; i < record.rooms.size(); ++i) {
        const DungeonRoom& room = record.rooms[i];
        CheckRoom(room);
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

// Joins sets of rooms.
class RoomSets {
public:
    explicit RoomSets(std::size_t count) : parents(count) {
        std::iota(parents.begin(), parents.end(), 0);
    }
    bool Join(std::int32_t a, std::int32_t b) {
        const std::int32_t rootA = Root(a);
        const std::int32_t rootB = Root(b);
        parents[static_cast<std::size_t>(rootA)] = rootB;
        return rootA != rootB;
    }

private:
    std::int32_t Root(std::int32_t room) const {
        while (parents[static_cast<std::size_t>(room)] != room) {
            room = parents[static_cast<std::size_t>(room)];
        }
        return room;
    }
    std::vector<std::int32_t> parents;
};

// The weight of a minimum spanning tree, found in another way than the generator's.
std::int64_t LeastWeight(const DungeonRecord& record) {
    std::vector<DungeonEdge> edges = record.edges;
    std::sort(edges.begin(), edges.end(), [](const DungeonEdge& a, const DungeonEdge& b) {
        return a.lengthSquared < b.lengthSquared;
    });
    RoomSets sets(record.rooms.size());
    std::int64_t weight = 0;
    for (const DungeonEdge& edge : edges) {
        weight += sets.Join(edge.a, edge.b) ? edge.lengthSquared : 0;
    }
    return weight;
}

void CheckTree(const DungeonRecord& record) {
    const std::size_t n = record.adjacency.size();
    if (n == 0) {
        EXPECT_TRUE(record.hallwayEdges.empty());
        return;
    }
    ASSERT_GE(record.hallwayEdges.size(), n - 1);
    RoomSets sets(record.rooms.size());
    std::int64_t weight = 0;
    for (std::size_t i = 0; i < n - 1; ++i) {
        const DungeonEdge& edge = record.hallwayEdges[i];
        EXPECT_TRUE(sets.Join(edge.a, edge.b)) << "a circle of corridors in the tree";
        weight += edge.lengthSquared;
    }
    EXPECT_EQ(weight, LeastWeight(record));
    std::set<std::pair<std::int32_t, std::int32_t>> ends;
    for (const DungeonEdge& edge : record.hallwayEdges) {
        EXPECT_TRUE(ends.insert({edge.a, edge.b}).second);
    }
    std::set<std::pair<std::int32_t, std::int32_t>> known;
    for (const DungeonEdge& edge : record.edges) {
        known.insert({edge.a, edge.b});
    }
    const auto extra = static_cast<std::size_t>(std::ceil(static_cast<float>(n - 1) * 0.3f));
    EXPECT_EQ(record.hallwayEdges.size(), std::min(n - 1 + extra, known.size()));
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
    bool edgesEmpty = true;
    for (std::int32_t i = 0; i < 512; ++i) {
        edgesEmpty &= record.TileAt(511, i) == 0 && record.TileAt(i, 511) == 0;
    }
    EXPECT_TRUE(edgesEmpty);
}

// Walks over painted tiles from the first main room.
void CheckWalk(const DungeonRecord& record) {
    if (record.adjacency.empty()) {
        return;
    }
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
}

TEST(Dungeon, NeighborsChangeNothingButTheCompassPoints) {
    const ErrorDrop quiet;
    const GEN_DungeonGenerator generator;
    const auto few = std::make_unique<DungeonRecord>();
    const auto many = std::make_unique<DungeonRecord>();
    generator.Generate(CellKey({3, 5}), 0, *few);
    generator.Generate(CellKey({3, 5}), 1000000, *many);
    EXPECT_TRUE(few->compassPoints.empty());
    EXPECT_EQ(many->compassPoints.size(), many->mainRooms.size());
    many->compassPoints.clear();
    EXPECT_EQ(DigestOf(*few), DigestOf(*many));
}

// A record that goes from cell to cell stops asking for memory.
TEST(Dungeon, AReusedRecordKeepsItsMemory) {
    const ErrorDrop quiet;
    const GEN_DungeonGenerator generator;
    const auto record = std::make_unique<DungeonRecord>();
    generator.Generate(CellKey({40, 50}), 6, *record);
    const auto memory = [&record] {
        std::vector<const void*> places = {
            record->rooms.data(),        record->edges.data(),
            record->mainRooms.data(),    record->hallwayEdges.data(),
            record->hallways.data(),     record->compassPoints.data(),
            &*record->adjacency.begin(), record->adjacency.begin()->second.data()};
        for (const DungeonRoom& room : record->rooms) {
            places.push_back(room.spawnPoints.data());
        }
        return places;
    };
    const std::vector<const void*> before = memory();
    generator.Generate(CellKey({40, 50}), 6, *record);
    EXPECT_EQ(memory(), before);
}

// The seed's remainder is negative in these cells, and no enemy appears.
TEST(Dungeon, NegativeSeedsHaveNoSpawnPoints) {
    const ErrorDrop quiet;
    const auto record = std::make_unique<DungeonRecord>();
    for (const Vec2i cell : {Vec2i{5, -2}, Vec2i{-7, 0}, Vec2i{0, 2049}}) {
        ASSERT_LT(CellKey(cell).id, 0);
        GEN_DungeonGenerator().Generate(CellKey(cell), 2, *record);
        EXPECT_FALSE(record->mainRooms.empty());
        for (const DungeonRoom& room : record->rooms) {
            EXPECT_TRUE(room.spawnPoints.empty());
        }
        EXPECT_EQ(record->compassPoints.size(), 2u);
    }
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

DungeonRoom MakeRoom(std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h) {
    DungeonRoom room;
    room.x = x;
    room.y = y;
    room.w = w;
    room.h = h;
    room.center = {x + w / 2, y - h / 2};
    room.minCorner = {x, y - h};
    room.maxCorner = {x + w, y};
    return room;
}

using Rectangles = std::vector<std::array<std::int32_t, 4>>; // left, bottom, width, height

Rectangles HallwaysBetween(const DungeonRoom& a, const DungeonRoom& b) {
    const auto record = std::make_unique<DungeonRecord>();
    record->rooms = {a, b};
    record->hallwayEdges = {{0, 1, 0}};
    BuildHallways(*record);
    Rectangles rectangles;
    for (const DungeonRoom& hallway : record->hallways) {
        EXPECT_EQ(hallway.maxCorner, (hallway.minCorner + Vec2i{hallway.w, hallway.h}));
        EXPECT_EQ(hallway.x, 0);
        EXPECT_EQ(hallway.center, Vec2i{});
        rectangles.push_back({hallway.minCorner.x, hallway.minCorner.y, hallway.w, hallway.h});
    }
    return rectangles;
}

TEST(DungeonHallways, RunStraightWhereTheRoomsFaceEachOther) {
    const DungeonRoom upper = MakeRoom(100, 200, 20, 20);
    const DungeonRoom lower = MakeRoom(105, 150, 12, 12);
    EXPECT_EQ(HallwaysBetween(upper, lower), (Rectangles{{108, 150, 3, 30}}));
    EXPECT_EQ(HallwaysBetween(lower, upper), (Rectangles{{108, 150, 3, 30}}));
    const DungeonRoom left = MakeRoom(10, 120, 20, 20);
    const DungeonRoom right = MakeRoom(90, 118, 12, 12);
    EXPECT_EQ(HallwaysBetween(left, right), (Rectangles{{30, 109, 60, 3}}));
    EXPECT_EQ(HallwaysBetween(right, left), (Rectangles{{30, 109, 60, 3}}));
}

TEST(DungeonHallways, MakeAnLInEveryDirection) {
    const DungeonRoom lowLeft = MakeRoom(45, 55, 10, 10);
    const DungeonRoom highRight = MakeRoom(195, 305, 10, 10);
    EXPECT_EQ(HallwaysBetween(lowLeft, highRight),
              (Rectangles{{55, 48, 146, 3}, {198, 48, 3, 247}}));
    EXPECT_EQ(HallwaysBetween(highRight, lowLeft),
              (Rectangles{{48, 298, 147, 3}, {48, 55, 3, 246}}));
}

TEST(DungeonHallways, PaintingStaysWithinTheTiles) {
    const auto record = std::make_unique<DungeonRecord>();
    const auto hallway = [](Vec2i from, Vec2i to) {
        DungeonRoom room;
        room.minCorner = from;
        room.maxCorner = to;
        room.w = to.x - from.x;
        room.h = to.y - from.y;
        return room;
    };
    record->hallways = {hallway({10, 10}, {9, 13}),         // one column less than none
                        hallway({50, 60}, {53, 40}),        // upside down
                        hallway({-900, 100}, {3, 101}),     // leaves on the left
                        hallway({509, 200}, {4000, 201}),   // on the right
                        hallway({300, -40}, {301, 2}),      // below
                        hallway({300, 511}, {301, 70000})}; // above
    PaintTiles(*record);
    EXPECT_EQ(std::accumulate(record->tiles.begin(), record->tiles.end(), 0), 3 + 3 + 2 + 1);
    EXPECT_EQ(record->TileAt(2, 100), kTileHallway);
    EXPECT_EQ(record->TileAt(509, 200), kTileHallway);
    EXPECT_EQ(record->TileAt(300, 1), kTileHallway);
    EXPECT_EQ(record->TileAt(300, 511), kTileHallway);
}

TEST(DungeonHallways, RoomsPaintOverCorridorsAndSmallRoomsNotAtAll) {
    const auto record = std::make_unique<DungeonRecord>();
    record->rooms = {MakeRoom(100, 200, 20, 20), MakeRoom(105, 150, 12, 12),
                     MakeRoom(107, 175, 9, 25)};
    record->mainRooms = {0, 1};
    record->hallwayEdges = {{0, 1, 0}};
    BuildHallways(*record);
    PaintTiles(*record);
    EXPECT_EQ(record->TileAt(109, 199), kTileRoom);
    EXPECT_EQ(record->TileAt(109, 150), kTileHallway);
    EXPECT_EQ(record->TileAt(109, 149), kTileRoom);
    EXPECT_EQ(record->TileAt(112, 170), kTileEmpty);
    EXPECT_EQ(record->TileAt(120, 199), kTileEmpty);
}

TEST(DungeonTree, AddsThreeEdgesForEveryTenAndCountsReversedOnesAsNew) {
    const auto record = std::make_unique<DungeonRecord>();
    record->rooms.resize(12);
    for (std::int32_t i = 0; i < 11; ++i) {
        record->hallwayEdges.push_back({i, i + 1, 1});
    }
    record->edges = {{0, 1, 1}, {1, 0, 1}, {3, 4, 1}, {5, 3, 1},
                     {5, 3, 1}, {8, 2, 1}, {9, 2, 1}, {9, 3, 1}};
    AddExtraEdges(*record);
    ASSERT_EQ(record->hallwayEdges.size(), 15u);
    const std::vector<std::pair<std::int32_t, std::int32_t>> added = {
        {1, 0}, {5, 3}, {8, 2}, {9, 2}};
    for (std::size_t i = 0; i < added.size(); ++i) {
        EXPECT_EQ(record->hallwayEdges[11 + i].a, added[i].first);
        EXPECT_EQ(record->hallwayEdges[11 + i].b, added[i].second);
    }
}

} // namespace
