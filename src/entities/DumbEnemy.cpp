#include "entities/DumbEnemy.h"

#include "entities/CameraEntity.h"
#include "gfx/GFX_GraphicsManager.h"
#include "world/WorldManager.h"

bool DumbEnemy::Init(Vec2i spawnPoint) {
    position = spawnPoint;
    sprite = GFX_GraphicsManager::GetInstance()->CreateSprite("enemies.png", 0, 0, 16, 16);
    return true;
}

void DumbEnemy::Render() {
    const CameraEntity& camera = *WorldManager::GetInstance()->camera;
    GFX_GraphicsManager::GetInstance()->DrawSprite(sprite, position, camera.position, camera.zoom);
}
