#include "gen/DungeonRooms.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "gen/Twister.h"
#include "gen/UniformInt.h"

namespace {

constexpr std::size_t kPlacementAttempts = 100;
constexpr std::int32_t kLastTile = kCellTiles - 1;

const DungeonRoom& RoomOf(const DungeonRecord& record, std::int32_t id) {
    return record.rooms[static_cast<std::size_t>(id)];
}

// Where a room may come to stand, as in `DungeonRoom`.
struct Rectangle {
    std::int32_t x, y, w, h;
};

// Always four draws, in this order.
Rectangle DrawRectangle(const UniformRange& side, Twister& rng) {
    const std::int32_t x = UniformInt(rng, 0, kLastTile);
    const std::int32_t y = UniformInt(rng, 0, kLastTile);
    const std::int32_t w = side(rng);
    return {x, y, w, side(rng)};
}

// Shrinks what leaves the cell; false when it gets too small.
bool FitIntoCell(RoomSizes sizes, Rectangle& room) {
    if (room.x + room.w > kLastTile) {
        room.w = kLastTile - room.x;
        if (room.w < sizes.smallest) {
            return false;
        }
    }
    if (room.y - room.h < 0) {
        room.h = room.y;
        if (room.h < sizes.smallest) {
            return false;
        }
    }
    return true;
}

// The rooms placed so far, one array for each edge, so that a new one is held against several at
// once.
class PlacedRooms {
public:
    std::size_t Count() const { return count; }

    /// Does the room overlap a placed one? Rooms whose edges coincide touch as well.
    bool Touch(const Rectangle& room) const {
        const std::int32_t roomRight = room.x + room.w;
        const std::int32_t roomBottom = room.y - room.h;
        std::int32_t allApart = -1; // negative while every room is
        for (std::size_t i = 0; i < count; ++i) {
            // Negative when one of the four distances is: when the rooms are apart on that side.
            const std::int32_t distances = (roomRight - left[i]) | (right[i] - room.x) |
                                           (room.y - bottom[i]) | (top[i] - roomBottom);
            allApart &= distances;
        }
        return allApart >= 0;
    }

    void Add(const Rectangle& room) {
        left[count] = room.x;
        right[count] = room.x + room.w;
        bottom[count] = room.y - room.h;
        top[count] = room.y;
        ++count;
    }

private:
    using Edges = std::array<std::int32_t, kPlacementAttempts>;

    Edges left, right, bottom, top;
    std::size_t count = 0;
};

void StoreRoom(const Rectangle& rectangle, DungeonRoom& room) {
    const auto& [x, y, w, h] = rectangle;
    room.x = x;
    room.y = y;
    room.w = w;
    room.h = h;
    room.center = {x + w / 2, y - h / 2};
    room.minCorner = {x, y - h};
    room.maxCorner = {x + w, y};
    room.spawnPoints.clear();
}

DelaunayPoint CentrePoint(const DungeonRoom& room, std::int32_t id) {
    DelaunayPoint point;
    point.id = id;
    point.x = static_cast<float>(room.center.x);
    point.y = static_cast<float>(room.center.y);
    return point;
}

void AppendEdge(std::int32_t a, std::int32_t b, DungeonRecord& record) {
    const Vec2i d = RoomOf(record, b).center - RoomOf(record, a).center;
    record.edges.push_back({a, b, d.x * d.x + d.y * d.y});
}

using Adjacency = decltype(DungeonRecord::adjacency);

// Fills the adjacency room by room from the triangles' corners. The map's nodes and lists come from
// an earlier dungeon's as far as there are any: they are taken out, given their new rooms and put
// back in ascending order.
class AdjacencyWriter {
public:
    AdjacencyWriter(std::size_t roomCount, Adjacency& map)
        : adjacency(map), ends(roomCount, nullptr) {}

