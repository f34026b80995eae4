// The view: the world point at the window's centre and the magnification. It follows its target
// with a dead zone and zooms with the player's input. Main thread; owned by the world manager, in
// no drawing layer.
#pragma once

#include "world/IEntity.h"

class CameraEntity : public IEntity {
public:
    // Within these a start zoom is taken; a change of the zoom may end a little beyond them.
    static constexpr float kMinZoom = 0.01f;
    static constexpr float kMaxZoom = 10.0f;

    void Update() override;
    void Render() override {}

    float zoom = 0.0f;         ///< window pixels per world unit
    IEntity* target = nullptr; ///< not owned

private:
    void UpdateZoom();
    void FollowTarget();
};
