// An enemy that stands still on a spawn point of a dungeon room. A cell's load job makes it on a
// worker thread and hands it to the world, which owns it until the cell is unloaded.
#pragma once

#include "gfx/Sprite.h"
#include "world/IEntity.h"

class DumbEnemy : public IEntity {
public:
    /// Takes the place (world units) and cuts the sprite. Any thread. Always true.
    bool Init(Vec2i place);

    void Update() override {}
    void Render() override;

    const Sprite* sprite = nullptr;
};
