#include "gen/GEN_DungeonGenerator.h"

#include "gen/Triangulate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t kPlacementAttempts = 100; // so also the most rooms
constexpr std::int32_t kLastTile = kCellTiles - 1;
constexpr float kMainRoomShare = 0.4f;  // of the largest room's side
constexpr float kExtraEdgeShare = 0.3f; // of the spanning tree's edges
constexpr std::size_t kUsualRoomNeighbors = 16;
constexpr std::int32_t kTilesPerEnemy = 20;

// A hallway runs from two tiles before its centre line to the tile after it.
constexpr std::int32_t kBeforeLine = 2;
constexpr std::int32_t kAfterLine = 1;

void Clear(DungeonRecord& record) {
    for (DungeonRoom& room : record.rooms) {
        room.spawnPoints.clear(); // keeps its memory; PlaceRooms overwrites the other fields
    }
    record.edges.clear();
    record.mainRooms.clear();
    record.hallwayEdges.clear();
    record.hallways.clear();
    record.adjacency.clear();
    record.compassPoints.clear();
    record.tiles.fill(kTileEmpty);
}

// The placed rooms' sides. There is an array for each of the four so that the compiler can compare
// a new room with several placed ones at once.
struct PlacedRooms {
    using Sides = std::array<std::int32_t, kPlacementAttempts>;

    Sides left, right, bottom, top;
    std::size_t count = 0;

    // Does the room overlap or touch a placed one? Two do unless one of four distances is negative.
    // A bitwise or is negative when one operand is, a bitwise and when both are: no branch is
    // needed.
    bool Touch(const DungeonRoom& room) const {
        const std::int32_t roomRight = room.x + room.w;
        const std::int32_t roomBottom = room.y - room.h;
        std::int32_t allApart = -1;
        for (std::size_t i = 0; i < count; ++i) {
            allApart &= (roomRight - left[i]) | (right[i] - room.x) | (room.y - bottom[i]) |
                        (top[i] - roomBottom);
        }
        return allApart >= 0;
    }

    void Add(const DungeonRoom& room) {
        left[count] = room.x;
        right[count] = room.x + room.w;
        bottom[count] = room.y - room.h;
        top[count] = room.y;
        ++count;
    }
};

void AddEdge(std::int32_t a, std::int32_t b, DungeonRecord& record) {
    const Vec2i d = record.Room(b).center - record.Room(a).center;
    record.edges.push_back({a, b, d.x * d.x + d.y * d.y});
}

// An edge's rank is its length, then its index among the record's `edges`, in one number: the
// smallest rank is the first edge of a stable sort by length.
using Rank = std::int32_t;
constexpr Rank kNoEdge = std::numeric_limits<Rank>::max();
constexpr Rank kMaxEdges = 1024;
static_assert(kMaxEdges > 6 * kPlacementAttempts,
              "three edges per triangle, two triangles per room");
static_assert(2 * kCellTiles * kCellTiles < kNoEdge / kMaxEdges);

// The smallest rank of the edges between every two rooms: a table with a row and a column for each
// room. As rooms are few, a step of the tree is fastest as a walk along a row, without a branch.
std::vector<Rank> RankEdges(const DungeonRecord& record) {
    const std::size_t rooms = record.rooms.size();
    std::vector<Rank> ranks(rooms * rooms, kNoEdge);
    for (std::size_t i = 0; i < record.edges.size(); ++i) {
        const auto& [a, b, lengthSquared] = record.edges[i];
        const auto from = static_cast<std::size_t>(a);
        const auto to = static_cast<std::size_t>(b);
        const Rank rank = lengthSquared * kMaxEdges + static_cast<Rank>(i);
        ranks[from * rooms + to] = std::min(rank, ranks[from * rooms + to]);
        ranks[to * rooms + from] = ranks[from * rooms + to];
    }
    return ranks;
}

void AddHallway(Vec2i minCorner, Vec2i maxCorner, DungeonRecord& record) {
    DungeonRoom& hallway = record.hallways.emplace_back();
    hallway.w = maxCorner.x - minCorner.x;
    hallway.h = maxCorner.y - minCorner.y;
    hallway.minCorner = minCorner;
    hallway.maxCorner = maxCorner;
}

bool Within(float value, std::int32_t low, std::int32_t high) {
    return value >= static_cast<float>(low) && value <= static_cast<float>(high);
}

void AddVertical(const DungeonRoom& a, const DungeonRoom& b, std::int32_t x,
                 DungeonRecord& record) {
    const auto& [lower, upper] =
        std::minmax(a, b, [](const auto& r, const auto& s) { return r.center.y < s.center.y; });
    AddHallway({x - kBeforeLine, lower.maxCorner.y}, {x + kAfterLine, upper.minCorner.y}, record);
}

void AddHorizontal(const DungeonRoom& a, const DungeonRoom& b, std::int32_t y,
                   DungeonRecord& record) {
    const auto& [left, right] =
        std::minmax(a, b, [](const auto& r, const auto& s) { return r.center.x < s.center.x; });
    AddHallway({left.maxCorner.x, y - kBeforeLine}, {right.minCorner.x, y + kAfterLine}, record);
}

