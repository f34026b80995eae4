#include "gen/DungeonRooms.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "gen/UniformInt.h"

namespace {

constexpr int kPlacementAttempts = 100;
constexpr std::int32_t kLastTile = kCellTiles - 1;

const DungeonRoom& RoomOf(const DungeonRecord& record, std::int32_t id) {
    return record.rooms[static_cast<std::size_t>(id)];
}

// Always four draws, in this order.
DungeonRoom DrawRoom(RoomSizes sizes, std::mt19937& rng) {
    DungeonRoom room;
    room.x = UniformInt(rng, 0, kLastTile);
    room.y = UniformInt(rng, 0, kLastTile);
    room.w = UniformInt(rng, sizes.smallest, sizes.largest);
    room.h = UniformInt(rng, sizes.smallest, sizes.largest);
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

// Rooms whose edges coincide touch as well.
bool Touches(const DungeonRoom& a, const DungeonRoom& b) {
    return a.x + a.w >= b.x && a.x <= b.x + b.w && a.y >= b.y - b.h && a.y - a.h <= b.y;
}

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

void AppendNeighbors(std::int32_t room, std::int32_t first, std::int32_t second,
                     DungeonRecord& record) {
    std::vector<std::int32_t>& list = record.adjacency[static_cast<std::uint32_t>(room)];
    list.push_back(first);
    list.push_back(second);
}

bool SameEnds(const DungeonEdge& a, const DungeonEdge& b) {
    return a.a == b.a && a.b == b.b;
}

} // namespace

std::vector<DelaunayPoint> PlaceRooms(RoomSizes sizes, std::mt19937& rng, DungeonRecord& record) {
    std::vector<DelaunayPoint> centres;
    const std::int32_t mainSize =
        static_cast<std::int32_t>(static_cast<float>(sizes.largest) * 0.4f);
    std::size_t placed = 0;
    for (int attempt = 0; attempt < kPlacementAttempts; ++attempt) {
        DungeonRoom room = DrawRoom(sizes, rng);
        const auto end = record.rooms.begin() + static_cast<std::ptrdiff_t>(placed);
        const auto touches = [&room](const DungeonRoom& other) { return Touches(room, other); };
        if (!FitIntoCell(sizes, room) || std::any_of(record.rooms.begin(), end, touches)) {
            continue;
        }
        SetCorners(room);
        StoreRoom(room, placed, record.rooms);
        if (room.w >= mainSize && room.h >= mainSize) {
            const std::int32_t id = static_cast<std::int32_t>(placed);
            record.mainRooms.push_back(id);
            centres.push_back(CentrePoint(room, id));
        }
        ++placed;
    }
    record.rooms.resize(placed);
    return centres;
}

std::vector<DungeonEdge> TriangulateMainRooms(std::vector<DelaunayPoint>& centres,
                                              DungeonRecord& record) {
    for (auto& [room, list] : record.adjacency) {
        list.clear();
    }
    std::vector<DelaunayTriangle> triangles;
    Triangulate(centres, triangles);
    for (const DelaunayTriangle& t : triangles) {
        AppendEdge(t.a, t.b, record);
        AppendEdge(t.b, t.c, record);
        AppendEdge(t.c, t.a, record);
        AppendNeighbors(t.a, t.b, t.c, record);
        AppendNeighbors(t.b, t.a, t.c, record);
        AppendNeighbors(t.c, t.b, t.a, record);
    }
    std::erase_if(record.adjacency, [](const auto& entry) { return entry.second.empty(); });
    std::vector<DungeonEdge> sorted = record.edges;
    std::stable_sort(sorted.begin(), sorted.end(), [](const DungeonEdge& a, const DungeonEdge& b) {
        return a.lengthSquared < b.lengthSquared;
    });
    return sorted;
}

void BuildSpanningTree(const std::vector<DungeonEdge>& sortedEdges, DungeonRecord& record) {
    const std::size_t vertices = record.adjacency.size();
    if (vertices < 2) {
        return;
    }
    std::vector<char> inTree(record.rooms.size(), 0);
    inTree[static_cast<std::size_t>(record.mainRooms[0])] = 1;
    // A chosen edge has both ends in the tree from then on, so it needs no removal.
    const auto leavesTree = [&inTree](const DungeonEdge& edge) {
        return inTree[static_cast<std::size_t>(edge.a)] != inTree[static_cast<std::size_t>(edge.b)];
    };
    for (std::size_t found = 1; found < vertices; ++found) {
        const auto edge = std::find_if(sortedEdges.begin(), sortedEdges.end(), leavesTree);
        if (edge == sortedEdges.end()) {
            return;
        }
        record.hallwayEdges.push_back(*edge);
        inTree[static_cast<std::size_t>(edge->a)] = 1;
        inTree[static_cast<std::size_t>(edge->b)] = 1;
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
