#include "gen/PointSets.h"

#include <cmath>
#include <limits>
#include <set>
#include <utility>

namespace {

using Place = std::pair<float, float>;

Place OneOf(std::size_t shape, std::int32_t count, Twister& rng) {
    const auto whole = [&rng](std::int32_t lo, std::int32_t hi) {
        return static_cast<float>(UniformInt(rng, lo, hi));
    };
    const auto unit = [&] { return whole(-(1 << 24), 1 << 24) / static_cast<float>(1 << 24); };
    const std::int32_t side = 3 + count / 8;
    const float t = unit();
    const float onCircle = (whole(0, 1) * 2000.0f - 1000.0f) / (1.0f + t * t);
    const float x = whole(0, side);
    const float half = whole(0, 1);
    const float scale = std::ldexp(t, UniformInt(rng, -100, 100));
    const Place places[] = {{x, whole(0, side)},
                            {t, unit()},
                            // Rounding keeps flips on a circle from settling.
                            {(1.0f - t * t) * onCircle, 2.0f * t * onCircle},
                            {whole(0, 31) + 1048544.0f * half, whole(0, 31)},
                            {1.0e-21f * x, 1.0e-21f * whole(0, 99)},
                            {scale, std::ldexp(unit(), UniformInt(rng, -100, 100))},
                            {t * 1000.0f, std::ldexp(unit(), UniformInt(rng, -16, 0))}};
    return places[shape];
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
    std::set<Place> taken;
    for (std::int32_t i = 0; i < count; ++i) {
        const Place place = OneOf(shape, count, rng);
        if (taken.insert(place).second) {
            AddPoint(place.first, place.second, points);
        }
    }
    return points;
}

void Spoil(Points& points, Twister& rng) {
    using Floats = std::numeric_limits<float>;
    const auto last = static_cast<std::int32_t>(points.size()) - 1;
    DelaunayPoint& point = points[static_cast<std::size_t>(UniformInt(rng, 0, last))];
    const DelaunayPoint other = points[static_cast<std::size_t>(UniformInt(rng, 0, last))];
    const std::int32_t ids[] = {other.id, UniformInt(rng, -5, -1), 0x7fffffff - other.id % 4};
    const float values[] = {Floats::quiet_NaN(), -Floats::infinity(), Floats::max(), -0.0f, 0.0f};
    const std::int32_t way = UniformInt(rng, 0, 8);
    if (way < 3) {
        point.id = ids[way];
    } else if (way < 8) {
        point.x = values[way - 3];
    } else {
        AddPoint(point.x, point.y, points);
    }
}
