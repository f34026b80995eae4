// The worker pool.
#include "common/CMN_TaskManager.h"

#include "support/Holds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <vector>

TEST(PoolTest, OneWorkerRunsJobsInOrderAndTheseMayAddMoreAndGoWhenTheyHaveRun) {
    std::vector<int> order; // written by the one worker
    Signal done;
    CMN_TaskManager pool;
    ASSERT_TRUE(pool.Init(2));
    for (int i = 0; i < 100; ++i) {
        pool.AddTask([&order, i] { order.push_back(i); });
    }
    pool.AddTask([&] {
        pool.AddTask([held = std::shared_ptr<Signal>(&done, [](Signal* s) { s->Raise(); })] {});
    });
    ASSERT_TRUE(done.Wait());
    EXPECT_EQ(order.size(), 100U);
    EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST(PoolTest, EveryWorkerRunsAJobAtTheSameTime) {
    CMN_TaskManager pool;
    ASSERT_TRUE(pool.Init(8));
    EXPECT_EQ(pool.workerCount, 7);
    for (int round = 0; round < 20; ++round) { // in all but the first, workers have to be woken
        std::atomic<int> arrived{0};
        Signal allArrived;
        std::vector<Signal> ended(7);
        for (Signal& end : ended) {
            pool.AddTask([&] {
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
}

TEST(PoolTest, WithoutWorkersTheCallerRunsOneJobAtATimeInTheOrderAdded) {
    std::vector<int> order;
    CMN_TaskManager pool;
    ASSERT_TRUE(pool.Init(1));
    pool.AddTask([&] {
        order.push_back(1);
        pool.AddTask([&order] { order.push_back(3); });
    });
    pool.AddTask([&order] { order.push_back(2); });
    for (std::size_t ran = 0; ran <= 3; ++ran) {
        EXPECT_EQ(order.size(), ran);
        pool.RunOne(); // without a job at last
    }
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

TEST(PoolTest, NoWorkerMissesTheStop) {
    EXPECT_FALSE(CMN_TaskManager().Init(0)) << "an unknown machine";
    for (std::uint32_t round = 0; round < 400; ++round) {
        std::atomic<bool> stopped{false};
        CMN_TaskManager pool;
        pool.Init(2 + round % 4);
        pool.AddTask([&stopped] { EXPECT_FALSE(stopped) << "a job outlives the stop"; });
        if (round % 2 == 0) {
            std::this_thread::yield(); // now and then the workers get to wait first
        }
        pool.Stop();
        stopped = true;
        const auto late = std::make_shared<int>();
        pool.AddTask([late] {});
        EXPECT_EQ(late.use_count(), 1) << "a job is kept that can never run";
    }
}
