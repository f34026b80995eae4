// Acquire and release of a record that is in use already, beside locking and unlocking the store's
// kind of mutex twice. That is the least that the two calls can do, one lock each; what the rows
// take beyond it is finding the id and counting. No other thread asks for the lock.
#include "common/Mutex.h"
#include "gen/GEN_DungeonGenerator.h"
#include "gen/GridKey.h"
#include "world/ASM_AssetManager.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <sstream>

namespace {

constexpr std::size_t kNeighbors = 6;

GridKey ClusterAt(std::int32_t i) {
    return ClusterKey({10 + i % 3, 20 + i / 3});
}

GridKey CellAt(std::int32_t i) {
    return CellKey({10 + i % 3, 20 + i / 3});
}

// Holds what the game holds around the ship: a block of 3 x 3 clusters and one of 3 x 3 cells.
class HeldBlocks {
public:
    HeldBlocks() {
        std::ostringstream progress;
        std::streambuf* const standardError = std::cerr.rdbuf(progress.rdbuf());
        store.Init();
        for (std::int32_t i = 0; i < 9; ++i) {
            store.AcquireCluster(ClusterAt(i));
            store.AcquireDungeon(CellAt(i), kNeighbors);
        }
        std::cerr.rdbuf(standardError);
    }
    ~HeldBlocks() { GEN_DungeonGenerator::DestroyInstance(); }
    HeldBlocks(const HeldBlocks&) = delete;
    HeldBlocks& operator=(const HeldBlocks&) = delete;

    ASM_AssetManager store;
};

void BM_TwoLocks(benchmark::State& state) {
    Mutex mutex;
    for (auto _ : state) {
        for (int i = 0; i < 2; ++i) {
            const MutexLock guard(mutex);
            benchmark::ClobberMemory();
        }
    }
}
BENCHMARK(BM_TwoLocks);

void BM_AcquireReleaseCluster(benchmark::State& state) {
    HeldBlocks held;
    std::int32_t i = 0;
    for (auto _ : state) {
        const GridKey key = ClusterAt(i);
        benchmark::DoNotOptimize(held.store.AcquireCluster(key));
        held.store.ReleaseCluster(key);
        i = i == 8 ? 0 : i + 1;
    }
}
BENCHMARK(BM_AcquireReleaseCluster);

void BM_AcquireReleaseDungeon(benchmark::State& state) {
    HeldBlocks held;
    std::int32_t i = 0;
    for (auto _ : state) {
        const GridKey key = CellAt(i);
        benchmark::DoNotOptimize(held.store.AcquireDungeon(key, kNeighbors));
        held.store.ReleaseDungeon(key.id);
        i = i == 8 ? 0 : i + 1;
    }
}
BENCHMARK(BM_AcquireReleaseDungeon);

} // namespace

BENCHMARK_MAIN();
