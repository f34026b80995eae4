#include "entities/ShipSprites.h"

#include "gfx/GFX_GraphicsManager.h"

std::array<const Sprite*, 4> CutShipSprites() {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    const Sprite* down = graphics.CreateSprite("ships.png", 0, 0, 32, 32);
    const Sprite* left = graphics.CreateSprite("ships.png", 0, 32, 32, 32);
    const Sprite* right = graphics.CreateSprite("ships.png", 0, 64, 32, 32);
    const Sprite* up = graphics.CreateSprite("ships.png", 0, 96, 32, 32);
    return {up, down, left, right};
}
