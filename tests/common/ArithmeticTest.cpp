// Arithmetic with a result at every input, checked by the compiler.
#include "common/Arithmetic.h"

#include "gfx/GFX_GraphicsManager.h"
#include "gfx/Vec2.h"
#include "support/Limits.h"

#include <gtest/gtest.h>

#include <string>

namespace {

static_assert(WrapAdd(kHigh, 1) == kLow && WrapSub(kLow, 1) == kHigh && WrapSub(0, kLow) == kLow);
static_assert(WrapMul(65536, 65536) == 0 && WrapMul(kLow, -1) == kLow);
static_assert(SaturatingAdd(kHigh, 1) == kHigh && SaturatingAdd(kLow, kLow) == kLow);
static_assert(SaturatingAdd(kLow, kHigh) == -1 && SaturatingSub(0, kLow) == kHigh);
static_assert(SaturatingSub(kLow, 1) == kLow && Saturate(-5) == -5);
static_assert(Saturate(std::int64_t{kLow} - 1) == kLow &&
              Saturate(std::int64_t{kHigh} + 1) == kHigh);
static_assert(Truncate(0.99f) == 0 && Truncate(-1.99f) == -1 && Truncate(kNan) == 0);
static_assert(Truncate(2147483520.0f) == 2147483520 && Truncate(2147483648.0f) == kHigh);
static_assert(Truncate(kInfinite) == kHigh && Truncate(-2147483649.0) == kLow);
static_assert(Truncate(2147483646.9) == 2147483646 && Truncate(-2147483647.9) == -2147483647);

static_assert(Vec2i{3, -3} * 0.5f == Vec2i{1, -1} && Vec2i{-25, 25} / 24 == Vec2i{-1, 1});
static_assert(Vec2i{16777217, kLow} * -1.0f == Vec2i{-16777216, kHigh}, "scaled in 32-bit floats");
static_assert(Vec2i{kHigh, kLow} + Vec2i{1, -1} == Vec2i{kLow, kHigh});
static_assert(Vec2i{kLow, 0} - Vec2i{1, kLow} == Vec2i{kHigh, kLow});
static_assert(Vec2i{1 << 30, -3} * 4 == Vec2i{0, -12});
static_assert(ToVec2i({-7.9f, 1e20f}) == Vec2i{-7, kHigh});

} // namespace

TEST(DataPathTest, IsBesideTheProgramOrThreeDirectoriesAbove) {
    struct Case {
        std::string base;
        int mode;
        char separator;
        std::string expected;
    };
    const Case cases[] = {{R"(C:\a\b\c\d\e\)", 1, '\\', R"(C:\a\b\data\)"},
                          {R"(C:\a\b\c\d\e\)", 0, '\\', R"(C:\a\b\c\d\e\data\)"},
                          {"/a/b/", 1, '/', "/data/"}, // too short for four cuts
                          {"nothing", 1, '/', "nothing/data/"},
                          {R"(/a\b/c/d/e\f/)", 1, '/', R"(/a\b/data/)"},
                          {"/a/b/c/d/e/", 2, '/', ""}};
    for (const Case& c : cases) {
        EXPECT_EQ(DataPath(c.base, c.mode, c.separator), c.expected) << c.base << " " << c.mode;
    }
}
