#include "gen/PointSets.h"

#include <cmath>
#include <limits>
#include <set>
#include <utility>

#include "gen/Random.h"

namespace {

struct Place {
    float x, y;
};

float Whole(Twister& rng, std::int32_t lo, std::int32_t hi) {
    return static_cast<float>(UniformInt(rng, lo, hi));
}

float Unit(Twister& rng) {
    return Whole(rng, -(1 << 24), 1 << 24) / static_cast<float>(1 << 24);
}

// On the circle around the origin, as well as floats can say: rounding keeps flips from settling.
Place OnCircle(Twister& rng) {
    const float t = Unit(rng);
    const float shrink = 1000.0f / (1.0f + t * t);
    const float x = (1.0f - t * t) * shrink;
    const float y = 2.0f * t * shrink;
    return UniformInt(rng, 0, 1) == 0 ? Place{x, y} : Place{-x, -y};
}

Place OnLines(Twister& rng) {
    const float t = Whole(rng, 0, 40);
    const Place places[] = {{t, 0.0f}, {0.0f, t}, {t, t}, {t, 40.0f - 2.0f * t}};
    return places[UniformInt(rng, 0, 3)];
}

Place OneOf(std::size_t shape, std::int32_t count, Twister& rng) {
    const std::int32_t side = 3 + count / 8;
    const auto scaled = [&rng](int least, int most) {
        return std::ldexp(Unit(rng), UniformInt(rng, least, most));
    };
    switch (shape) {
    case 0:
        return {Whole(rng, 0, side), Whole(rng, 0, side)};
    case 2:
        return OnLines(rng);
    case 3:
        return OnCircle(rng);
    case 4:
        return {1000.0f * Whole(rng, -1, 1) + Unit(rng), 1000.0f * Whole(rng, -1, 1) + Unit(rng)};
    case 5:
        return {Whole(rng, 0, 31) + 1048544.0f * Whole(rng, 0, 1), Whole(rng, 0, 31)};
    case 6:
        return {2.0e10f * Unit(rng), 2.0e10f * Unit(rng)};
    case 7:
        return {1.0e-21f * Whole(rng, 0, 99), 1.0e-21f * Whole(rng, 0, 99)};
    case 8:
        return {scaled(-100, 100), scaled(-100, 100)};
    case 9:
        return {Unit(rng) * 1000.0f, scaled(-16, 0)};
    default:
        return {Unit(rng), Unit(rng)};
    }
}

} // namespace

void AddPoint(float x, float y, Points& points) {
    DelaunayPoint point;
    point.id = static_cast<std::int32_t>(points.size());
    point.x = x;
    point.y = y;
    points.push_back(point);
}

Points MakePoints(std::size_t shape, std::int32_t count, Twister& rng) {
    Points points;
    std::set<std::pair<float, float>> taken;
    for (std::int32_t i = 0; i < count; ++i) {
        const Place place = OneOf(shape, count, rng);
        if (taken.insert({place.x, place.y}).second) {
            AddPoint(place.x, place.y, points);
        }
    }
    return points;
}

void Spoil(Points& points, Twister& rng) {
    using Floats = std::numeric_limits<float>;
    const auto any = [&]() -> DelaunayPoint& {
        const auto last = static_cast<std::int32_t>(points.size()) - 1;
        return points[static_cast<std::size_t>(UniformInt(rng, 0, last))];
    };
    DelaunayPoint& point = any();
    switch (UniformInt(rng, 0, 7)) {
    case 0: // equal points
        return AddPoint(point.x, point.y, points);
    case 1: // one id twice
        point.id = any().id;
        break;
    case 2:
        point.id = UniformInt(rng, -5, -1);
        break;
    case 3:
        point.x = Floats::quiet_NaN();
        break;
    case 4:
        point.y = -Floats::infinity();
        break;
    case 5: // far above the count
        point.id = 0x7fffffff - UniformInt(rng, 0, 3);
        break;
    case 6: // squares that leave the range of floats
        point.x = Floats::max();
        point.y = Floats::denorm_min();
        break;
    default: // equal but for the sign of zero
        point.x = 0.0f;
        any().x = -0.0f;
        break;
    }
}