// Along a's centre row, then along b's centre column.
void AddCorner(const DungeonRoom& a, const DungeonRoom& b, DungeonRecord& record) {
    const Vec2i low{b.center.x - kBeforeLine, a.center.y - kBeforeLine};
    const Vec2i high{b.center.x + kAfterLine, a.center.y + kAfterLine};
    if (a.center.x < b.center.x) {
        AddHallway({a.maxCorner.x, low.y}, high, record);
    } else {
        AddHallway(low, {a.minCorner.x, high.y}, record);
    }
    if (a.center.y < b.center.y) {
        AddHallway(low, {high.x, b.minCorner.y}, record);
    } else {
        AddHallway({low.x, b.maxCorner.y}, high, record);
    }
}

void AddHallways(const DungeonRoom& a, const DungeonRoom& b, DungeonRecord& record) {
    const Vec2f mid = ToVec2f(a.center + b.center) * 0.5f;
    const Vec2i line = ToVec2i(mid);
    const auto inColumns = [mid](const DungeonRoom& room) {
        return Within(mid.x, room.minCorner.x, room.maxCorner.x);
    };
    const auto inRows = [mid](const DungeonRoom& room) {
        return Within(mid.y, room.minCorner.y, room.maxCorner.y);
    };
    if (inColumns(a) && inColumns(b)) {
        AddVertical(a, b, line.x, record);
    } else if (inRows(a) && inRows(b)) {
        AddHorizontal(a, b, line.y, record);
    } else {
        AddCorner(a, b, record);
    }
}

// Cut to the cell, so that no rectangle can write outside the tiles. One without width or height
// paints nothing.
void Paint(const DungeonRoom& area, std::uint8_t tile, DungeonRecord& record) {
    const std::int32_t left = std::clamp(area.minCorner.x, 0, kCellTiles);
    const std::int32_t right = std::clamp(area.maxCorner.x, left, kCellTiles);
    const std::int32_t top = std::min(area.maxCorner.y, kCellTiles);
    for (std::int32_t y = std::max(area.minCorner.y, 0); y < top; ++y) {
        std::uint8_t* const row = record.tiles.data() + std::ptrdiff_t{y} * kCellTiles;
        std::fill_n(row + left, right - left, tile);
    }
}

// A tile of the room, x drawn before y.
Vec2i DrawTile(const DungeonRoom& room, Twister& rng) {
    const std::int32_t x = UniformInt(rng, 0, room.w - 1);
    const std::int32_t y = UniformInt(rng, 0, room.h - 1);
    return room.minCorner + Vec2i{x, y};
}

} // namespace

void GEN_DungeonGenerator::Generate(const GridKey& cellKey, DungeonRecord& record) const {
    Generate(cellKey, countNeighbors ? countNeighbors(cellKey) : 0, record);
}

void GEN_DungeonGenerator::Generate(const GridKey& cellKey, std::size_t neighborCount,
                                    DungeonRecord& record) const {
    Clear(record);
    const std::int32_t seed = CellKey(cellKey.Coords()).id;
    Twister rng(static_cast<std::uint32_t>(seed));
    PlaceRooms(rng, record); // takes a copy, because enemies are drawn from the seed again
    TriangulateMainRooms(record);
    BuildSpanningTree(record);
    AddExtraEdges(record);
    BuildHallways(record);
    PaintTiles(record);
    PlaceEnemies(seed, rng, record);
    PlaceCompassPoints(neighborCount, rng, record);
}

void GEN_DungeonGenerator::PlaceRooms(Twister rng, DungeonRecord& record) const {
    const auto mainSize =
        static_cast<std::int32_t>(static_cast<float>(maxRoomSize) * kMainRoomShare);
    PlacedRooms placed;
    record.rooms.resize(kPlacementAttempts);
    for (std::size_t attempt = 0; attempt < kPlacementAttempts; ++attempt) {
        DungeonRoom& room = record.rooms[placed.count];
        room.x = UniformInt(rng, 0, kLastTile);
        room.y = UniformInt(rng, 0, kLastTile);
        room.w = UniformInt(rng, minRoomSize, maxRoomSize);
        room.h = UniformInt(rng, minRoomSize, maxRoomSize);
        room.w = std::min(room.w, kLastTile - room.x);
        room.h = std::min(room.h, room.y);
        if (room.w < minRoomSize || room.h < minRoomSize || placed.Touch(room)) {
            continue;
        }
        room.center = {room.x + room.w / 2, room.y - room.h / 2};
        room.minCorner = {room.x, room.y - room.h};
        room.maxCorner = {room.x + room.w, room.y};
        if (room.w >= mainSize && room.h >= mainSize) {
            record.mainRooms.push_back(static_cast<std::int32_t>(placed.count));
        }
        placed.Add(room);
    }
    record.rooms.resize(placed.count);
}

