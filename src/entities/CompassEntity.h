// A compass marker on one of a dungeon's compass points, one per neighbouring land cell. A cell's
// load job makes it on a worker thread and hands it to the world, which owns it until the cell is
// unloaded.
#pragma once

#include "gfx/Sprite.h"
#include "world/IEntity.h"

#include <cstdint>

class CompassEntity : public IEntity {
public:
    /// Takes the point's index in the cell's list and its position (world units), and cuts the
    /// sprite. Any thread. Always true.
    bool Init(std::int32_t pointIndex, Vec2i point);

    void Update() override {}
    void Render() override;

    Sprite* sprite = nullptr; ///< not owned; null draws nothing
    std::int32_t index = -1;  ///< of the point in the cell's list
};
