#include "entities/CameraEntity.h"

#include "gfx/GFX_GraphicsManager.h"
#include "input/CMN_InputManager.h"
#include "world/WorldManager.h"

namespace {

constexpr float kZoomPerTick = 0.1f; // share of the zoom
constexpr float kDeadZone = 0.2f;    // share of half the window

// How far an offset lies beyond the dead zone, along one axis.
std::int32_t Overshoot(std::int32_t offset, std::int32_t deadZone) {
    if (offset > deadZone) {
        return WrapSub(offset, deadZone);
    }
    if (offset < WrapSub(0, deadZone)) {
        return WrapAdd(offset, deadZone);
    }
    return 0;
}

} // namespace

void CameraEntity::Update() {
    if (WorldManager::GetInstance()->mapMode == 0) {
        UpdateZoom();
    }
    FollowTarget();
}

void CameraEntity::UpdateZoom() {
    const CMN_InputManager& input = *CMN_InputManager::GetInstance();
    // The bounds are tested before the change.
    if (zoom > kMinZoom) {
        zoom -= zoom * kZoomPerTick * input.ActionValue(InputAction::ZoomOut);
    }
    if (zoom < kMaxZoom) {
        zoom += zoom * kZoomPerTick * input.ActionValue(InputAction::ZoomIn);
    }
}

void CameraEntity::FollowTarget() {
    const Vec2i deadZone = GFX_GraphicsManager::GetInstance()->screenCenter * kDeadZone;
    const Vec2i offset = (target->position - position) * zoom;
    // Window pixels are taken for world units here: away from zoom 1 the view eases in or hurries.
    position = position + Vec2i{Overshoot(offset.x, deadZone.x), Overshoot(offset.y, deadZone.y)};
}
