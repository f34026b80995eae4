// Delays the worker pool: workers can be given jobs that do nothing but wait to be released, so
// that every load queued after them comes late.
#pragma once

#include <cstdint>
#include <memory>

#include "common/CMN_TaskManager.h"
#include "support/Signal.h"

/// Must be gone, or have released the workers, before the pool is stopped.
class WorkerHold {
public:
    WorkerHold() = default;
    ~WorkerHold() { Release(); }
    WorkerHold(const WorkerHold&) = delete;
    WorkerHold& operator=(const WorkerHold&) = delete;

    /// Queues so many jobs that each occupy a worker until the release.
    void Occupy(std::uint32_t workers) {
        for (std::uint32_t i = 0; i < workers; ++i) {
            CMN_TaskManager::GetInstance()->AddTask([held = gate] { held->Wait(); });
        }
    }

    void Release() {
        gate->Raise();
        gate = std::make_shared<Signal>();
    }

private:
    std::shared_ptr<Signal> gate = std::make_shared<Signal>();
};
