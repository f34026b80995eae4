#include "common/Arithmetic.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

} // namespace

TEST(ArithmeticTest, WrapsAtBothEnds) {
    EXPECT_EQ(WrapAdd(kHighest, 1), kLowest);
    EXPECT_EQ(WrapAdd(kLowest, -1), kHighest);
    EXPECT_EQ(WrapSub(kLowest, 1), kHighest);
    EXPECT_EQ(WrapSub(0, kLowest), kLowest);
    EXPECT_EQ(WrapMul(65536, 65536), 0);
    EXPECT_EQ(WrapMul(kLowest, -1), kLowest);
}

TEST(ArithmeticTest, SaturatesAtBothEnds) {
    EXPECT_EQ(Saturate(std::numeric_limits<std::int64_t>::min()), kLowest);
    EXPECT_EQ(Saturate(std::int64_t{kLowest} - 1), kLowest);
    EXPECT_EQ(Saturate(-5), -5);
    EXPECT_EQ(SaturatingAdd(kHighest, 1), kHighest);
    EXPECT_EQ(SaturatingAdd(kLowest, kLowest), kLowest);
    EXPECT_EQ(SaturatingAdd(kLowest, kHighest), -1);
    EXPECT_EQ(SaturatingSub(0, kLowest), kHighest);
    EXPECT_EQ(SaturatingSub(kLowest, 1), kLowest);
}

TEST(ArithmeticTest, TruncatesTowardZeroAndNeverOverflows) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const std::vector<std::pair<float, std::int32_t>> floats{
        {0.99f, 0},
        {-0.99f, 0},
        {2147483520.0f, 2147483520}, // the last float below 2^31
        {2147483648.0f, kHighest},
        {-2147483648.0f, kLowest},
        {infinity, kHighest},
        {-infinity, kLowest},
        {std::nanf(""), 0}};
    for (const auto& [value, expected] : floats) {
        EXPECT_EQ(Truncate(value), expected) << value;
    }
    EXPECT_EQ(Truncate(2147483646.9), 2147483646);
    EXPECT_EQ(Truncate(2147483647.5), kHighest);
    EXPECT_EQ(Truncate(-2147483647.9), -2147483647);
    EXPECT_EQ(Truncate(-2147483648.5), kLowest);
    EXPECT_EQ(Truncate(std::nan("")), 0);
}

TEST(ArithmeticTest, NarrowsWithoutLeavingTheFloatRange) {
    constexpr float largest = std::numeric_limits<float>::max();
    EXPECT_EQ(NarrowToFloat(1e39), largest);
    EXPECT_EQ(NarrowToFloat(-1e39), -largest);
    EXPECT_EQ(NarrowToFloat(std::numeric_limits<double>::infinity()), largest);
    EXPECT_EQ(NarrowToFloat(0.1), 0.1f);
    EXPECT_TRUE(std::isnan(NarrowToFloat(std::nan(""))));
}
