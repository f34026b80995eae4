#include "gen/DungeonEdges.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include "gen/DungeonRooms.h"

namespace {

void AppendEdge(std::int32_t a, std::int32_t b, DungeonRecord& record) {
    const Vec2i d = record.Room(b).center - record.Room(a).center;
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
