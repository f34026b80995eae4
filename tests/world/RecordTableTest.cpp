// Reference counts, the pool's order, and many threads on the same few ids.
#include "world/RecordTable.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <random>
#include <thread>
#include <vector>

namespace {

struct Note {
    std::int32_t id = 0;
    std::size_t variant = 0;
    std::array<std::int32_t, 64> body{}; ///< all equal to the id once made
};

void Make(Note& note, std::int32_t id, std::size_t variant) {
    note.id = id;
    note.variant = variant;
    note.body.fill(id);
}

const Note* Acquire(RecordTable<Note>& table, std::int32_t id, std::size_t variant = 0) {
    return table.Acquire(id, variant, [=](Note& note) { Make(note, id, variant); });
}

} // namespace

TEST(RecordTableTest, CountsReferencesAndReusesTheRecordReleasedLast) {
    RecordTable<Note> table;
    table.Fill(3);
    const Note* first = Acquire(table, 5);
    EXPECT_EQ(Acquire(table, 5), first);
    EXPECT_EQ(table.PoolSize(), 2U);
    table.Release(5);
    EXPECT_EQ(table.Find(5), first);
    table.Release(5);
    EXPECT_EQ(table.Find(5), nullptr);
    EXPECT_EQ(table.PoolSize(), 3U);

    const Note* reused = Acquire(table, 6);
    EXPECT_EQ(reused, first);
    EXPECT_EQ(reused->id, 6);
    table.Release(7); // never acquired
    table.Release(5); // no longer held
    ASSERT_EQ(table.ListHeld().size(), 1U);
    EXPECT_EQ(table.ListHeld()[0].id, 6);
    EXPECT_EQ(table.ListHeld()[0].count, 1U);
}

TEST(RecordTableTest, GrowsWhenABurstEmptiesThePool) {
    RecordTable<Note> table;
    table.Fill(2);
    for (std::int32_t id = 0; id < 20; ++id) {
        EXPECT_EQ(Acquire(table, id)->body.back(), id);
    }
    for (std::int32_t id = 0; id < 20; ++id) {
        EXPECT_EQ(table.Find(id)->id, id);
        table.Release(id);
    }
    EXPECT_EQ(table.PoolSize(), 20U);
}

TEST(RecordTableTest, AnotherVariantDisplacesARecordThatItsHolderKeeps) {
    RecordTable<Note> table;
    table.Fill(1);
    const Note* former = Acquire(table, 9, 2);
    const Note* current = Acquire(table, 9, 4);
    EXPECT_NE(former, current);
    EXPECT_EQ(former->variant, 2U);
    EXPECT_EQ(table.Find(9)->variant, 4U);
    EXPECT_EQ(Acquire(table, 9, 2), former) << "a displaced record serves its variant again";
    table.Release(9);
    table.Release(9); // the overtaken holder
    EXPECT_EQ(table.Find(9), former);
    EXPECT_EQ(current->variant, 4U);
    EXPECT_EQ(table.PoolSize(), 0U) << "the displaced record went back while its id was in use";
    table.Release(9);
    EXPECT_EQ(table.PoolSize(), 2U);
    EXPECT_TRUE(table.ListHeld().empty());
}

TEST(RecordTableTest, ManyThreadsShareOverlappingIds) {
    constexpr std::int32_t kIds = 6;
    constexpr int kThreads = 8;
    RecordTable<Note> table;
    table.Fill(3);
    std::array<std::atomic<int>, kIds> made{};
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    // Held throughout, so that each id below is made once however many threads ask for it.
    for (std::int32_t id = 0; id < kIds / 2; ++id) {
        Acquire(table, id);
        made[static_cast<std::size_t>(id)] = 1;
    }
    threads.reserve(kThreads);
    for (unsigned seed = 0; seed < kThreads; ++seed) {
        threads.emplace_back([&, seed] {
            std::mt19937 random(seed);
            for (int round = 0; round < 2000; ++round) {
                const auto id = static_cast<std::int32_t>(random() % kIds);
                const Note* note = table.Acquire(id, 0, [&](Note& fresh) {
                    ++made[static_cast<std::size_t>(id)];
                    Make(fresh, id, 0);
                });
                for (const std::int32_t value : note->body) {
                    wrong += value == id ? 0 : 1;
                }
                table.Release(id);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
    for (std::int32_t id = 0; id < kIds / 2; ++id) {
        EXPECT_EQ(made[static_cast<std::size_t>(id)], 1);
        table.Release(id);
    }
    EXPECT_TRUE(table.ListHeld().empty());
    EXPECT_GE(table.PoolSize(), 3U);
}

TEST(RecordTableTest, ASimultaneousRequestWaitsForTheRecordBeingMade) {
    RecordTable<Note> table;
    Mutex mutex;
    Condition changed;
    bool making = false;
    bool asked = false;
    int times = 0;
    const auto slowly = [&](Note& note) {
        const MutexLock lock(mutex);
        making = true;
        ++times;
        changed.Broadcast();
        while (!asked) {
            changed.Wait(mutex);
        }
        Make(note, 1, 0);
    };
    std::thread first([&] { table.Acquire(1, 0, slowly); });
    {
        const MutexLock lock(mutex);
        while (!making) {
            changed.Wait(mutex);
        }
    }
    EXPECT_EQ(table.Find(1), nullptr) << "a half-made record is visible";
    EXPECT_TRUE(table.ListHeld().empty());
    const Note* second = nullptr;
    std::thread other([&] {
        {
            const MutexLock lock(mutex);
            asked = true;
            changed.Broadcast();
        }
        second = table.Acquire(1, 0, slowly);
    });
    first.join();
    other.join();
    EXPECT_EQ(times, 1);
    EXPECT_EQ(second->body.back(), 1);
    EXPECT_EQ(table.ListHeld()[0].count, 2U);
}
