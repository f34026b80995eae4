#include "gfx/Clipping.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr Vec2i kWindow{640, 480};

// How far a point lies from the line through two others, in pixels.
long double Distance(Vec2i point, Vec2i a, Vec2i b) {
    const long double dx = static_cast<long double>(b.x) - a.x;
    const long double dy = static_cast<long double>(b.y) - a.y;
    const long double px = static_cast<long double>(point.x) - a.x;
    const long double py = static_cast<long double>(point.y) - a.y;
    return std::abs(dx * py - dy * px) / std::sqrt(dx * dx + dy * dy);
}

bool IsBetween(std::int32_t value, std::int32_t a, std::int32_t b) {
    return value >= std::min(a, b) - 1 && value <= std::max(a, b) + 1;
}

// Coordinates that SDL's own clipping takes without overflow.
bool IsHarmless(Vec2i point) {
    return std::abs(static_cast<double>(point.x)) < 20000 &&
           std::abs(static_cast<double>(point.y)) < 20000;
}

} // namespace

TEST(ClippingTest, FarLinesKeepWhatShows) {
    struct Case {
        Vec2i from;
        Vec2i to;
        Vec2i shown; // a point of the window on the line
    };
    std::vector<Case> cases{{{100, 50}, {100, kLowest}, {100, 0}},
                            {{kLowest, 7}, {kHighest, 7}, {320, 7}},
                            {{kHighest, kHighest}, {kLowest, kLowest}, {5, 5}}};
    // Lines through a point of the window to both sides, of any length and direction.
    std::mt19937 random(5);
    std::uniform_int_distribution<std::int32_t> x(0, kWindow.x - 1);
    std::uniform_int_distribution<std::int32_t> y(0, kWindow.y - 1);
    std::uniform_int_distribution<std::int32_t> step(-1000, 1000);
    std::uniform_int_distribution<std::int32_t> steps(0, 2000000);
    for (int i = 0; i < 2000; ++i) {
        const Vec2i shown{x(random), y(random)};
        const Vec2i direction{step(random), step(random) | 1};
        cases.push_back(
            {shown - direction * steps(random), shown + direction * steps(random), shown});
    }
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.from.x << " " << c.from.y << " to " << c.to.x << " " << c.to.y);
        Vec2i from = c.from;
        Vec2i to = c.to;
        ASSERT_TRUE(ClipLine(from, to, kWindow));
        EXPECT_TRUE(IsHarmless(from) && IsHarmless(to));
        EXPECT_TRUE(IsBetween(c.shown.x, from.x, to.x));
        EXPECT_TRUE(IsBetween(c.shown.y, from.y, to.y));
        if (from != to) {
            EXPECT_LT(Distance(c.shown, from, to), 1.0L);
        }
    }
}

TEST(ClippingTest, NearLinesStayAndFarLinesThatShowNothingAreDropped) {
    struct Case {
        Vec2i from;
        Vec2i to;
        bool stays;
    };
    for (const Case& c : {Case{{-16384, -16384}, {17024, 16864}, true},
                          {{-5, -5}, {-900, 3}, true}, // outside, but near
                          {{-100000, 0}, {-100000, 479}, false},
                          {{kHighest, 0}, {kHighest, 0}, false},
                          {{kLowest, kLowest}, {kHighest, kLowest}, false},
                          {{0, 900000}, {900000, 0}, false},
                          {{kLowest, 100}, {-20000, 100}, false}}) {
        Vec2i from = c.from;
        Vec2i to = c.to;
        EXPECT_EQ(ClipLine(from, to, kWindow), c.stays) << c.from.x << " " << c.from.y;
        EXPECT_TRUE(from == c.from && to == c.to);
    }
}

TEST(ClippingTest, RectanglesTouchTheWindowWhenAPixelDoes) {
    struct Case {
        SDL_Rect rect;
        bool fill;
        bool outline;
    };
    const std::vector<Case> cases{{{639, 479, 5, 5}, true, true},
                                  {{640, 0, 5, 5}, false, true}, // outlines reach a pixel back
                                  {{642, 0, 5, 5}, false, false},
                                  {{0, 480, 5, 5}, false, true},
                                  {{0, 482, 5, 5}, false, false},
                                  {{-5, 0, 5, 5}, false, true},
                                  {{-4, 0, 5, 5}, true, true},
                                  {{10, -50, 5, 5}, false, false},
                                  {{10, 10, 0, 5}, false, true},
                                  {{10, 10, -5, 5}, false, true},
                                  {{-100, -100, kHighest, kHighest}, true, true},
                                  {{kHighest, kHighest, kHighest, kHighest}, false, false},
                                  {{kLowest, kLowest, kLowest, kLowest}, false, false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.rect.x << " " << c.rect.y << " " << c.rect.w << " " << c.rect.h);
        EXPECT_EQ(FillTouchesWindow(c.rect, kWindow), c.fill);
        EXPECT_EQ(OutlineTouchesWindow(c.rect, kWindow), c.outline);
    }
}
