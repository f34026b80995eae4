// An entity that tells what the world does with it.
#pragma once

#include "world/WorldManager.h"

#include <functional>
#include <memory>

class Probe : public IEntity {
public:
    ~Probe() override { onDestroy(); }
    void Update() override { onUpdate(); }
    void Render() override { onRender(); }

    std::function<void()> onUpdate = [] {};
    std::function<void()> onRender = [] {};
    std::function<void()> onDestroy = [] {};
};

/// A new probe that the world owns.
inline Probe& AddProbe(std::int32_t layer) {
    auto* const probe = new Probe;
    WorldManager::GetInstance()->AddEntity(probe, layer);
    return *probe;
}
