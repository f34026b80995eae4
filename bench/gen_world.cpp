// How long clusters, neighbour graphs and dungeons take, each beside the least that it has to do:
// seeding a twister and drawing 256 numbers, triangulating the same points, clearing the tiles.
//
// Standard error goes to a buffer that drops everything, as in gen_triangulate.cpp.
#include "gen/Clusters.h"
#include "gen/GEN_DungeonGenerator.h"
#include "gen/Triangulate.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <random>
#include <streambuf>
#include <vector>

namespace {

class DroppingBuffer : public std::streambuf {
protected:
    std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
};

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

// A full block: all nine clusters have ids that are not negative.
struct Block {
    std::array<ClusterRecord, 9> records;
    std::array<const ClusterRecord*, 9> pointers{};

    Block() {
        for (std::int32_t i = 0; i < 9; ++i) {
            ClusterRecord& record = records[static_cast<std::size_t>(i)];
            GenerateCluster(ClusterKey({10 + i % 3, 20 + i / 3}), record);
            pointers[static_cast<std::size_t>(i)] = &record;
        }
    }

    std::vector<DelaunayPoint> Land() const {
        std::vector<DelaunayPoint> points;
        for (const ClusterRecord& record : records) {
            for (const auto& [id, flag] : record.cells) {
                if (flag == 1) {
                    const Vec2i cell = DecodeCellId(id);
                    DelaunayPoint point;
                    point.id = static_cast<std::int32_t>(points.size());
                    point.x = static_cast<float>(cell.x);
                    point.y = static_cast<float>(cell.y);
                    points.push_back(point);
                }
            }
        }
        return points;
    }
};

void BM_TriangulateBlock(benchmark::State& state) {
    const std::vector<DelaunayPoint> input = Block().Land();
    for (auto _ : state) {
        std::vector<DelaunayPoint> points = input;
        std::vector<DelaunayTriangle> triangles;
        benchmark::DoNotOptimize(Triangulate(points, triangles));
    }
    state.counters["points"] = static_cast<double>(input.size());
}
BENCHMARK(BM_TriangulateBlock);

void BM_BuildNeighborGraph(benchmark::State& state) {
    const Block block;
    CellNeighborMap neighbors;
    for (auto _ : state) {
        BuildNeighborGraph(block.pointers.data(), 9, neighbors);
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
    DroppingBuffer dropping;
    std::streambuf* const standardError = std::cerr.rdbuf(&dropping);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::cerr.rdbuf(standardError);
    return 0;
}
