#include "gen/Triangulate.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "gen/ErrorCapture.h"
#include "gen/PointSets.h"

namespace {

using Points = std::vector<DelaunayPoint>;
using Triangles = std::vector<DelaunayTriangle>;
using List = std::vector<std::int32_t>;

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinite = std::numeric_limits<float>::infinity();
constexpr std::int32_t kLargestId = std::numeric_limits<std::int32_t>::max();

Points MakeList(std::initializer_list<std::pair<float, float>> places) {
    Points points;
    for (const auto& [x, y] : places) {
        AddPoint(x, y, points);
    }
    return points;
}

List Ids(const Points& points) {
    List ids;
    for (const DelaunayPoint& point : points) {
        ids.push_back(point.id);
    }
    return ids;
}

// Corners and neighbours of all triangles, six numbers each.
List Fields(const Triangles& triangles) {
    List fields;
    for (const DelaunayTriangle& t : triangles) {
        fields.insert(fields.end(), {t.a, t.b, t.c, t.adjAB, t.adjBC, t.adjAC});
    }
    return fields;
}

struct Outcome {
    std::int32_t result = 0;
    Triangles triangles;
    std::string messages;
};

Outcome TriangulateList(Points& points) {
    Outcome run;
    const ErrorCapture errors;
    run.result = Triangulate(points, run.triangles);
    run.messages = errors.Text();
    return run;
}

TEST(Triangulate, RefusesFewerThanThreeUsablePoints) {
    Points points = MakeList({{5.0f, 5.0f}, {1.0f, 1.0f}, {kNan, 0.0f}, {0.0f, kInfinite}});
    points[0].sortKey = 3.0f;
    Triangles triangles(2);
    const ErrorCapture errors;
    EXPECT_EQ(Triangulate(points, triangles), -1);
    EXPECT_EQ(errors.Text(), "less than 3 points, aborting \n");
    EXPECT_EQ(Ids(points), (List{0, 1, 2, 3}));
    EXPECT_EQ(points[0].sortKey, 3.0f);
    EXPECT_EQ(triangles.size(), 2u);
}

TEST(Triangulate, LeavesPointsOnALineSorted) {
    Points points = MakeList({{0.0f, 0.0f}, {9.0f, 9.0f}, {1.0f, 1.0f}, {4.0f, 4.0f}});
    const Outcome run = TriangulateList(points);
    EXPECT_EQ(run.result, -2);
    EXPECT_EQ(run.messages, "linear structure, aborting \n");
    EXPECT_TRUE(run.triangles.empty());
    EXPECT_EQ(Ids(points), (List{0, 2, 3, 1}));
    EXPECT_EQ(points[3].sortKey, 162.0f);

    Points equal = MakeList({{2.0f, 2.0f}, {2.0f, 2.0f}, {2.0f, 2.0f}});
    EXPECT_EQ(TriangulateList(equal).result, -2);
}

TEST(Triangulate, KeepsTheSeedCircle) {
    Points points = MakeList({{0.0f, 0.0f}, {4.0f, 0.0f}, {2.0f, 3.0f}});
    const Outcome run = TriangulateList(points);
    EXPECT_EQ(run.messages, "of triangles 1 to be flipped. \n");
    ASSERT_EQ(run.triangles.size(), 1u);
    EXPECT_FLOAT_EQ(run.triangles[0].centreX, 2.0f);
    EXPECT_FLOAT_EQ(run.triangles[0].centreY, 5.0f / 6.0f);
    EXPECT_FLOAT_EQ(run.triangles[0].radiusSq, 4.0f + 25.0f / 36.0f);
}

TEST(Triangulate, WarnsOfAnObtuseSeed) {
    Points points = MakeList({{0.0f, 0.0f}, {10.0f, 0.0f}, {5.0f, 1.0f}});
    const Outcome run = TriangulateList(points);
    EXPECT_EQ(run.result, 1);
    EXPECT_EQ(run.messages, "warning: obtuce seed triangle sellected \n"
                            "of triangles 1 to be flipped. \n");
    EXPECT_EQ(Ids(points), (List{0, 2, 1}));
    EXPECT_EQ(Fields(run.triangles), (List{0, 2, 1, -1, -1, -1}));
}

// What cannot be used stands behind the rest; an id may be as large as it likes. The four usable
// points lie on one circle, whose edge is not flipped.
TEST(Triangulate, SplitsASquareWhateverElseIsInTheList) {
    for (const std::int32_t id : {3, kLargestId}) {
        Points points = MakeList({{0.0f, 0.0f}, {1.0f, 0.0f}, {0.0f, 1.0f}, {1.0f, 1.0f}});
        points[3].id = id;
        for (const float bad : {kNan, kInfinite, 0.5f}) {
            AddPoint(0.5f, bad, points);
        }
        points.back().id = -4;
        std::rotate(points.begin(), points.begin() + 4, points.end());
        const Outcome run = TriangulateList(points);
        EXPECT_EQ(run.result, 1);
        EXPECT_EQ(Ids(points), (List{0, 2, 1, id, 4, 5, -4}));
        EXPECT_EQ(points[4].sortKey, kInfinite);
        EXPECT_EQ(Fields(run.triangles), (List{0, 2, 1, -1, 1, -1, id, 2, 1, -1, 0, -1}));
    }
}

// What holds for every triangulation of distinct points. Coordinates are whole numbers, so that
// the checks are exact.
class MeshCheck {
public:
    MeshCheck(const Points& points, const Triangles& theTriangles) : triangles(theTriangles) {
        for (const DelaunayPoint& point : points) {
            places[point.id] = {static_cast<std::int64_t>(point.x),
                                static_cast<std::int64_t>(point.y)};
        }
    }

