// Reference counts, the pool's order, and many threads on the same few ids.
#include "world/RecordTable.h"

#include "support/Guarded.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <latch>
#include <thread>

namespace {

struct Note {
    std::int32_t id = 0;
    std::array<std::int32_t, 64> body{}; ///< all equal to the id once made
};

const Note* Acquire(RecordTable<Note>& table, std::int32_t id, std::size_t variant = 0) {
    return table.Acquire(id, variant, [=](Note& note) {
        note.id = id;
        note.body.fill(id);
    });
}

} // namespace

TEST(RecordTableTest, CountsReferencesAndReusesTheRecordReleasedLast) {
    RecordTable<Note> table;
    table.Fill(3);
    const Note* first = Acquire(table, 5);
    EXPECT_EQ(Acquire(table, 5), first);
    EXPECT_EQ(PoolSize(table), 2U);
    table.Release(5);
    EXPECT_EQ(table.Find(5), first);
    table.Release(5);
    EXPECT_EQ(table.Find(5), nullptr);
    EXPECT_EQ(PoolSize(table), 3U);
    EXPECT_EQ(Acquire(table, 6), first);
    EXPECT_EQ(first->id, 6);
    table.Release(7); // never acquired
    table.Release(5); // no longer held
    EXPECT_EQ(table.GetRefs(), (RecordTable<Note>::Refs{{6, 1U}}));
}

TEST(RecordTableTest, ARecordForAnotherNumberOfNeighborsStandsBesideTheFirst) {
    RecordTable<Note> table;
    table.Fill(1); // and grows
    const Note* two = Acquire(table, 9, 2);
    const Note* four = Acquire(table, 9, 4);
    EXPECT_NE(two, four);
    EXPECT_EQ(Acquire(table, 9, 2), two);
    EXPECT_EQ(table.GetRefs(), (RecordTable<Note>::Refs{{9, 3U}}));
    table.Release(9);
    table.Release(9);
    EXPECT_EQ(PoolSize(table), 0U) << "a record went back while its id was in use";
    table.Release(9);
    EXPECT_EQ(PoolSize(table), 2U);
    EXPECT_EQ(table.Find(9), nullptr);
}

TEST(RecordTableTest, ManyThreadsShareEachRecordWhichIsMadeOnceAndNeverSeenHalfMade) {
    constexpr std::int32_t held = 50; // every thread acquires these and keeps them
    RecordTable<Note> table;
    std::atomic<int> made{0};
    std::latch ready(8);
    std::atomic<int> wrong{0};
    const auto use = [&](std::int32_t id) {
        const Note* note = table.Acquire(id, 0, [&](Note& fresh) {
            made += id < held ? 1 : 0;
            // The last record is waited for by all threads, and no other one wakes them.
            id < 0 ? ready.wait() : std::this_thread::yield();
            fresh.body.fill(id);
        });
        wrong += static_cast<int>(64 - std::ranges::count(note->body, id));
    };
    std::vector<std::jthread> threads(8);
    std::int32_t seed = 0;
    for (std::jthread& thread : threads) {
        thread = std::jthread([&, step = ++seed] {
            for (std::int32_t id = 0; id < held; ++id) {
                use(id);
            }
            for (std::int32_t round = 0; round < 1000; ++round) { // others come and go
                use(held + round * step % 11);
                table.Release(held + round * step % 11);
            }
            ready.count_down();
            use(-1);
        });
    }
    threads.clear();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(made, held + 1);
    EXPECT_EQ(table.GetRefs().size(), std::size_t{held + 1});
    EXPECT_EQ(table.GetRefs().at(held - 1), 8U);
}
