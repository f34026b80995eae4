#include "common/CMN_TaskManager.h"

#include "support/Signal.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <numeric>
#include <thread>
#include <vector>

namespace {

// Runs `work`; ends the whole process when it hangs, as nothing else can end a thread.
template <typename Work>
void RunWithDeadline(Work work) {
    Signal done;
    std::thread thread([&] {
        work();
        done.Raise();
    });
    if (!done.Wait()) {
        std::cerr << "the pool hangs" << std::endl;
        std::abort();
    }
    thread.join();
}

} // namespace

TEST(TaskManagerTest, OneWorkerRunsJobsInTheOrderAdded) {
    CMN_TaskManager pool;
    ASSERT_TRUE(pool.Init(2));
    EXPECT_EQ(pool.workerCount, 1);
    std::vector<int> order; // written by the one worker
    Signal done;
    for (int i = 0; i < 100; ++i) {
        pool.AddTask([&order, i] { order.push_back(i); });
    }
    pool.AddTask([&done] { done.Raise(); });
    ASSERT_TRUE(done.Wait());
    std::vector<int> expected(100);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
}

TEST(TaskManagerTest, EveryWorkerRunsAJobAtTheSameTime) {
    const std::thread::id caller = std::this_thread::get_id();
    CMN_TaskManager pool;
    ASSERT_TRUE(pool.Init(8));
    EXPECT_EQ(pool.workerCount, 7);
    std::atomic<int> arrived{0};
    Signal allArrived;
    std::vector<Signal> ended(7);
    for (Signal& end : ended) {
        pool.AddTask([&] {
            EXPECT_NE(std::this_thread::get_id(), caller);
            if (++arrived == 7) {
                allArrived.Raise();
            }
            EXPECT_TRUE(allArrived.Wait()) << "fewer jobs than workers run at once";
            end.Raise();
        });
    }
    for (Signal& end : ended) {
        ASSERT_TRUE(end.Wait());
    }
}

TEST(TaskManagerTest, JobsMayAddJobs) {
    CMN_TaskManager pool;
    ASSERT_TRUE(pool.Init(2));
    Signal done;
    pool.AddTask([&] { pool.AddTask([&] { pool.AddTask([&] { done.Raise(); }); }); });
    EXPECT_TRUE(done.Wait());
}

TEST(TaskManagerTest, StoppingDropsPendingJobsAndFinishesTheRunningOne) {
    const auto pending = std::make_shared<int>(0); // counted by its holders
    bool finished = false;
    Signal running;
    CMN_TaskManager pool;
    ASSERT_TRUE(pool.Init(2));
    pool.AddTask([&] {
        running.Raise();
        // All but the test's own holder go before the pool waits for this job.
        RunWithDeadline([&] {
            while (pending.use_count() > 1) {
                std::this_thread::yield();
            }
        });
        finished = true;
    });
    for (int i = 0; i < 50; ++i) {
        pool.AddTask([pending] { ADD_FAILURE() << "a pending job runs"; });
    }
    ASSERT_TRUE(running.Wait());
    pool.Stop();
    EXPECT_TRUE(finished);
    EXPECT_EQ(pending.use_count(), 1);
    // What comes later is dropped as well, and a second stop does nothing.
    pool.AddTask([pending] { ADD_FAILURE() << "a job runs after the stop"; });
    EXPECT_EQ(pending.use_count(), 1) << "a job is kept that can never run";
    pool.Stop();
}

TEST(TaskManagerTest, WithoutWorkersJobsWaitUntilTheyAreDropped) {
    const auto token = std::make_shared<int>(0);
    for (const std::uint32_t threads : {0U, 1U}) {
        CMN_TaskManager pool;
        EXPECT_EQ(pool.Init(threads), threads == 1);
        EXPECT_EQ(pool.workerCount, 0);
        pool.AddTask([token] { ADD_FAILURE() << "a job runs without a worker"; });
        EXPECT_EQ(token.use_count(), 2);
        pool.Stop();
        EXPECT_EQ(token.use_count(), 1);
    }
    CMN_TaskManager machine;
    EXPECT_EQ(machine.Init(), std::thread::hardware_concurrency() != 0);
    EXPECT_EQ(machine.hardwareThreads, std::thread::hardware_concurrency());
}

TEST(TaskManagerTest, NoWorkerMissesTheStop) {
    RunWithDeadline([] {
        for (int round = 0; round < 400; ++round) {
            std::atomic<bool> stopped{false};
            CMN_TaskManager pool;
            pool.Init(static_cast<std::uint32_t>(2 + round % 4));
            for (int job = 0; job < round % 3; ++job) {
                pool.AddTask([&stopped] { EXPECT_FALSE(stopped) << "a job outlives the stop"; });
            }
            if (round % 2 == 0) {
                std::this_thread::yield(); // now and then the workers get to wait first
            }
            pool.Stop();
            stopped = true;
        }
    });
}
