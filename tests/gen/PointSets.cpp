#include "gen/PointSets.h"

#include <cmath>
#include <set>
#include <utility>

#include "gen/Random.h"

namespace {

struct Place {
    float x, y;
};

float Unit(std::mt19937& rng) {
    return static_cast<float>(UniformInt(rng, -(1 << 24), 1 << 24)) / static_cast<float>(1 << 24);
}

float Whole(std::mt19937& rng, std::int32_t lo, std::int32_t hi) {
    return static_cast<float>(UniformInt(rng, lo, hi));
}

float PowerOfTen(std::mt19937& rng, std::int32_t lo, std::int32_t hi) {
    return std::pow(10.0f, Whole(rng, lo, hi));
}

Place OnLine(std::mt19937& rng) {
    const float t = Whole(rng, 0, 40);
    const Place places[] = {{t, 0.0f}, {0.0f, t}, {t, t}, {t, 40.0f - 2.0f * t}};
    return places[UniformInt(rng, 0, 3)];
}

Place OnCircle(std::mt19937& rng) {
    const float angle = Unit(rng) * 3.14159265f;
    const Place place = {100.0f * std::cos(angle), 100.0f * std::sin(angle)};
    const bool lattice = UniformInt(rng, 0, 1) == 0;
    return lattice ? Place{std::round(place.x), std::round(place.y)} : place;
}

Place InClump(std::mt19937& rng) {
    return {1000.0f * Whole(rng, -1, 1) + Unit(rng), 1000.0f * Whole(rng, -1, 1) + Unit(rng)};
}

Place OneOf(PointShape shape, std::size_t count, std::mt19937& rng) {
    const auto side = 2 + static_cast<std::int32_t>(2.0 * std::sqrt(static_cast<double>(count)));
    switch (shape) {
    case PointShape::Lattice:
        return {Whole(rng, 0, side), Whole(rng, 0, side)};
    case PointShape::Lines:
        return OnLine(rng);
    case PointShape::Circle:
        return OnCircle(rng);
    case PointShape::Clumps:
        return InClump(rng);
    case PointShape::FarColumns:
        return {Whole(rng, 0, 31) + 1048544.0f * Whole(rng, 0, 1), Whole(rng, 0, 31)};
    case PointShape::Huge:
        return {2.0e10f * Unit(rng), 2.0e10f * Unit(rng)};
    case PointShape::Tiny:
        return {1.0e-21f * Whole(rng, 0, 99), 1.0e-21f * Whole(rng, 0, 99)};
    case PointShape::MixedScale:
        return {Unit(rng) * PowerOfTen(rng, -30, 30), Unit(rng) * PowerOfTen(rng, -30, 30)};
    case PointShape::NearlyOnALine:
        return {Unit(rng) * 1000.0f, Unit(rng) * PowerOfTen(rng, -5, 0)};
    default:
        return {Unit(rng), Unit(rng)};
    }
}

} // namespace

void AddPoint(float x, float y, std::vector<DelaunayPoint>& points) {
    DelaunayPoint point;
    point.id = static_cast<std::int32_t>(points.size());
    point.x = x;
    point.y = y;
    points.push_back(point);
}

std::vector<DelaunayPoint> MakePoints(PointShape shape, std::size_t count, std::mt19937& rng) {
    std::vector<DelaunayPoint> points;
    std::set<std::pair<float, float>> taken;
    for (std::size_t i = 0; i < count; ++i) {
        const Place place = OneOf(shape, count, rng);
        if (taken.insert({place.x, place.y}).second) {
            AddPoint(place.x, place.y, points);
        }
    }
    return points;
}

std::vector<DelaunayPoint> MakeCircle(std::int32_t count) {
    std::vector<DelaunayPoint> points;
    for (std::int32_t i = 0; i < count; ++i) {
        const double angle = i * 6.283185307 / count;
        AddPoint(static_cast<float>(1000.0 * std::cos(angle)),
                 static_cast<float>(1000.0 * std::sin(angle)), points);
    }
    return points;
}
