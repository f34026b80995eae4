// First half of a dungeon: the rooms, and which of them are joined.
//
// Steps of the dungeon generator in the order they run, each on the record that the steps before
// it filled. They keep no state; a thread calls them for a record of its own. Units are tiles of
// the cell, x to the right, y up.
#pragma once

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

/// Makes 100 attempts to place a room at random, at least one empty tile away from every other,
/// and fills `rooms` and `mainRooms`. Rooms of an earlier dungeon are overwritten in place, so that
/// their spawn lists keep their memory. Returns the main rooms' centres, ids being room ids.
std::vector<DelaunayPoint> PlaceRooms(RoomSizes sizes, Twister& rng, DungeonRecord& record);

/// Triangulates the centres and fills `edges` and `adjacency`, which keeps the memory of an earlier
/// dungeon's lists.
void TriangulateMainRooms(std::vector<DelaunayPoint>& centres, DungeonRecord& record);

/// Fills `hallwayEdges` with the edges of a minimum spanning tree, grown from the first main room
/// by the shortest edge that leaves the tree. Of equally long ones the first of `edges` is taken.
void BuildSpanningTree(DungeonRecord& record);

/// Adds to `hallwayEdges` three more edges for every ten of the tree, rounded up: the first of
/// `edges` that are not there yet. An edge counts as new when only its reverse is there.
void AddExtraEdges(DungeonRecord& record);
