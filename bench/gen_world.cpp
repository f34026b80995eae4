// How long clusters, neighbour graphs and dungeons take, each beside the least that it has to do:
// seeding a twister and drawing 256 numbers, triangulating the same points, clearing the tiles.
#include "ClusterBlock.h"
#include "gen/Clusters.h"
#include "gen/GEN_DungeonGenerator.h"
#include "gen/Triangulate.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <random>
#include <vector>

namespace {

void BM_BareTwister(benchmark::State& state) {
    std::uint32_t seed = 0;
    for (auto _ : state) {
        std::mt19937 rng(seed++);
        std::uint32_t sum = 0;
        for (int i = 0; i < 256; ++i) {
            sum += static_cast<std::uint32_t>(rng());
        }
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_BareTwister);

void BM_GenerateCluster(benchmark::State& state) {
    ClusterRecord record;
    std::int32_t x = 0;
    for (auto _ : state) {
        GenerateCluster(ClusterKey({x++, 1}), record);
        benchmark::DoNotOptimize(record);
    }
}
BENCHMARK(BM_GenerateCluster);

// The middle of a full block: all nine clusters have ids that are not negative.
constexpr Vec2i kMiddle{11, 21};

void BM_TriangulateBlock(benchmark::State& state) {
    std::vector<DelaunayPoint> input; // the block's land cells
    const ClusterBlock block(kMiddle);
    for (const ClusterRecord& record : block.clusters) {
        for (const auto& [id, flag] : record.cells) {
            if (flag == 1) {
                const Vec2f cell = ToVec2f(DecodeCellId(id));
                input.push_back(
                    {.id = static_cast<std::int32_t>(input.size()), .x = cell.x, .y = cell.y});
            }
        }
    }
    for (auto _ : state) {
        std::vector<DelaunayPoint> points = input;
        std::vector<DelaunayTriangle> triangles;
        benchmark::DoNotOptimize(Triangulate(points, triangles));
    }
    state.counters["points"] = static_cast<double>(input.size());
}
BENCHMARK(BM_TriangulateBlock);

void BM_BuildNeighborGraph(benchmark::State& state) {
    const ClusterBlock block(kMiddle);
    const auto records = block.Pointers();
    CellNeighborMap neighbors;
    for (auto _ : state) {
        BuildNeighborGraph(records.data(), 9, neighbors);
        benchmark::DoNotOptimize(neighbors);
    }
}
BENCHMARK(BM_BuildNeighborGraph);

void BM_ClearTiles(benchmark::State& state) {
    const auto record = std::make_unique<DungeonRecord>();
    for (auto _ : state) {
        record->tiles.fill(0);
        benchmark::DoNotOptimize(record->tiles.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_ClearTiles);

// Another cell every time, into one record, as a pooled record is used.
void BM_GenerateDungeon(benchmark::State& state) {
    const auto record = std::make_unique<DungeonRecord>();
    const GEN_DungeonGenerator generator;
    std::int32_t x = 0;
    for (auto _ : state) {
        generator.Generate(CellKey({x++, 7}), 6, *record);
        benchmark::DoNotOptimize(record->tiles.data());
    }
}
BENCHMARK(BM_GenerateDungeon);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    std::cerr.rdbuf(nullptr); // the lines that the generator says are made but go nowhere
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
