#include "gfx/Clipping.h"

#include <algorithm>
#include <cmath>

namespace {

// Lines are left alone up to this distance from the window, in pixels. SDL's clipping multiplies a
// line's extent by an end's distance from an edge: for the largest window that SDL opens, 16384
// pixels wide, that is at most 49152 * 32768, which fits into 32 bits.
constexpr std::int32_t kLineMargin = 16384;

struct Interval {
    std::int64_t low;  // inclusive
    std::int64_t high; // exclusive
};

bool Overlaps(Interval a, std::int32_t size) {
    return a.low < size && a.high > 0;
}

Interval FillExtent(std::int32_t start, std::int32_t length) {
    return {start, std::int64_t{start} + length};
}

Interval OutlineExtent(std::int32_t start, std::int32_t length) {
    const std::int64_t end = std::int64_t{start} + length;
    return {std::min<std::int64_t>(start, end) - 1, std::max<std::int64_t>(start, end) + 1};
}

bool IsNear(Vec2i point, Vec2i windowSize) {
    return point.x >= -kLineMargin && point.y >= -kLineMargin &&
           point.x <= std::int64_t{windowSize.x} + kLineMargin &&
           point.y <= std::int64_t{windowSize.y} + kLineMargin;
}

// The part [enter, leave] of a line, as fractions of its length, that lies inside every edge so
// far.
struct Visible {
    double enter = 0.0;
    double leave = 1.0;
};

// One edge of Liang and Barsky's line clipping: `speed` is the growth toward the outside, `room`
// the distance from the line's start to the edge.
void CutAtEdge(double speed, double room, Visible& part) {
    if (speed == 0.0) {
        if (room < 0.0) {
            part.leave = -1.0;
        }
    } else if (speed < 0.0) {
        part.enter = std::max(part.enter, room / speed);
    } else {
        part.leave = std::min(part.leave, room / speed);
    }
}

} // namespace

bool FillTouchesWindow(const SDL_Rect& rect, Vec2i windowSize) {
    return rect.w > 0 && rect.h > 0 && Overlaps(FillExtent(rect.x, rect.w), windowSize.x) &&
           Overlaps(FillExtent(rect.y, rect.h), windowSize.y);
}

bool OutlineTouchesWindow(const SDL_Rect& rect, Vec2i windowSize) {
    return Overlaps(OutlineExtent(rect.x, rect.w), windowSize.x) &&
           Overlaps(OutlineExtent(rect.y, rect.h), windowSize.y);
}

bool ClipLine(Vec2i& from, Vec2i& to, Vec2i windowSize) {
    if (IsNear(from, windowSize) && IsNear(to, windowSize)) {
        return true;
    }
    const double x = from.x;
    const double y = from.y;
    const double dx = static_cast<double>(to.x) - x;
    const double dy = static_cast<double>(to.y) - y;
    Visible part;
    CutAtEdge(-dx, x + kLineMargin, part);
    CutAtEdge(dx, static_cast<double>(windowSize.x) + kLineMargin - x, part);
    CutAtEdge(-dy, y + kLineMargin, part);
    CutAtEdge(dy, static_cast<double>(windowSize.y) + kLineMargin - y, part);
    if (part.enter > part.leave) {
        return false;
    }
    from = {Truncate(std::round(x + part.enter * dx)), Truncate(std::round(y + part.enter * dy))};
    to = {Truncate(std::round(x + part.leave * dx)), Truncate(std::round(y + part.leave * dy))};
    return true;
}
