// What must hold of the streamed world whenever it is at rest, whatever happened before.
#pragma once

#include <array>

#include "gfx/Vec2.h"

/// An independent model of which cell each slot holds: every load takes effect at once.
class SlotModel {
public:
    SlotModel() { cells.fill({-1, -1}); }

    /// Follows the player into a cell (cell coordinates).
    void MoveTo(Vec2i cell);

    const std::array<Vec2i, 9>& Cells() const { return cells; }

private:
    std::array<Vec2i, 9> cells;
};

/// Checks the world at rest (no load pending, one tick run since) against the model: slots, terrain
/// entities, enemies and markers in layer 2, entity count, reference counts. Fails the test on the
/// first difference.
void CheckWorldAtRest(const SlotModel& model);
