// The player's ship left at the shore; hidden while the player sails. The player entity places,
// shows and hides it. Main thread; owned by the world manager.
#pragma once

#include <array>
#include <cstdint>

#include "gfx/Sprite.h"
#include "world/IEntity.h"

class AnchoredBoatEntity : public IEntity {
public:
    /// Cuts the sprites, which the graphics manager owns.
    void Init();

    void Update() override {}
    void Render() override;

    std::int32_t direction = 0;             ///< 0 up, 1 down, 2 left, 3 right
    std::array<const Sprite*, 4> sprites{}; ///< by direction
};
