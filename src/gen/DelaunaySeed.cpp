#include "gen/DelaunaySeed.h"

namespace {

constexpr float kLargestRadiusSq = 9.0e20f;

struct Circle {
    float radiusSq = -1.0f; // -1 for points on one line
    Vec2f centre;
};

Vec2f Middle(const DelaunayPoint& a, const DelaunayPoint& b) {
    return {(a.x + b.x) * 0.5f, (a.y + b.y) * 0.5f};
}

// The perpendicular bisectors of p0-p1 and p1-p2 meet at the centre.
Circle CircleThrough(const DelaunayPoint& p0, const DelaunayPoint& p1, const DelaunayPoint& p2) {
    const Vec2f m01 = Middle(p1, p0);
    const Vec2f m12 = Middle(p2, p1);
    const float u = p0.x - p1.x;
    const float v = p1.y - p0.y;
    const float e = p2.x - p1.x;
    const float f = p1.y - p2.y;
    const float det = f * u - e * v;
    if (det == 0.0f) {
        return {};
    }
    const float s = ((m12.y - m01.y) * v - (m12.x - m01.x) * u) / det;
    const Vec2f centre = {s * f + m12.x, s * e + m12.y};
    const float dx = p0.x - centre.x;
    const float dy = p0.y - centre.y;
    return {dx * dx + dy * dy, centre};
}

bool SamePlace(const DelaunayPoint& a, const DelaunayPoint& b) {
    return a.x == b.x && a.y == b.y;
}

// Points equal to the first cannot be its neighbour.
std::size_t SecondPlace(const std::vector<DelaunayPoint>& points, DelaunayOrder& order) {
    std::size_t place = 1;
    const DelaunayPoint& first = points[order.Point(0)];
    while (place < order.Size() && SamePlace(points[order.Point(place)], first)) {
        ++place;
    }
    return place;
}

float Dot(Vec2f a, Vec2f b) {
    return a.x * b.x + a.y * b.y;
}

} // namespace

DelaunaySeed FindSeed(const std::vector<DelaunayPoint>& points, DelaunayOrder& order) {
    DelaunaySeed seed;
    seed.radiusSq = kLargestRadiusSq;
    const std::size_t second = SecondPlace(points, order);
    if (second == order.Size()) {
        return seed;
    }
    seed.points = {order.Point(0), order.Point(second), 0};
    seed.sortKeys = {order.Distance(0), order.Distance(second), 0.0f};
    const DelaunayPoint& p0 = points[seed.points[0]];
    const DelaunayPoint& p1 = points[seed.points[1]];
    for (std::size_t place = second + 1; place < order.Size(); ++place) {
        const std::size_t candidate = order.Point(place);
        const Circle circle = CircleThrough(p0, p1, points[candidate]);
        if (circle.radiusSq < seed.radiusSq && circle.radiusSq > 0.0f) {
            seed.found = true;
            seed.points[2] = candidate;
            seed.sortKeys[2] = order.Distance(place);
            seed.radiusSq = circle.radiusSq;
            seed.centre = circle.centre;
        } else if (order.Distance(place) > 4.0f * seed.radiusSq) {
            break;
        }
    }
    return seed;
}

bool IsObtuse(const DelaunayPoint& p0, const DelaunayPoint& p1, const DelaunayPoint& p2) {
    const Vec2f from0To1 = {p1.x - p0.x, p1.y - p0.y};
    const Vec2f from0To2 = {p2.x - p0.x, p2.y - p0.y};
    const Vec2f from2To1 = {p1.x - p2.x, p1.y - p2.y};
    return Dot(from0To2, from0To1) < 0.0f || Dot(from2To1, from0To2) > 0.0f ||
           Dot(from2To1, from0To1) < 0.0f;
}
