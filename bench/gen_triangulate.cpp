// How long a triangulation takes, beside CGAL's on the same points where CGAL is installed.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <random>
#include <set>
#include <utility>
#include <vector>
#ifdef VESK_HAVE_CGAL
#include <CGAL/Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#endif

#include "gen/Random.h"
#include "gen/Triangulate.h"

namespace {

using PointSets = std::vector<std::vector<DelaunayPoint>>;

// Distinct lattice points, as dense as the land cells of a 3 x 3 block of clusters.
std::vector<DelaunayPoint> LatticePoints(std::int64_t count, std::mt19937& rng) {
    constexpr double cellsPerPoint = 2304.0 / 137.0;
    const auto side = static_cast<std::int32_t>(
        std::lround(std::sqrt(static_cast<double>(count) * cellsPerPoint)));
    std::set<std::pair<std::int32_t, std::int32_t>> taken;
    std::vector<DelaunayPoint> points;
    while (static_cast<std::int64_t>(points.size()) < count) {
        const std::int32_t x = UniformInt(rng, 0, side - 1);
        const std::int32_t y = UniformInt(rng, 0, side - 1);
        if (taken.insert({x, y}).second) {
            DelaunayPoint point;
            point.id = static_cast<std::int32_t>(points.size());
            point.x = static_cast<float>(x);
            point.y = static_cast<float>(y);
            points.push_back(point);
        }
    }
    return points;
}

// Several sets, which a benchmark takes in turn: the same one again and again would train the
// processor's branch prediction.
PointSets LatticeSets(std::int64_t count) {
    const int sets = count <= 1000 ? 64 : (count <= 10000 ? 8 : 2);
    std::mt19937 rng(static_cast<std::uint32_t>(count));
    PointSets result;
    for (int i = 0; i < sets; ++i) {
        result.push_back(LatticePoints(count, rng));
    }
    return result;
}

void BM_Triangulate(benchmark::State& state) {
    const PointSets sets = LatticeSets(state.range(0));
    std::size_t turn = 0;
    for (auto _ : state) {
        std::vector<DelaunayPoint> points = sets[turn++ % sets.size()];
        std::vector<DelaunayTriangle> triangles;
        benchmark::DoNotOptimize(Triangulate(points, triangles));
        benchmark::DoNotOptimize(triangles.data());
    }
}

#ifdef VESK_HAVE_CGAL
void BM_CgalDelaunay(benchmark::State& state) {
    using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
    std::vector<std::vector<Kernel::Point_2>> sets;
    for (const std::vector<DelaunayPoint>& points : LatticeSets(state.range(0))) {
        sets.emplace_back();
        for (const DelaunayPoint& point : points) {
            sets.back().emplace_back(point.x, point.y);
        }
    }
    std::size_t turn = 0;
    for (auto _ : state) {
        const std::vector<Kernel::Point_2>& input = sets[turn++ % sets.size()];
        CGAL::Delaunay_triangulation_2<Kernel> triangulation(input.begin(), input.end());
        benchmark::DoNotOptimize(triangulation.number_of_faces());
    }
}
BENCHMARK(BM_CgalDelaunay)->Arg(137)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);
#endif

BENCHMARK(BM_Triangulate)->Arg(137)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    std::cerr.rdbuf(nullptr); // the lines that the generator says are made but go nowhere
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
