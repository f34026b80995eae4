#include "gen/UniformInt.h"

#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

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

// Known outputs of the published generator: the 10,000th with its default seed.
TEST(UniformInt, TheStandardEngineIsThePublishedOne) {
    std::mt19937 engine(5489u);
    engine.discard(9999);
    EXPECT_EQ(engine(), 4123659995u);
}

} // namespace
