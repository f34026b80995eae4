// Holds the triangulation against the plain reading of its rules: points, triangles, messages and
// result must agree bit for bit.
#include "gen/Triangulate.h"

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <ostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "gen/ErrorCapture.h"
#include "gen/PointSets.h"
#include "gen/ReferenceTriangulate.h"
#include "gen/UniformInt.h"

namespace {

struct Outcome {
    std::int32_t result = 0;
    std::vector<std::int64_t> numbers; // every field of the points and triangles
    std::string messages;

    friend bool operator==(const Outcome&, const Outcome&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
        out << outcome.result << ", \"" << outcome.messages << "\",";
        for (const std::int64_t number : outcome.numbers) {
            out << ' ' << number;
        }
        return out;
    }
};

void AppendFields(const std::vector<DelaunayPoint>& points, std::vector<std::int64_t>& numbers) {
    for (const DelaunayPoint& p : points) {
        numbers.insert(numbers.end(), {p.id, p.hullTri});
        for (const float f : {p.x, p.y, p.edgeX, p.edgeY, p.sortKey}) {
            numbers.push_back(std::bit_cast<std::int32_t>(f));
        }
    }
}

void AppendFields(const std::vector<DelaunayTriangle>& triangles,
                  std::vector<std::int64_t>& numbers) {
    for (const DelaunayTriangle& t : triangles) {
        numbers.insert(numbers.end(), {t.a, t.b, t.c, t.adjAB, t.adjBC, t.adjAC});
        for (const float f : {t.radiusSq, t.centreX, t.centreY}) {
            numbers.push_back(std::bit_cast<std::int32_t>(f));
        }
    }
}

Outcome Plain(std::vector<DelaunayPoint> points) {
    Outcome outcome;
    std::ostringstream messages;
    std::vector<DelaunayTriangle> triangles(3); // must be emptied
    outcome.result = ReferenceTriangulate(points, triangles, messages);
    outcome.messages = messages.str();
    AppendFields(points, outcome.numbers);
    AppendFields(triangles, outcome.numbers);
    return outcome;
}

Outcome Real(std::vector<DelaunayPoint> points) {
    Outcome outcome;
    const ErrorCapture errors;
    std::vector<DelaunayTriangle> triangles(3); // must be emptied
    outcome.result = Triangulate(points, triangles);
    outcome.messages = errors.Text();
    AppendFields(points, outcome.numbers);
    AppendFields(triangles, outcome.numbers);
    return outcome;
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
    const auto any = [&]() -> DelaunayPoint& {
        return points[static_cast<std::size_t>(
            UniformInt(rng, 0, static_cast<std::int32_t>(points.size()) - 1))];
    };
    switch (UniformInt(rng, 0, 6)) {
    case 0: { // equal points
        const DelaunayPoint& model = any();
        DelaunayPoint copy = model;
        copy.id = static_cast<std::int32_t>(points.size());
        points.push_back(copy);
        break;
    }
    case 1: // one id twice
        any().id = any().id;
        break;
    case 2:
        any().id = UniformInt(rng, -5, -1);
        break;
    case 3:
        any().x = std::array{std::numeric_limits<float>::quiet_NaN(),
                             std::numeric_limits<float>::infinity(),
                             -std::numeric_limits<float>::infinity()}[static_cast<std::size_t>(
            UniformInt(rng, 0, 2))];
        break;
    case 4: // far above the count
        any().id = UniformInt(rng, std::numeric_limits<std::int32_t>::max() - 3,
                              std::numeric_limits<std::int32_t>::max());
        break;
    case 5: // squares that leave the range of floats
        any().x = std::numeric_limits<float>::max();
        any().y = std::numeric_limits<float>::denorm_min();
        break;
    default: // equal but for the sign of zero
        any().x = 0.0f;
        any().x = -0.0f;
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

TEST(TriangulateReference, AgreesWhereFlippingIsCutShort) {
    for (const std::int32_t count : {300, 1000}) {
        const std::vector<DelaunayPoint> points = MakeCircle(count);
        EXPECT_TRUE(Real(points) == Plain(points)) << count;
    }
}

} // namespace
