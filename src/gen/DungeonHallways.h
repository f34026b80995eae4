// Third step of a dungeon: the corridors and the tiles.
//
// Called in this order, each on the record that the steps before it filled. They keep no state; a
// thread calls them for a record of its own. Units are tiles of the cell, x to the right, y up.
#pragma once

#include "gen/DungeonRecord.h"

/// Fills `hallways` from `hallwayEdges`: one straight corridor, three tiles wide, where the middle
/// between the two centres lies beside both rooms, otherwise two that form an L. A corridor of an L
/// can come out with a negative width or height; it covers no tile.
void BuildHallways(DungeonRecord& record);

/// Paints the corridors and then, over them, the main rooms. The tiles must be 0 before. Whatever
/// lies outside the cell's 512 x 512 tiles is left out.
void PaintTiles(DungeonRecord& record);
