// Holds the triangulation against the plain reading of its rules: points, triangles, messages and
// result must agree bit for bit.
#include "gen/Triangulate.h"

#include <array>
#include <bit>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "gen/ErrorCapture.h"
#include "gen/PointSets.h"
#include "gen/Random.h"
#include "gen/ReferenceTriangulate.h"

namespace {

// The result, the messages and every field of the points and triangles, as text.
template <typename Run>
std::string Outcome(std::vector<DelaunayPoint> points, Run run) {
    std::vector<DelaunayTriangle> triangles(3); // must be emptied
    std::ostringstream out;
    const auto add = [&out](std::initializer_list<std::int32_t> numbers,
                            std::initializer_list<float> floats) {
        for (const std::int32_t number : numbers) {
            out << number << ' ';
        }
        for (const float f : floats) {
            out << std::bit_cast<std::int32_t>(f) << ' ';
        }
    };
    out << run(points, triangles);
    for (const DelaunayPoint& p : points) {
        add({p.id, p.hullTri}, {p.x, p.y, p.edgeX, p.edgeY, p.sortKey});
    }
    for (const DelaunayTriangle& t : triangles) {
        add({t.a, t.b, t.c, t.adjAB, t.adjBC, t.adjAC}, {t.radiusSq, t.centreX, t.centreY});
    }
    return out.str();
}

std::string Plain(const std::vector<DelaunayPoint>& input) {
    return Outcome(input, [](auto& points, auto& triangles) {
        std::ostringstream messages;
        const std::int32_t result = ReferenceTriangulate(points, triangles, messages);
        return messages.str() + std::to_string(result) + '\n';
    });
}

std::string Real(const std::vector<DelaunayPoint>& input) {
    return Outcome(input, [](auto& points, auto& triangles) {
        const ErrorCapture errors;
        const std::int32_t result = Triangulate(points, triangles);
        return errors.Text() + std::to_string(result) + '\n';
    });
}

std::size_t DrawCount(std::mt19937& rng) {
    const auto most = std::array{6, 20, 60, 250}[static_cast<std::size_t>(UniformInt(rng, 0, 3))];
    return static_cast<std::size_t>(UniformInt(rng, 3, most));
}

class EveryShape : public testing::TestWithParam<int> {};

TEST_P(EveryShape, AgreesWithThePlainReading) {
    std::mt19937 rng(static_cast<std::uint32_t>(GetParam()) + 1u);
    for (int i = 0; i < 400; ++i) {
        const std::vector<DelaunayPoint> points =
            MakePoints(static_cast<PointShape>(GetParam()), DrawCount(rng), rng);
        if (points.size() >= 3) {
            ASSERT_EQ(Real(points), Plain(points)) << "input " << i;
        }
    }
}

// Spoils a set in one of the ways that a caller should not, and still must not suffer from.
void Spoil(std::vector<DelaunayPoint>& points, std::mt19937& rng) {
    using Floats = std::numeric_limits<float>;
    const auto below = [&rng](std::size_t count) {
        return static_cast<std::size_t>(UniformInt(rng, 0, static_cast<std::int32_t>(count) - 1));
    };
    DelaunayPoint& point = points[below(points.size())];
    switch (below(7)) {
    case 0: // equal points
        AddPoint(point.x, point.y, points);
        break;
    case 1: // one id twice
        point.id = points[below(points.size())].id;
        break;
    case 2:
        point.id = UniformInt(rng, -5, -1);
        break;
    case 3:
        point.x =
            std::array{Floats::quiet_NaN(), Floats::infinity(), -Floats::infinity()}[below(3)];
        break;
    case 4: // far above the count
        point.id = std::numeric_limits<std::int32_t>::max() - UniformInt(rng, 0, 3);
        break;
    case 5: // squares that leave the range of floats
        point.x = Floats::max();
        point.y = Floats::denorm_min();
        break;
    default: // equal but for the sign of zero
        point.x = 0.0f;
        points[below(points.size())].x = -0.0f;
        break;
    }
}

TEST_P(EveryShape, AgreesOnSpoiledInput) {
    std::mt19937 rng(static_cast<std::uint32_t>(GetParam()) + 1001u);
    for (int i = 0; i < 400; ++i) {
        std::vector<DelaunayPoint> points =
            MakePoints(static_cast<PointShape>(GetParam()), DrawCount(rng), rng);
        for (int k = UniformInt(rng, 1, 12); k > 0; --k) {
            Spoil(points, rng);
        }
        ASSERT_EQ(Real(points), Plain(points)) << "input " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, EveryShape,
                         testing::Range(0, static_cast<int>(PointShape::Count)));

// Large enough for the radix sort, for several pieces of the seed search, for a long hull and for
// memory to be asked for ahead.
TEST(TriangulateReference, AgreesOnLargeInput) {
    std::mt19937 rng(7);
    for (const PointShape shape : {PointShape::Lattice, PointShape::Plane, PointShape::Lines,
                                   PointShape::Clumps, PointShape::FarColumns}) {
        const std::vector<DelaunayPoint> points = MakePoints(shape, 3000, rng);
        EXPECT_TRUE(Real(points) == Plain(points)) << static_cast<int>(shape);
    }
    const std::vector<DelaunayPoint> many = MakePoints(PointShape::Lattice, 20000, rng);
    EXPECT_TRUE(Real(many) == Plain(many));
}

// Rounding lets pairs of triangles flip back and forth for ever; the list of what to look at would
// double from pass to pass, to 2^50 entries.
TEST(TriangulateReference, AgreesWhereFlippingIsCutShort) {
    for (const std::int32_t count : {300, 1000}) {
        const std::vector<DelaunayPoint> points = MakeCircle(count);
        EXPECT_TRUE(Real(points) == Plain(points)) << count;
    }
}

} // namespace
