#include "gfx/Clipping.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

// The largest float below 2^31: SDL takes a rectangle's sides and its far corner through 32-bit
// integers and floats.
constexpr std::int64_t kMaxClipped = 2147483520;

// Lines are left alone up to this distance from the window, in pixels. SDL's clipping multiplies a
// line's extent by an end's distance from an edge, for which 32 bits leave less room the larger the
// window is.
std::int32_t LineMargin(Vec2i windowSize) {
    constexpr double most = 32000.0;
    const double size = std::max(windowSize.x, windowSize.y);
    // Just below the root of (size + 2 * margin) * margin = 2^31 - 1.
    const double room = (std::sqrt(size * size + 8.0 * 2147483647.0) - size) / 4.0 - 1.0;
    return Truncate(std::min(most, room));
}

bool Overlaps(std::int32_t start, std::int32_t length, std::int32_t size) {
    return length > 0 && start < size && std::int64_t{start} + length > 0;
}

bool FitsSdl(std::int64_t start, std::int64_t length) {
    return std::max({std::abs(start), std::abs(length), std::abs(start + length)}) <= kMaxClipped;
}

bool IsNear(Vec2i point, Vec2i windowSize, std::int32_t margin) {
    return point.x >= -margin && point.y >= -margin &&
           point.x <= SaturatingAdd(windowSize.x, margin) &&
           point.y <= SaturatingAdd(windowSize.y, margin);
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

bool TouchesWindow(const SDL_Rect& rect, Vec2i windowSize) {
    return Overlaps(rect.x, rect.w, windowSize.x) && Overlaps(rect.y, rect.h, windowSize.y);
}

bool SuitsClipping(const SDL_Rect& rect) {
    return FitsSdl(rect.x, rect.w) && FitsSdl(rect.y, rect.h);
}

bool ClipLine(Vec2i& from, Vec2i& to, Vec2i windowSize) {
    const std::int32_t margin = LineMargin(windowSize);
    if (IsNear(from, windowSize, margin) && IsNear(to, windowSize, margin)) {
        return true;
    }
    const double x = from.x;
    const double y = from.y;
    const double dx = static_cast<double>(to.x) - x;
    const double dy = static_cast<double>(to.y) - y;
    Visible part;
    CutAtEdge(-dx, x + margin, part);
    CutAtEdge(dx, static_cast<double>(windowSize.x) + margin - x, part);
    CutAtEdge(-dy, y + margin, part);
    CutAtEdge(dy, static_cast<double>(windowSize.y) + margin - y, part);
    if (part.enter > part.leave) {
        return false;
    }
    from = {Truncate(std::round(x + part.enter * dx)), Truncate(std::round(y + part.enter * dy))};
    to = {Truncate(std::round(x + part.leave * dx)), Truncate(std::round(y + part.leave * dy))};
    return true;
}
