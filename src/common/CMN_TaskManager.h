// A pool of worker threads that run jobs first in, first out.
//
// One worker fewer than the hardware threads, so that one is left to the main loop. Workers sleep
// while there is no work. Main creates the pool, stops it before the managers that jobs use are
// destroyed, and destroys it late.
#pragma once

#include "app/CMN_Singleton.h"
#include "common/Mutex.h"

#include <cstdint>
#include <functional>
#include <list>
#include <thread>
#include <vector>

class CMN_TaskManager : public CMN_Singleton<CMN_TaskManager> {
public:
    CMN_TaskManager() = default;
    ~CMN_TaskManager() override;

    /// Starts the workers for so many hardware threads. False only when their number is unknown
    /// (0); without workers, jobs wait until the pool is destroyed. Main thread, once.
    bool Init(std::uint32_t threads = std::thread::hardware_concurrency());

    /// Appends a job and wakes one worker. The job must hold a callable. Any thread, jobs included;
    /// after Stop the job is dropped.
    void AddTask(std::function<void()> job) VESK_EXCLUDES(mutex);

    /// Runs the oldest pending job on the calling thread, if there is one, and never waits. For a
    /// program without workers, which calls it between passes.
    void RunOne() VESK_EXCLUDES(mutex);

    /// Drops the pending jobs, lets the running ones finish and joins the workers. Afterwards no
    /// job runs or starts. Main thread; a second call does nothing.
    void Stop() VESK_EXCLUDES(mutex);

private:
    void WorkerLoop() VESK_EXCLUDES(mutex);

    /// Moves the next job into `job`. False when there is none: after waiting, that is the stop.
    bool TakeTask(std::function<void()>& job, bool waits) VESK_EXCLUDES(mutex);

public:
    std::list<std::function<void()>> tasks VESK_GUARDED_BY(mutex); ///< oldest first
    Condition condition; ///< signalled per added job, broadcast at the stop
    Mutex mutex;
    std::uint32_t hardwareThreads = 0; ///< as read by Init
    std::int32_t workerCount = 0;      ///< hardwareThreads - 1

private:
    std::vector<std::thread> workers; ///< in start order; main thread only
    bool stop VESK_GUARDED_BY(mutex) = false;
};
