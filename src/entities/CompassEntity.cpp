#include "entities/CompassEntity.h"

#include "entities/CameraEntity.h"
#include "gfx/GFX_GraphicsManager.h"
#include "world/WorldManager.h"

namespace {

constexpr std::int32_t kMarkerSize = 32; // world units

} // namespace

bool CompassEntity::Init(std::int32_t pointIndex, Vec2i point) {
    index = pointIndex;
    position = point;
    sprite = GFX_GraphicsManager::GetInstance()->CreateSprite("compass.png", 0, 0, 128, 128);
    return true;
}

void CompassEntity::Render() {
    const CameraEntity& camera = *WorldManager::GetInstance()->camera;
    GFX_GraphicsManager::GetInstance()->DrawSpriteSized(sprite, position, camera.position,
                                                        camera.zoom, kMarkerSize);
}
