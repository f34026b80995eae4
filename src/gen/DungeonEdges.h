// Second step of a dungeon: which of its rooms are joined.
//
// Called in this order, each on the record that the steps before it filled. They keep no state; a
// thread calls them for a record of its own. Edges name rooms by their index in `rooms`.
#pragma once

#include <vector>

#include "gen/DungeonRecord.h"
#include "gen/Triangulate.h"

/// Triangulates the main rooms' centres, whose ids are room ids, and fills `edges` and `adjacency`,
/// which uses the memory of an earlier dungeon's lists again.
void TriangulateMainRooms(std::vector<DelaunayPoint>& centres, DungeonRecord& record);

/// Fills `hallwayEdges` with the edges of a minimum spanning tree, grown from the first main room
/// by the shortest edge that leaves the tree. Of equally long ones the first of `edges` is taken.
void BuildSpanningTree(DungeonRecord& record);

/// Adds to `hallwayEdges` three more edges for every ten of the tree, rounded up: the first of
/// `edges` that are not there yet. An edge counts as new when only its reverse is there.
void AddExtraEdges(DungeonRecord& record);
