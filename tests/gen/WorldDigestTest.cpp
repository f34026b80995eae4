// The world is the same whatever was generated before, in whatever order and on however many
// threads, and the same as when the golden file was written.
#include "WorldDigest.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <fstream>
#include <ios>
#include <memory>
#include <numeric>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "gen/ErrorCapture.h"
#include "gen/GEN_DungeonGenerator.h"

namespace {

TEST(WorldDigest, MatchesTheGoldenFile) {
    const ErrorDrop quiet;
    std::ifstream file(std::string(VESK_TEST_DATA_DIR) + "/gen_golden.txt");
    std::size_t records = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#')) {
            continue;
        }
        std::istringstream words(line);
        std::string kind;
        Vec2i place;
        std::size_t neighborCount = 0;
        std::uint64_t expected = 0;
        ASSERT_TRUE(words >> kind >> place.x >> place.y >> neighborCount >> std::hex >> expected)
            << line;
        const std::uint64_t digest = kind == "cluster"     ? ClusterDigest(place)
                                     : kind == "neighbors" ? NeighborDigest(place)
                                                           : DungeonDigest(place, neighborCount);
        EXPECT_EQ(digest, expected) << line;
        ++records;
    }
    EXPECT_EQ(records, 600u);
}

constexpr std::size_t kCells = 2000;

// Cells in the given order, dealt out to the threads as they ask; each thread generates one after
// the other into one record. The digests stand in the cells' own order.
std::vector<std::uint64_t> GenerateOn(std::size_t threadCount,
                                      const std::vector<std::size_t>& order) {
    std::vector<std::uint64_t> digests(order.size(), 0);
    std::atomic<std::size_t> next = 0;
    const GEN_DungeonGenerator generator;
    const auto work = [&] {
        const auto record = std::make_unique<DungeonRecord>();
        for (std::size_t i = next++; i < order.size(); i = next++) {
            const auto cell = static_cast<std::int32_t>(order[i]);
            generator.Generate(CellKey({cell % 40, cell / 40 - 5}), order[i] % 7, *record);
            digests[order[i]] = DigestOf(*record);
        }
    };
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < threadCount; ++i) {
        threads.emplace_back(work);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return digests;
}

TEST(WorldDigest, IsTheSameInEveryOrderAndOnEveryNumberOfThreads) {
    const ErrorDrop quiet;
    std::vector<std::size_t> order(kCells);
    std::iota(order.begin(), order.end(), std::size_t{0});
    const std::vector<std::uint64_t> forward = GenerateOn(1, order);
    std::reverse(order.begin(), order.end());
    EXPECT_EQ(GenerateOn(2, order), forward);
    std::mt19937 rng(5);
    for (std::size_t i = order.size(); i > 1; --i) {
        std::swap(order[i - 1], order[rng() % i]);
    }
    EXPECT_EQ(GenerateOn(8, order), forward);
    std::vector<std::uint64_t> sorted = forward;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end())
        << "different cells must differ";
}

} // namespace
