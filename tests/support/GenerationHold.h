// Stops loads in the middle of a dungeon's generation, where the generator says a line on standard
// error: other threads than the one that made the hold wait there while it is closed.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "support/QuietStderr.h"

class GenerationHold : public QuietStderr {
public:
    void Close() {
        const std::lock_guard guard(lock);
        open = false;
    }

    void Open() {
        const std::lock_guard guard(lock);
        open = true;
        opened.notify_all();
    }

private:
    void OnOutput() override {
        if (std::this_thread::get_id() != owner) {
            std::unique_lock guard(lock);
            opened.wait(guard, [this] { return open; });
        }
    }

    const std::thread::id owner = std::this_thread::get_id();
    std::mutex lock;
    std::condition_variable opened;
    bool open = true;
};