void GEN_DungeonGenerator::TriangulateMainRooms(DungeonRecord& record) {
    std::vector<DelaunayPoint> points;
    points.reserve(record.mainRooms.size());
    for (const std::int32_t id : record.mainRooms) {
        const Vec2f center = ToVec2f(record.Room(id).center);
        points.push_back({.id = id, .x = center.x, .y = center.y});
    }
    std::vector<DelaunayTriangle> triangles;
    Triangulate(points, triangles);
    std::vector<std::vector<std::int32_t>> neighbors(record.rooms.size());
    ForEachCorner(triangles, [&](std::int32_t room, std::int32_t first, std::int32_t second) {
        std::vector<std::int32_t>& list = neighbors[static_cast<std::size_t>(room)];
        list.reserve(kUsualRoomNeighbors);
        list.push_back(first);
        list.push_back(second);
    });
    for (const DelaunayTriangle& t : triangles) {
        AddEdge(t.a, t.b, record);
        AddEdge(t.b, t.c, record);
        AddEdge(t.c, t.a, record);
    }
    for (std::size_t room = 0; room < neighbors.size(); ++room) {
        if (!neighbors[room].empty()) {
            record.adjacency.emplace_hint(record.adjacency.end(), room, std::move(neighbors[room]));
        }
    }
}

// Prim's algorithm. `nearest` has for each room the smallest rank of its edges into the tree;
// kNoEdge means that there is none; rooms already in the tree get it, too.
void GEN_DungeonGenerator::BuildSpanningTree(DungeonRecord& record) {
    if (record.adjacency.size() < 2) {
        return;
    }
    const std::size_t rooms = record.rooms.size();
    const std::vector<Rank> ranks = RankEdges(record);
    std::vector<Rank> nearest(rooms, kNoEdge);
    std::vector<Rank> inTree(rooms, 0); // by room: kNoEdge once it is in the tree
    const auto index = [](std::int32_t room) { return static_cast<std::size_t>(room); };
    std::int32_t joined = record.mainRooms[0];
    for (std::size_t vertices = 1; vertices < record.adjacency.size(); ++vertices) {
        inTree[index(joined)] = kNoEdge;
        const Rank* const row = ranks.data() + index(joined) * rooms;
        Rank first = kNoEdge;
        for (std::size_t room = 0; room < rooms; ++room) {
            nearest[room] = std::max(std::min(nearest[room], row[room]), inTree[room]);
            first = std::min(first, nearest[room]);
        }
        if (first == kNoEdge) {
            return;
        }
        const DungeonEdge& edge = record.edges[index(first % kMaxEdges)];
        record.hallwayEdges.push_back(edge);
        joined = inTree[index(edge.a)] == kNoEdge ? edge.b : edge.a;
    }
}

void GEN_DungeonGenerator::AddExtraEdges(DungeonRecord& record) {
    const std::size_t tree = record.hallwayEdges.size();
    const auto extra =
        static_cast<std::size_t>(std::ceil(static_cast<float>(tree) * kExtraEdgeShare));
    for (const DungeonEdge& edge : record.edges) {
        if (record.hallwayEdges.size() == tree + extra) {
            return;
        }
        std::vector<DungeonEdge>& chosen = record.hallwayEdges;
        if (std::find(chosen.begin(), chosen.end(), edge) == chosen.end()) {
            chosen.push_back(edge);
        }
    }
}

void GEN_DungeonGenerator::BuildHallways(DungeonRecord& record) {
    for (const DungeonEdge& edge : record.hallwayEdges) {
        AddHallways(record.Room(edge.a), record.Room(edge.b), record);
    }
}

void GEN_DungeonGenerator::PaintTiles(DungeonRecord& record) {
    for (const DungeonRoom& hallway : record.hallways) {
        Paint(hallway, kTileHallway, record);
    }
    for (const std::int32_t id : record.mainRooms) {
        Paint(record.Room(id), kTileRoom, record);
    }
}

void GEN_DungeonGenerator::PlaceEnemies(std::int32_t seed, Twister& rng, DungeonRecord& record) {
    for (const std::int32_t id : record.mainRooms) {
        DungeonRoom& room = record.Room(id);
        const std::int32_t most = room.w * room.h / kTilesPerEnemy;
        const std::int32_t count = most > 0 ? std::max(seed % most, 0) : 0;
        room.spawnPoints.resize(static_cast<std::size_t>(count));
        for (Vec2i& point : room.spawnPoints) {
            point = DrawTile(room, rng);
        }
    }
}

void GEN_DungeonGenerator::PlaceCompassPoints(std::size_t neighborCount, Twister& rng,
                                              DungeonRecord& record) {
    const std::vector<std::int32_t>& rooms = record.mainRooms;
    std::vector<std::int32_t> chosen; // by Floyd's sampling: every set is as likely as the others
    for (std::size_t j = rooms.size() - std::min(neighborCount, rooms.size()); j < rooms.size();
         ++j) {
        const std::int32_t r = UniformInt(rng, 0, static_cast<std::int32_t>(j));
        const std::int32_t drawn = rooms[static_cast<std::size_t>(r)];
        const bool taken = std::find(chosen.begin(), chosen.end(), drawn) != chosen.end();
        chosen.push_back(taken ? rooms[j] : drawn);
    }
    for (const std::int32_t id : chosen) {
        record.compassPoints.push_back(DrawTile(record.Room(id), rng));
    }
}
