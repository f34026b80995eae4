// What must hold of the streamed world whenever it is at rest, whatever happened before.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "gen/GridKey.h"

/// An independent model of which cell each slot holds, and with which neighbours it was loaded:
/// every load takes effect at once.
class WorldModel {
public:
    WorldModel() { cells.fill({-1, -1}); }

    /// Does what a tick does with the player where it is. True when that is another cell than
    /// before.
    bool Follow();

    /// What is wrong with the world at rest (no load pending, one tick run since): slots, terrain
    /// entities, enemies and markers in layer 2, numbers of entities and references. What the
    /// generator makes is compared with what it makes of the keys alone. Empty when all is well.
    std::string Faults() const;

private:
    void MoveTo(Vec2i center);

    std::array<Vec2i, 9> cells;
    std::array<std::vector<GridKey>, 9> neighbors;
    Vec2i cluster;
    std::int32_t lastCellId = kUnsetId;
};
