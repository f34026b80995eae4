// An enemy that stands still on a spawn point of a dungeon room. A cell's load job makes it on a
// worker thread and hands it to the world, which owns it until the cell is unloaded.
#pragma once

#include "gfx/Sprite.h"
#include "world/IEntity.h"

class DumbEnemy : public IEntity {
public:
    /// Takes the spawn point (world units) and cuts the sprite. Any thread. Always true.
    bool Init(Vec2i spawnPoint);

    void Update() override {}
    void Render() override;

    Sprite* sprite = nullptr; ///< not owned; null draws nothing
};
