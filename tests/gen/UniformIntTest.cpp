#include "gen/UniformInt.h"

#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "gen/Twister.h"

namespace {

constexpr std::int32_t kLow = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHigh = std::numeric_limits<std::int32_t>::max();

// Hands out given raw outputs.
class ScriptedEngine {
public:
    explicit ScriptedEngine(std::vector<std::uint32_t> theOutputs)
        : outputs(std::move(theOutputs)) {}

    std::uint32_t operator()() { return outputs.at(used++); }
    std::size_t Used() const { return used; }

private:
    std::vector<std::uint32_t> outputs;
    std::size_t used = 0;
};

TEST(UniformInt, OneNumberTakesNoDraw) {
    ScriptedEngine engine({});
    EXPECT_EQ(UniformInt(engine, 7, 7), 7);
    EXPECT_EQ(UniformInt(engine, kLow, kLow), kLow);
    EXPECT_EQ(engine.Used(), 0u);
}

TEST(UniformInt, TheFullRangeAddsOneRawOutput) {
    ScriptedEngine engine({0u, 0xffffffffu, 0x80000000u});
    EXPECT_EQ(UniformInt(engine, kLow, kHigh), kLow);
    EXPECT_EQ(UniformInt(engine, kLow, kHigh), kHigh);
    EXPECT_EQ(UniformInt(engine, kLow, kHigh), 0);
}

// 2^32 = 101 * 42524428 + 68: the 68 largest outputs are drawn again.
TEST(UniformInt, RedrawsInTheIncompleteRunOnly) {
    ScriptedEngine engine({0xffffffffu, 4294967228u, 4294967227u, 106u, 5u});
    EXPECT_EQ(UniformInt(engine, 0, 100), 100);
    EXPECT_EQ(engine.Used(), 3u);
    EXPECT_EQ(UniformInt(engine, 0, 100), 5);
    EXPECT_EQ(UniformInt(engine, -3, 97), 2);
}

TEST(UniformInt, APowerOfTwoNeverRedraws) {
    ScriptedEngine engine({0xffffffffu, 0xffffffffu, 0xffffffffu});
    EXPECT_EQ(UniformInt(engine, 0, 511), 511);
    EXPECT_EQ(UniformInt(engine, kLow, -1), -1);
    EXPECT_EQ(UniformInt(engine, 0, 1), 1);
}

// The largest interval with an incomplete run: 2^31 + 1 numbers, and all above are drawn again.
TEST(UniformInt, WrapsAcrossTheSign) {
    ScriptedEngine engine({0x80000001u, 0x80000000u});
    EXPECT_EQ(UniformInt(engine, kLow, 0), 0);
    EXPECT_EQ(engine.Used(), 2u);
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