    /// Gives every corner's room a list as long as it will be.
    void MakeEntries(const std::vector<DelaunayTriangle>& triangles) {
        std::vector<std::size_t> corners(ends.size(), 0);
        for (const DelaunayTriangle& t : triangles) {
            for (const std::int32_t corner : {t.a, t.b, t.c}) {
                ++corners[static_cast<std::size_t>(corner)];
            }
        }
        Adjacency old;
        old.swap(adjacency);
        for (std::size_t room = 0; room < ends.size(); ++room) {
            if (corners[room] != 0) {
                std::vector<std::int32_t>& list = MakeEntry(static_cast<std::uint32_t>(room), old);
                list.resize(2 * corners[room]);
                ends[room] = list.data();
            }
        }
    }

    /// Adds two neighbours to a room, in this order.
    void Append(std::int32_t room, std::int32_t first, std::int32_t second) {
        std::int32_t*& end = ends[static_cast<std::size_t>(room)];
        *end++ = first;
        *end++ = second;
    }

private:
    std::vector<std::int32_t>& MakeEntry(std::uint32_t room, Adjacency& old) {
        if (old.empty()) {
            return adjacency.try_emplace(adjacency.end(), room)->second;
        }
        auto node = old.extract(old.begin());
        node.key() = room;
        return adjacency.insert(adjacency.end(), std::move(node))->second;
    }

    Adjacency& adjacency;
    std::vector<std::int32_t*> ends; // by room, of what its list holds so far; null without a list
};

// Grows a spanning tree: knows, for every main room outside, the best edge that joins it to the
// tree. Rooms are few and edges join most of their near neighbours, so a table of all pairs serves
// best: a step is a walk along a row, without a branch.
class TreeGrower {
public:
    explicit TreeGrower(const DungeonRecord& theRecord)
        : record(theRecord), count(record.mainRooms.size()), places(record.rooms.size(), 0),
          ranks(count * count, kNoEdge), best(count, kNoEdge), outside(count, 0) {
        for (std::size_t place = 0; place < count; ++place) {
            places[static_cast<std::size_t>(record.mainRooms[place])] = place;
        }
        for (std::size_t i = 0; i < record.edges.size(); ++i) {
            const std::size_t a = PlaceOf(record.edges[i].a);
            const std::size_t b = PlaceOf(record.edges[i].b);
            const Rank rank = std::min(RankOf(i), ranks[a * count + b]);
            ranks[a * count + b] = rank;
            ranks[b * count + a] = rank;
        }
        Join(0);
    }

    /// Takes in the room that the shortest edge leads to, and returns the edge; null when no edge
    /// leaves the tree.
    const DungeonEdge* JoinNearest() {
        if (least == kNoEdge) {
            return nullptr;
        }
        const DungeonEdge& edge = record.edges[static_cast<std::size_t>(least) % kMostEdges];
        const std::size_t a = PlaceOf(edge.a);
        Join(outside[a] == 0 ? a : PlaceOf(edge.b));
        return &edge;
    }

private:
    using Rank = std::int32_t;
    static constexpr Rank kNoEdge = std::numeric_limits<Rank>::max();
    static constexpr std::size_t kMostEdges = 1024;
    static_assert(kMostEdges > 6 * kPlacementAttempts,
                  "three edges a triangle, two triangles a room");
    static_assert(2 * kCellTiles * kCellTiles < kNoEdge / static_cast<Rank>(kMostEdges));

    // Length before index, so that the least is the shortest, and the first of equally long ones.
    Rank RankOf(std::size_t edge) const {
        return record.edges[edge].lengthSquared * static_cast<Rank>(kMostEdges) +
               static_cast<Rank>(edge);
    }

    std::size_t PlaceOf(std::int32_t room) const { return places[static_cast<std::size_t>(room)]; }

    void Join(std::size_t place) {
        outside[place] = kNoEdge;
        const Rank* const row = ranks.data() + place * count;
        Rank leastSoFar = kNoEdge; // a local, which the compiler knows that nothing else changes
        for (std::size_t i = 0; i < count; ++i) {
            const Rank rank = std::max(std::min(best[i], row[i]), outside[i]);
            best[i] = rank;
            leastSoFar = std::min(leastSoFar, rank);
        }
        least = leastSoFar;
    }