    // Returns the number of hull edges.
    std::size_t Everything() {
        for (std::size_t i = 0; i < triangles.size(); ++i) {
            const DelaunayTriangle& t = triangles[i];
            EXPECT_NE(Cross(t.a, t.b, t.c), 0) << i;
            CheckSide(i, t.a, t.b, t.c, t.adjAB);
            CheckSide(i, t.b, t.c, t.a, t.adjBC);
            CheckSide(i, t.c, t.a, t.b, t.adjAC);
        }
        CheckHull();
        return hull.size();
    }

private:
    // Positive when the corners turn to the left.
    std::int64_t Cross(std::int32_t a, std::int32_t b, std::int32_t c) const {
        const auto [ax, ay] = places.at(a);
        const auto [bx, by] = places.at(b);
        const auto [cx, cy] = places.at(c);
        return (bx - ax) * (cy - ay) - (by - ay) * (cx - ax);
    }

    // Positive when d lies within the circle through a, b and c, which turn to the left.
    std::int64_t InCircle(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d) const {
        const auto row = [this, d](std::int32_t p) {
            const std::int64_t x = places.at(p).first - places.at(d).first;
            const std::int64_t y = places.at(p).second - places.at(d).second;
            return std::array{x, y, x * x + y * y};
        };
        const auto [ax, ay, as] = row(a);
        const auto [bx, by, bs] = row(b);
        const auto [cx, cy, cs] = row(c);
        return ax * (by * cs - bs * cy) - ay * (bx * cs - bs * cx) + as * (bx * cy - by * cx);
    }

    // Side p-q of triangle `index`, whose third corner is o: what lies across leads back, and its
    // far corner is not inside this triangle's circle.
    void CheckSide(std::size_t index, std::int32_t p, std::int32_t q, std::int32_t o,
                   std::int32_t neighbor) {
        if (Cross(p, q, o) < 0) {
            std::swap(p, q);
        }
        if (neighbor < 0) {
            EXPECT_TRUE(hull.emplace(p, q).second);
            return;
        }
        const DelaunayTriangle& other = triangles.at(static_cast<std::size_t>(neighbor));
        const auto backs = [&](std::int32_t a, std::int32_t b, std::int32_t adjacent) {
            return adjacent == static_cast<std::int32_t>(index) &&
                   std::minmax(a, b) == std::minmax(p, q);
        };
        const bool ab = backs(other.a, other.b, other.adjAB);
        const bool bc = backs(other.b, other.c, other.adjBC);
        const bool ac = backs(other.a, other.c, other.adjAC);
        ASSERT_EQ(ab + bc + ac, 1) << index << " and " << neighbor;
        EXPECT_LE(InCircle(p, q, o, ab ? other.c : (bc ? other.a : other.b)), 0)
            << index << " and " << neighbor;
    }

    // One closed line around everything, never turning right.
    void CheckHull() {
        ASSERT_FALSE(hull.empty());
        const std::int32_t start = hull.begin()->first;
        std::int32_t at = start;
        for (std::size_t i = 0; i < hull.size(); ++i) {
            const std::int32_t next = hull.at(at);
            EXPECT_GE(Cross(at, next, hull.at(next)), 0);
            at = next;
            ASSERT_EQ(at == start, i + 1 == hull.size());
        }
    }

    const Triangles& triangles;
    std::map<std::int32_t, std::pair<std::int64_t, std::int64_t>> places;
    std::map<std::int32_t, std::int32_t> hull; // hull edges, keeping the triangles on the left
};

TEST(TriangulateProperties, LatticePointsMakeADelaunayMesh) {
    std::mt19937 rng(11);
    for (int i = 0; i < 1500; ++i) {
        Points points = MakePoints(PointShape::Lattice, 3 + static_cast<std::size_t>(i % 120), rng);
        const Outcome run = TriangulateList(points);
        if (run.result == -2) {
            continue;
        }
        ASSERT_EQ(run.result, 1);
        const std::size_t hullEdges = MeshCheck(points, run.triangles).Everything();
        EXPECT_EQ(run.triangles.size(), 2 * points.size() - 2 - hullEdges);
        ASSERT_FALSE(HasFailure()) << "input " << i;
    }
}

} // namespace
