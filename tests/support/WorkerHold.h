// Delays the worker pool: workers can be given jobs that do nothing but wait to be released, so
// that every load queued after them comes late. Without sleeping and without the pool knowing.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>

/// Must be gone, or have released the workers, before the pool is stopped.
class WorkerHold {
public:
    WorkerHold() = default;
    ~WorkerHold() { Release(); }
    WorkerHold(const WorkerHold&) = delete;
    WorkerHold& operator=(const WorkerHold&) = delete;

    /// Queues so many jobs that each occupy a worker until the release.
    void Occupy(std::uint32_t workers);

    /// Lets all of them go on.
    void Release();

private:
    struct Gate {
        std::mutex lock;
        std::condition_variable opened;
        bool open = false;
    };

    std::shared_ptr<Gate> gate = std::make_shared<Gate>();
};
