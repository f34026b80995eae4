// The base of everything that lives in the world. The world manager owns and deletes every entity.
#pragma once

#include "gfx/Vec2.h"

#include <atomic>

class IEntity {
public:
    IEntity() = default;
    IEntity(const IEntity&) = delete;
    IEntity& operator=(const IEntity&) = delete;

    /// One tick of logic, while active. Main thread.
    virtual void Update() = 0;

    /// Draws, while active. Main thread.
    virtual void Render() = 0;

    virtual ~IEntity() = default;

    /// Updated and drawn only while set. Atomic, because a job that has loaded a cell sets it while
    /// the main thread draws: whoever sees it set also sees what was set up before.
    std::atomic<bool> active{true};

    Vec2i position; ///< world units, y up
};
