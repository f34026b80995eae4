#include "entities/AnchoredBoatEntity.h"

#include "entities/CameraEntity.h"
#include "entities/ShipSprites.h"
#include "gfx/GFX_GraphicsManager.h"
#include "world/WorldManager.h"

void AnchoredBoatEntity::Init() {
    sprites = CutShipSprites();
}

void AnchoredBoatEntity::Render() {
    const CameraEntity& camera = *WorldManager::GetInstance()->camera;
    GFX_GraphicsManager::GetInstance()->DrawSprite(sprites[static_cast<std::size_t>(direction)],
                                                   position, camera.position, camera.zoom);
}
