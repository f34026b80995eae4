#include "gen/DungeonRooms.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
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

// Always four draws, in this order.
DungeonRoom DrawRoom(const UniformRange& side, Twister& rng) {
    DungeonRoom room;
    room.x = UniformInt(rng, 0, kLastTile);
    room.y = UniformInt(rng, 0, kLastTile);
    room.w = side(rng);
    room.h = side(rng);
    return room;
}

// Shrinks a room that leaves the cell; false when it gets too small.
bool FitIntoCell(RoomSizes sizes, DungeonRoom& room) {
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

// For answers that are combined without a branch between them.
std::int32_t AsBit(bool answer) {
    return static_cast<std::int32_t>(answer);
}

// The rooms placed so far, one array for each edge, so that a new one is held against several at
// once.
class PlacedRooms {
public:
    std::size_t Count() const { return count; }

    /// Does the room overlap a placed one? Rooms whose edges coincide touch as well.
    bool Touch(const DungeonRoom& room) const {
        std::int32_t touching = 0;
        for (std::size_t i = 0; i < count; ++i) {
            touching |= AsBit(room.x + room.w >= left[i]) & AsBit(room.x <= right[i]) &
                        AsBit(room.y >= bottom[i]) & AsBit(room.y - room.h <= top[i]);
        }
        return touching != 0;
    }

    void Add(const DungeonRoom& room) {
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

void SetCorners(DungeonRoom& room) {
    room.center = {room.x + room.w / 2, room.y - room.h / 2};
    room.minCorner = {room.x, room.y - room.h};
    room.maxCorner = {room.x + room.w, room.y};
}

void StoreRoom(const DungeonRoom& room, std::size_t id, std::vector<DungeonRoom>& rooms) {
    if (id == rooms.size()) {
        rooms.push_back(room);
        return;
    }
    std::vector<Vec2i> spawnPoints = std::move(rooms[id].spawnPoints);
    spawnPoints.clear();
    rooms[id] = room;
    rooms[id].spawnPoints = std::move(spawnPoints);
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
        : adjacency(map), lists(roomCount, nullptr) {}

    void MakeEntries(const std::vector<DelaunayTriangle>& triangles) {
        std::vector<char> linked(lists.size(), 0);
        for (const DelaunayTriangle& t : triangles) {
            for (const std::int32_t corner : {t.a, t.b, t.c}) {
                linked[static_cast<std::size_t>(corner)] = 1;
            }
        }
        Adjacency old;
        old.swap(adjacency);
        for (std::size_t room = 0; room < lists.size(); ++room) {
            if (linked[room] != 0) {
                lists[room] = MakeEntry(static_cast<std::uint32_t>(room), old);
            }
        }
    }

    /// Adds two neighbours to a room, in this order.
    void Append(std::int32_t room, std::int32_t first, std::int32_t second) {
        std::vector<std::int32_t>& list = *lists[static_cast<std::size_t>(room)];
        list.push_back(first);
        list.push_back(second);
    }

private:
    std::vector<std::int32_t>* MakeEntry(std::uint32_t room, Adjacency& old) {
        if (old.empty()) {
            return &adjacency.try_emplace(adjacency.end(), room)->second;
        }
        auto node = old.extract(old.begin());
        node.key() = room;
        node.mapped().clear();
        return &adjacency.insert(adjacency.end(), std::move(node))->second;
    }

    Adjacency& adjacency;
    std::vector<std::vector<std::int32_t>*> lists; // by room; null for rooms in no triangle
};

// Grows a spanning tree: knows, for every room outside, the best edge that joins it to the tree.
class TreeGrower {
public:
    TreeGrower(const std::vector<std::int32_t>& rooms, std::size_t roomCount,
               const std::vector<DungeonEdge>& theEdges)
        : edges(theEdges), outside(rooms), firstEnds(roomCount + 1, 0), ends(2 * edges.size()),
          best(roomCount, kNoEdge) {
        ListEnds();
    }

    /// Takes a room in, given by its place among those outside.
    void Join(std::size_t place) {
        const auto room = static_cast<std::size_t>(outside[place]);
        outside[place] = outside.back();
        outside.pop_back();
        for (std::uint32_t i = firstEnds[room]; i < firstEnds[room + 1]; ++i) {
            std::uint64_t& rank = best[static_cast<std::size_t>(ends[i].room)];
            rank = std::min(rank, ends[i].rank); // of no use for a room inside, and no harm
        }
    }

    /// Takes in the room that the shortest edge leads to, and returns the edge; null when no edge
    /// leaves the tree.
    const DungeonEdge* JoinNearest() {
        std::uint64_t least = kNoEdge;
        std::size_t nearest = 0;
        for (std::size_t i = 0; i < outside.size(); ++i) {
            const std::uint64_t rank = best[static_cast<std::size_t>(outside[i])];
            nearest = rank < least ? i : nearest;
            least = std::min(rank, least);
        }
        if (least == kNoEdge) {
            return nullptr;
        }
        Join(nearest);
        return &edges[static_cast<std::size_t>(least & 0xffffffffu)];
    }

private:
    static constexpr std::uint64_t kNoEdge = ~std::uint64_t{0};

    struct End {
        std::int32_t room; // at the other end
        std::uint64_t rank;
    };

    // Length above index, so that the least is the shortest, and the first of equally long ones.
    static std::uint64_t Rank(const DungeonEdge& edge, std::size_t index) {
        return static_cast<std::uint64_t>(edge.lengthSquared) << 32 | index;
    }

    // Both ends of every edge, room by room.
    void ListEnds() {
        for (const DungeonEdge& edge : edges) {
            ++firstEnds[static_cast<std::size_t>(edge.a)];
            ++firstEnds[static_cast<std::size_t>(edge.b)];
        }
        std::partial_sum(firstEnds.begin(), firstEnds.end(), firstEnds.begin());
        for (std::size_t i = 0; i < edges.size(); ++i) {
            const std::uint64_t rank = Rank(edges[i], i);
            ends[--firstEnds[static_cast<std::size_t>(edges[i].a)]] = {edges[i].b, rank};
            ends[--firstEnds[static_cast<std::size_t>(edges[i].b)]] = {edges[i].a, rank};
        }
    }

    const std::vector<DungeonEdge>& edges;
    std::vector<std::int32_t> outside;
    std::vector<std::uint32_t> firstEnds; // by room, into `ends`
    std::vector<End> ends;
    std::vector<std::uint64_t> best; // by room: rank of the best edge into the tree
};

bool SameEnds(const DungeonEdge& a, const DungeonEdge& b) {
    return a.a == b.a && a.b == b.b;
}

} // namespace

std::vector<DelaunayPoint> PlaceRooms(RoomSizes sizes, Twister& rng, DungeonRecord& record) {
    std::vector<DelaunayPoint> centres;
    centres.reserve(kPlacementAttempts);
    const std::int32_t mainSize =
        static_cast<std::int32_t>(static_cast<float>(sizes.largest) * 0.4f);
    const UniformRange side(sizes.smallest, sizes.largest);
    PlacedRooms placed;
    for (std::size_t attempt = 0; attempt < kPlacementAttempts; ++attempt) {
        DungeonRoom room = DrawRoom(side, rng);
        if (!FitIntoCell(sizes, room) || placed.Touch(room)) {
            continue;
        }
        SetCorners(room);
        StoreRoom(room, placed.Count(), record.rooms);
        if (room.w >= mainSize && room.h >= mainSize) {
            const std::int32_t id = static_cast<std::int32_t>(placed.Count());
            record.mainRooms.push_back(id);
            centres.push_back(CentrePoint(room, id));
        }
        placed.Add(room);
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
    TreeGrower tree(record.mainRooms, record.rooms.size(), record.edges);
    tree.Join(0);
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
    std::size_t added = 0;
    for (const DungeonEdge& edge : record.edges) {
        if (added == extra) {
            return;
        }
        const auto same = [&edge](const DungeonEdge& other) { return SameEnds(edge, other); };
        if (std::none_of(record.hallwayEdges.begin(), record.hallwayEdges.end(), same)) {
            record.hallwayEdges.push_back(edge);
            ++added;
        }
    }
}
