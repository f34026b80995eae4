// The radar in the window's upper right corner: a compass rose with an icon for every land cell
// around the player. Main thread; owned by the world manager.
#pragma once

#include "gfx/Sprite.h"
#include "gfx/Vec2.h"
#include "world/IEntity.h"

#include <cstdint>
#include <vector>

class HudEntity : public IEntity {
public:
    /// Looks the images up (the graphics manager owns them) and moves to the corner: the
    /// position is the radar's centre in SDL window coordinates. Always true.
    bool Init();

    void Update() override;
    void Render() override;

    TextureInfo* compassTexture = nullptr; ///< null draws nothing
    TextureInfo* islandTexture = nullptr;  ///< null draws nothing
    std::vector<Vec2i> icons;              ///< window pixels, y down
    float pixelsPerCell = 20.0f;
    float radius = 50.0f; ///< the farthest an icon lies from the centre, in pixels

private:
    Vec2i IconFor(Vec2i coords, Vec2f playerInCells) const;
};
