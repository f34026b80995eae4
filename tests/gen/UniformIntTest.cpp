#include "gen/Random.h"

#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace {

constexpr std::int32_t kLow = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHigh = std::numeric_limits<std::int32_t>::max();

// A draw from scripted raw outputs: what it gives, and how many outputs it takes.
struct Draw {
    std::int32_t lo, hi;
    std::vector<std::uint32_t> outputs;
    std::int32_t expected;
};

TEST(UniformInt, FollowsTheRuleAndUsesNoMoreOutputsThanItNeeds) {
    constexpr std::uint32_t top = 0xffffffffu;
    const Draw draws[] = {
        {7, 7, {}, 7}, // one number takes no draw
        {kLow, kLow, {}, kLow},
        {kLow, kHigh, {0u}, kLow}, // the full range adds one raw output
        {kLow, kHigh, {top}, kHigh},
        {kLow, kHigh, {0x80000000u}, 0},
        // 2^32 = 101 * 42524428 + 68: the 68 largest outputs are drawn again.
        {0, 100, {top, 4294967228u, 4294967227u}, 100},
        {0, 100, {106u}, 5},
        {-3, 97, {5u}, 2},
        {0, 511, {top}, 511}, // a power of two never redraws
        {kLow, -1, {top}, -1},
        {0, 1, {top}, 1},
        // The largest incomplete run: of 2^31 + 1 numbers, and all above are drawn again.
        {kLow, 0, {0x80000001u, 0x80000000u}, 0},
    };
    for (const Draw& draw : draws) {
        std::size_t used = 0;
        const auto engine = [&] { return draw.outputs.at(used++); };
        EXPECT_EQ(UniformInt(engine, draw.lo, draw.hi), draw.expected)
            << draw.lo << ", " << draw.hi;
        EXPECT_EQ(used, draw.outputs.size()) << draw.lo << ", " << draw.hi;
    }
}

// The 10,000th output with the default seed is known, and every other is the standard engine's.
TEST(Twister, IsThePublishedGenerator) {
    Twister twister;
    twister.discard(9999);
    EXPECT_EQ(twister(), 4123659995u);
    for (const std::uint32_t seed : {0u, 1u, 65536u, 0x80000000u, 0xffffffffu}) {
        Twister ours(seed);
        std::mt19937 standard(seed);
        for (int i = 0; i < 2000; ++i) {
            ASSERT_EQ(ours(), standard());
        }
    }
}

} // namespace