    const DungeonRecord& record;
    std::size_t count;
    std::vector<std::size_t> places; // by room: its place among the main rooms
    std::vector<Rank> ranks;         // by place and place: the best edge between the two
    std::vector<Rank> best;          // by place: the best edge into the tree; no edge once inside
    std::vector<Rank> outside;       // by place: 0, or kNoEdge once inside
    Rank least = kNoEdge;            // of all best
};

// Which directed edges there are between rooms.
class EdgeTable {
public:
    explicit EdgeTable(std::size_t theRoomCount)
        : roomCount(theRoomCount), taken(roomCount * roomCount, 0) {}

    /// False when the edge is there already.
    bool Add(const DungeonEdge& edge) {
        const std::size_t at =
            static_cast<std::size_t>(edge.a) * roomCount + static_cast<std::size_t>(edge.b);
        return std::exchange(taken[at], char{1}) == 0;
    }

private:
    std::size_t roomCount;
    std::vector<char> taken;
};

} // namespace

std::vector<DelaunayPoint> PlaceRooms(RoomSizes sizes, Twister& rng, DungeonRecord& record) {
    std::vector<DelaunayPoint> centres;
    centres.reserve(kPlacementAttempts);
    const std::int32_t mainSize =
        static_cast<std::int32_t>(static_cast<float>(sizes.largest) * 0.4f);
    const UniformRange side(sizes.smallest, sizes.largest);
    PlacedRooms placed;
    for (std::size_t attempt = 0; attempt < kPlacementAttempts; ++attempt) {
        Rectangle rectangle = DrawRectangle(side, rng);
        if (!FitIntoCell(sizes, rectangle) || placed.Touch(rectangle)) {
            continue;
        }
        if (placed.Count() == record.rooms.size()) {
            record.rooms.emplace_back();
        }
        DungeonRoom& room = record.rooms[placed.Count()];
        StoreRoom(rectangle, room);
        if (room.w >= mainSize && room.h >= mainSize) {
            const std::int32_t id = static_cast<std::int32_t>(placed.Count());
            record.mainRooms.push_back(id);
            centres.push_back(CentrePoint(room, id));
        }
        placed.Add(rectangle);
    }
    record.rooms.resize(placed.Count());
    return centres;
}

void TriangulateMainRooms(std::vector<DelaunayPoint>& centres, DungeonRecord& record) {
    std::vector<DelaunayTriangle> triangles;
    Triangulate(centres, triangles);
    record.edges.reserve(3 * triangles.size());
    AdjacencyWriter adjacency(record.rooms.size(), record.adjacency);
    adjacency.MakeEntries(triangles);
    for (const DelaunayTriangle& t : triangles) {
        AppendEdge(t.a, t.b, record);
        AppendEdge(t.b, t.c, record);
        AppendEdge(t.c, t.a, record);
        adjacency.Append(t.a, t.b, t.c);
        adjacency.Append(t.b, t.a, t.c);
        adjacency.Append(t.c, t.b, t.a);
    }
}

void BuildSpanningTree(DungeonRecord& record) {
    const std::size_t vertices = record.adjacency.size();
    if (vertices < 2) {
        return;
    }
    TreeGrower tree(record);
    for (std::size_t found = 1; found < vertices; ++found) {
        const DungeonEdge* const edge = tree.JoinNearest();
        if (edge == nullptr) {
            return;
        }
        record.hallwayEdges.push_back(*edge);
    }
}

void AddExtraEdges(DungeonRecord& record) {
    const float share = static_cast<float>(record.hallwayEdges.size()) * 0.3f;
    const std::size_t extra = static_cast<std::size_t>(std::ceil(share));
    EdgeTable table(record.rooms.size());
    for (const DungeonEdge& edge : record.hallwayEdges) {
        table.Add(edge);
    }
    std::size_t added = 0;
    for (const DungeonEdge& edge : record.edges) {
        if (added == extra) {
            return;
        }
        if (table.Add(edge)) {
            record.hallwayEdges.push_back(edge);
            ++added;
        }
    }
}
