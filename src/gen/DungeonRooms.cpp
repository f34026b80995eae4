#include "gen/DungeonRooms.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "gen/Twister.h"
#include "gen/UniformInt.h"

namespace {

constexpr std::int32_t kLastTile = kCellTiles - 1;

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
