// A compass marker on one of a dungeon's compass points, one per neighbouring land cell. A cell's
// load job makes it on a worker thread and hands it to the world, which owns it until the cell is
// unloaded.
#pragma once

#include <cstdint>

#include "gfx/Sprite.h"
#include "world/IEntity.h"

class CompassEntity : public IEntity {
public:
    /// Takes the point's place in the cell's list and in the world (world units), and cuts the
    /// sprite. Any thread. Always true.
    bool Init(std::int32_t pointIndex, Vec2i place);

    void Update() override {}
    void Render() override;

    const Sprite* sprite = nullptr;
    std::int32_t index = -1;
};
