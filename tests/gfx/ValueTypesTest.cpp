#include "gfx/DataPath.h"
#include "gfx/Vec2.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

} // namespace

TEST(Vec2Test, TruncatesAndWraps) {
    EXPECT_EQ((Vec2i{3, -3} * 0.5f), (Vec2i{1, -1}));
    EXPECT_EQ((Vec2i{kHighest, kLowest} * 2.0f), (Vec2i{kHighest, kLowest}));
    EXPECT_EQ((Vec2i{kHighest, kLowest} * -1.0f), (Vec2i{kLowest, kHighest}));
    // The scaling happens in 32-bit floats, which hold 24 bits.
    EXPECT_EQ((Vec2i{16777217, -16777217} * 1.0f), (Vec2i{16777216, -16777216}));
    EXPECT_EQ((Vec2i{-25, 25} / 24), (Vec2i{-1, 1}));
    EXPECT_EQ((Vec2i{kHighest, kLowest} + Vec2i{1, -1}), (Vec2i{kLowest, kHighest}));
    EXPECT_EQ((Vec2i{kLowest, 0} - Vec2i{1, kLowest}), (Vec2i{kHighest, kLowest}));
    EXPECT_EQ((Vec2i{1 << 30, -3} * 4), (Vec2i{0, -12}));
    EXPECT_EQ((Vec2f{1.5f, -2.0f} - Vec2f{2.0f, 0.25f}), (Vec2f{-0.5f, -2.25f}));
    EXPECT_EQ(ToVec2i({-7.9f, 7.9f}), (Vec2i{-7, 7}));
    EXPECT_EQ(ToVec2i({std::nanf(""), 1e20f}), (Vec2i{0, kHighest}));
}

TEST(DataPathTest, FindsTheDataDirectoryBesideOrAbove) {
    struct Case {
        std::string base;
        int mode;
        char separator;
        std::string expected;
    };
    const std::vector<Case> cases{
        {R"(C:\a\b\c\d\e\)", 1, '\\', R"(C:\a\b\data\)"},
        {R"(C:\a\b\c\d\e\)", 0, '\\', R"(C:\a\b\c\d\e\data\)"},
        {"/a/b/c/d/e/", 1, '/', "/a/b/data/"},
        {"/a/b/c/d/e/", 0, '/', "/a/b/c/d/e/data/"},
        {"/a/b/c/d/e", 1, '/', "/a/data/"}, // only a separator at the end spares a name
        // Too short for four cuts: only as far as separators remain.
        {R"(C:\a\b\)", 1, '\\', R"(C:\data\)"},
        {"/a/b/", 1, '/', "/data/"},
        {"nothing", 1, '/', "nothing/data/"},
        {"", 1, '/', "/data/"},
        // The other system's separator is part of a name.
        {R"(/a\b/c/d/e\f/)", 1, '/', R"(/a\b/data/)"},
        {"/a/b/c/d/e/", 2, '/', ""},
        {"/a/b/c/d/e/", -1, '/', ""}};
    for (const Case& c : cases) {
        EXPECT_EQ(DataPath(c.base, c.mode, c.separator), c.expected) << c.base << " " << c.mode;
    }
}
