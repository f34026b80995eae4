// What must hold of the streamed world whenever it is at rest, whatever happened before.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "gen/GridKey.h"
#include "gfx/Vec2.h"

/// An independent model of which cell each slot holds, and with which neighbours it was loaded:
/// every load takes effect at once.
class SlotModel {
public:
    SlotModel() { cells.fill({-1, -1}); }

    /// Follows the player into a cell (cell coordinates).
    void MoveTo(Vec2i cell);

    /// Does what a tick does with the player at a place (world units). True when that lies in
    /// another cell than the place before.
    bool Follow(Vec2i place);

    const std::array<Vec2i, 9>& Cells() const { return cells; }
    const std::vector<GridKey>& Neighbors(std::size_t slot) const { return neighbors[slot]; }
    Vec2i Cluster() const { return cluster; }

private:
    std::array<Vec2i, 9> cells;
    std::array<std::vector<GridKey>, 9> neighbors;
    Vec2i cluster;
    std::int32_t lastCellId = kUnsetId;
};

/// Checks the world at rest (no load pending, one tick run since) against the model: slots, terrain
/// entities, enemies and markers in layer 2, entity count, reference counts. What the generator
/// makes is compared with what it makes of the keys alone.
void CheckWorldAtRest(const SlotModel& model);
