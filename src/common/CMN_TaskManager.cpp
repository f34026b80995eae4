#include "common/CMN_TaskManager.h"

#include <utility>

CMN_TaskManager::~CMN_TaskManager() {
    Stop();
}

bool CMN_TaskManager::Init(std::uint32_t threads) {
    hardwareThreads = threads;
    if (hardwareThreads == 0) {
        return false;
    }
    workerCount = static_cast<std::int32_t>(hardwareThreads - 1);
    for (std::int32_t i = 0; i < workerCount; ++i) {
        workers.emplace_back(&CMN_TaskManager::WorkerLoop, this);
    }
    return true;
}

void CMN_TaskManager::AddTask(std::function<void()> job) {
    const MutexLock lock(mutex);
    if (stop) {
        return;
    }
    tasks.push_back(std::move(job));
    condition.Signal();
}

void CMN_TaskManager::RunOne() {
    std::function<void()> job;
    if (TakeTask(job, false)) {
        job();
    }
}

void CMN_TaskManager::Stop() {
    std::list<std::function<void()>> dropped;
    {
        const MutexLock lock(mutex);
        // The workers test the flag under the same lock before they wait, so none can miss it.
        stop = true;
        dropped.swap(tasks);
        condition.Broadcast();
    }
    dropped.clear(); // outside the lock, as destroying a job may run any code
    for (std::thread& worker : workers) {
        worker.join();
    }
    workers.clear();
}

void CMN_TaskManager::WorkerLoop() {
    std::function<void()> job;
    while (TakeTask(job, true)) {
        job();
        job = nullptr;
    }
}

bool CMN_TaskManager::TakeTask(std::function<void()>& job, bool waits) {
    const MutexLock lock(mutex);
    while (waits && tasks.empty() && !stop) {
        condition.Wait(mutex);
    }
    if (tasks.empty()) { // as they are after the stop
        return false;
    }
    job = std::move(tasks.front());
    tasks.pop_front();
    return true;
}
