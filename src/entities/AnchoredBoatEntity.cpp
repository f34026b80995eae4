#include "entities/AnchoredBoatEntity.h"

#include "entities/CameraEntity.h"
#include "gfx/GFX_GraphicsManager.h"
#include "world/WorldManager.h"

#include <cstddef>

std::array<Sprite*, 4> CutShipSprites() {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    Sprite* down = graphics.CreateSprite("ships.png", 0, 0, 32, 32);
    Sprite* left = graphics.CreateSprite("ships.png", 0, 32, 32, 32);
    Sprite* right = graphics.CreateSprite("ships.png", 0, 64, 32, 32);
    Sprite* up = graphics.CreateSprite("ships.png", 0, 96, 32, 32);
    return {up, down, left, right};
}

void AnchoredBoatEntity::Init() {
    sprites = CutShipSprites();
}

void AnchoredBoatEntity::Render() {
    const CameraEntity& camera = *WorldManager::GetInstance()->camera;
    GFX_GraphicsManager::GetInstance()->DrawSprite(sprites[static_cast<std::size_t>(direction)],
                                                   position, camera.position, camera.zoom);
}
