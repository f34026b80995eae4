// Where a ship lies beside an island.
#pragma once

#include "gen/DungeonRecord.h"
#include "gfx/Vec2.h"

#include <optional>

/// The middle, in world units, of a tile of water that touches a main room and from which open
/// water leads to the cell's edges: of the first main room that has one, the first tile around it,
/// from the south row by row. Nothing where there is none, or where a position of 32 bits does not
/// reach. The island's cell comes in cell coordinates.
std::optional<Vec2i> AnchorageOf(Vec2i cell, const DungeonRecord& dungeon);
