#include "support/WorkerHold.h"

#include "common/CMN_TaskManager.h"

void WorkerHold::Occupy(std::uint32_t workers) {
    for (std::uint32_t i = 0; i < workers; ++i) {
        CMN_TaskManager::GetInstance()->AddTask([held = gate] {
            std::unique_lock guard(held->lock);
            held->opened.wait(guard, [&held] { return held->open; });
        });
    }
}

void WorkerHold::Release() {
    {
        const std::lock_guard guard(gate->lock);
        gate->open = true;
    }
    gate->opened.notify_all();
    gate = std::make_shared<Gate>();
}
