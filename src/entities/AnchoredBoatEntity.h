// The player's ship left at the shore; hidden while the player sails. The player entity places,
// shows and hides it. Main thread; owned by the world manager.
#pragma once

#include "gfx/Sprite.h"
#include "world/IEntity.h"

#include <array>
#include <cstdint>

/// Where a ship or figure heads; the world's y grows upward.
namespace Direction {
enum : std::int32_t { Up, Down, Left, Right };
}

/// New sprites of the ship, sailing and anchored alike, by direction; null where the image is
/// missing. The graphics manager owns them. Main thread.
std::array<Sprite*, 4> CutShipSprites();

class AnchoredBoatEntity : public IEntity {
public:
    /// Cuts the sprites, which the graphics manager owns.
    void Init();

    void Update() override {}
    void Render() override;

    std::int32_t direction = 0;       ///< of `Direction`
    std::array<Sprite*, 4> sprites{}; ///< by direction
};
