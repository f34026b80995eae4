// One of the nine streamed cells.
#pragma once

#include <cstdint>
#include <vector>

#include "gen/GridKey.h"
#include "gfx/Vec2.h"

class IEntity;
class TerrainCellEntity;

/// What a load job is asked to bring into a slot.
struct CellRequest {
    std::uint32_t number = 0; ///< counts the slot's requests
    GridKey cell;
    std::int32_t land = 0; ///< 1 land, 0 sea
    std::vector<GridKey> neighbors;
};

/// The grid's slot lock guards every field.
struct CellSlot {
    Vec2i coords{-1, -1};                    ///< the cell that is loaded; (-1, -1) for none
    TerrainCellEntity* cellEntity = nullptr; ///< owned by the world manager; set once
    std::vector<IEntity*> spawned;           ///< made for the loaded cell, in order; not owned here

    Vec2i target{-1, -1};     ///< the cell that is loaded or asked for
    CellRequest request;      ///< the newest
    std::uint32_t served = 0; ///< number of the request that was last carried out
    bool busy = false;        ///< a job for this slot is queued or running
};
