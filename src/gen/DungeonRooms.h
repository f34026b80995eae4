// First step of a dungeon: its rooms.
//
// Keeps no state; a thread calls it for a record of its own. Units are tiles of the cell, x to the
// right, y up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "gen/DungeonRecord.h"
#include "gen/Triangulate.h"
#include "gen/Twister.h"

/// Sizes that a room's width and height are drawn from, in tiles.
struct RoomSizes {
    std::int32_t smallest = 3;
    std::int32_t largest = 25;
};

/// How often a room is tried, so also the most rooms that a dungeon can have.
inline constexpr std::size_t kPlacementAttempts = 100;

/// Makes `kPlacementAttempts` attempts to place a room at random, at least one empty tile away from
/// every other, and fills `rooms` and `mainRooms`. Rooms of an earlier dungeon are overwritten in
/// place, as far as there are new ones, so that their spawn lists keep their memory. Returns the
/// main rooms' centres, ids being indices into `rooms`.
std::vector<DelaunayPoint> PlaceRooms(RoomSizes sizes, Twister& rng, DungeonRecord& record);
