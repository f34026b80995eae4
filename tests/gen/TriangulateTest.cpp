#include "gen/Triangulate.h"

#include <algorithm>
#include <array>
#include <cstdint>
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

Points MakeList(std::initializer_list<std::pair<float, float>> places) {
    Points points;
    for (const auto& [x, y] : places) {
        DelaunayPoint point;
        point.id = static_cast<std::int32_t>(points.size());
        point.x = x;
        point.y = y;
        points.push_back(point);
    }
    return points;
}

std::vector<std::int32_t> Ids(const Points& points) {
    std::vector<std::int32_t> ids;
    for (const DelaunayPoint& point : points) {
        ids.push_back(point.id);
    }
    return ids;
}

std::array<std::int32_t, 6> Fields(const DelaunayTriangle& t) {
    return {t.a, t.b, t.c, t.adjAB, t.adjBC, t.adjAC};
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

using Six = std::array<std::int32_t, 6>;
using List = std::vector<std::int32_t>;

TEST(Triangulate, RefusesFewerThanThreePoints) {
    Points points = MakeList({{5.0f, 5.0f}, {1.0f, 1.0f}});
    points[0].sortKey = 3.0f;
    Triangles triangles(2);
    const ErrorCapture errors;
    EXPECT_EQ(Triangulate(points, triangles), -1);
    EXPECT_EQ(errors.Text(), "less than 3 points, aborting \n");
    EXPECT_EQ(Ids(points), (List{0, 1}));
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
}

TEST(Triangulate, KeepsTheSeedCircle) {
    Points points = MakeList({{0.0f, 0.0f}, {4.0f, 0.0f}, {2.0f, 3.0f}});
    const Outcome run = TriangulateList(points);
    EXPECT_EQ(run.result, 1);
    EXPECT_EQ(run.messages, "of triangles 1 to be flipped. \n");
    ASSERT_EQ(run.triangles.size(), 1u);
    const DelaunayTriangle& seed = run.triangles[0];
    EXPECT_EQ(seed.adjAB, -1);
    EXPECT_EQ(seed.adjBC, -1);
    EXPECT_EQ(seed.adjAC, -1);
    EXPECT_FLOAT_EQ(seed.centreX, 2.0f);
    EXPECT_FLOAT_EQ(seed.centreY, 5.0f / 6.0f);
    EXPECT_FLOAT_EQ(seed.radiusSq, 4.0f + 25.0f / 36.0f);
}

TEST(Triangulate, WarnsOfAnObtuseSeed) {
    Points points = MakeList({{0.0f, 0.0f}, {10.0f, 0.0f}, {5.0f, 1.0f}});
    const Outcome run = TriangulateList(points);
    EXPECT_EQ(run.result, 1);
    EXPECT_EQ(run.messages, "warning: obtuce seed triangle sellected \n"
                            "of triangles 1 to be flipped. \n");
    EXPECT_EQ(Ids(points), (List{0, 2, 1}));
    ASSERT_EQ(run.triangles.size(), 1u);
    EXPECT_EQ(Fields(run.triangles[0]), (Six{0, 2, 1, -1, -1, -1}));
}

TEST(Triangulate, DoesNotFlipFourPointsOnACircle) {
    Points points = MakeList({{0.0f, 0.0f}, {1.0f, 0.0f}, {0.0f, 1.0f}, {1.0f, 1.0f}});
    const Outcome run = TriangulateList(points);
    EXPECT_EQ(run.result, 1);
    EXPECT_EQ(Ids(points), (List{0, 2, 1, 3}));
    ASSERT_EQ(run.triangles.size(), 2u);
    EXPECT_EQ(Fields(run.triangles[0]), (Six{0, 2, 1, -1, 1, -1}));
    EXPECT_EQ(Fields(run.triangles[1]), (Six{3, 2, 1, -1, 0, -1}));
}

TEST(Triangulate, LeavesOutWhatItCannotUse) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinite = std::numeric_limits<float>::infinity();
    Points points = MakeList(
        {{nan, 0.0f}, {0.0f, 0.0f}, {4.0f, 0.0f}, {1.0f, infinite}, {2.0f, 3.0f}, {2.0f, 1.0f}});
    points[5].id = -4;
    const Outcome run = TriangulateList(points);
    EXPECT_EQ(run.result, 1);
    EXPECT_EQ(run.triangles.size(), 1u);
    EXPECT_EQ(Ids(points), (List{1, 4, 2, 0, 3, -4}));
    EXPECT_EQ(points[3].sortKey, infinite);

    points.erase(points.begin());
    EXPECT_EQ(TriangulateList(points).result, -1);
}

// Four corners, each given three times: the second point must not be the first one's double.
TEST(Triangulate, UsesEqualPointsOnce) {
    Points points;
    for (int i = 0; i < 3; ++i) {
        for (const DelaunayPoint& corner :
             MakeList({{0.0f, 0.0f}, {7.0f, 0.0f}, {0.0f, 5.0f}, {7.0f, 6.0f}})) {
            points.push_back(corner);
            points.back().id += 4 * i;
        }
    }
    const Outcome run = TriangulateList(points);
    EXPECT_EQ(run.result, 1);
    ASSERT_EQ(run.triangles.size(), 2u);
    for (const DelaunayTriangle& t : run.triangles) {
        EXPECT_LT(std::max({t.a, t.b, t.c}), 4);
    }
}

TEST(Triangulate, AllEqualPointsMakeNoTriangle) {
    Points points = MakeList({{2.0f, 2.0f}, {2.0f, 2.0f}, {2.0f, 2.0f}, {2.0f, 2.0f}});
    EXPECT_EQ(TriangulateList(points).result, -2);
}

TEST(Triangulate, TakesIdsOfAnySize) {
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
    Points points = MakeList({{0.0f, 0.0f}, {4.0f, 0.0f}, {2.0f, 3.0f}, {5.0f, 5.0f}});
    points[0].id = largest;
    points[3].id = largest - 1;
    const Outcome run = TriangulateList(points);
    EXPECT_EQ(run.result, 1);
    ASSERT_EQ(run.triangles.size(), 2u);
    EXPECT_EQ(run.triangles[0].a, largest);
    EXPECT_EQ(run.triangles[1].a, largest - 1);
}

// One id for all points names every corner alike, and adjacency gets lost.
TEST(Triangulate, ReportsAdjacencyThatIsNotMutual) {
    std::mt19937 rng(3);
    int failures = 0;
    for (int i = 0; i < 50; ++i) {
        Points points = MakePoints(PointShape::Lattice, 40, rng);
        for (DelaunayPoint& point : points) {
            point.id %= 3;
        }
        const Outcome run = TriangulateList(points);
        if (run.result < 0) {
            ++failures;
            EXPECT_NE(run.messages.find("triangle flipping error. "), std::string::npos);
            EXPECT_NE(run.messages.find("cannot triangualte this set \n"), std::string::npos);
        }
    }
    EXPECT_GT(failures, 0);
}

// Rounding lets pairs of triangles flip back and forth for ever; the list of what to look at would
// double from pass to pass, to 2^50 entries.
TEST(Triangulate, EndsWhereRoundingNeverSettles) {
    Points points = MakeCircle(1000);
    const Outcome run = TriangulateList(points);
    EXPECT_EQ(run.result, 1);
    EXPECT_GE(run.triangles.size(), 998u);
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

    void Everything() {
        for (std::size_t t = 0; t < triangles.size(); ++t) {
            CheckTriangle(static_cast<std::int32_t>(t));
        }
        CheckHull();
    }

    std::size_t HullEdges() const { return hull.size(); }

private:
    struct Place {
        std::int64_t x, y;
    };

    static std::int64_t Cross(Place a, Place b, Place c) {
        return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    }

    // Positive when d lies within the circle through a, b and c, which turn to the left.
    static std::int64_t InCircle(Place a, Place b, Place c, Place d) {
        const auto row = [d](Place p) {
            const std::int64_t x = p.x - d.x;
            const std::int64_t y = p.y - d.y;
            return std::array{x, y, x * x + y * y};
        };
        const auto [ax, ay, as] = row(a);
        const auto [bx, by, bs] = row(b);
        const auto [cx, cy, cs] = row(c);
        return ax * (by * cs - bs * cy) - ay * (bx * cs - bs * cx) + as * (bx * cy - by * cx);
    }

    void CheckTriangle(std::int32_t index) {
        const DelaunayTriangle& t = triangles[static_cast<std::size_t>(index)];
        ASSERT_NE(Cross(places.at(t.a), places.at(t.b), places.at(t.c)), 0) << index;
        CheckSide(index, t.a, t.b, t.c, t.adjAB);
        CheckSide(index, t.b, t.c, t.a, t.adjBC);
        CheckSide(index, t.c, t.a, t.b, t.adjAC);
    }

    // Side p-q of triangle `index`, whose third corner is o.
    void CheckSide(std::int32_t index, std::int32_t p, std::int32_t q, std::int32_t o,
                   std::int32_t neighbor) {
        const bool leftTurn = Cross(places.at(p), places.at(q), places.at(o)) > 0;
        if (neighbor < 0) {
            const std::int32_t from = leftTurn ? p : q;
            EXPECT_TRUE(hull.emplace(from, leftTurn ? q : p).second);
            return;
        }
        const DelaunayTriangle& other = triangles.at(static_cast<std::size_t>(neighbor));
        const auto backs = [&](std::int32_t a, std::int32_t b, std::int32_t adjacent) {
            return adjacent == index && std::minmax(a, b) == std::minmax(p, q);
        };
        const bool ab = backs(other.a, other.b, other.adjAB);
        const bool bc = backs(other.b, other.c, other.adjBC);
        const bool ac = backs(other.a, other.c, other.adjAC);
        ASSERT_EQ(ab + bc + ac, 1) << index << " and " << neighbor;
        const std::int32_t d = ab ? other.c : (bc ? other.a : other.b);
        const std::int32_t second = leftTurn ? q : p;
        const std::int32_t third = leftTurn ? p : q;
        EXPECT_LE(InCircle(places.at(o), places.at(third), places.at(second), places.at(d)), 0)
            << index << " and " << neighbor;
    }

    // One closed line around everything, never turning right.
    void CheckHull() {
        ASSERT_FALSE(hull.empty());
        const std::int32_t start = hull.begin()->first;
        std::int32_t at = start;
        for (std::size_t i = 0; i < hull.size(); ++i) {
            const std::int32_t next = hull.at(at);
            EXPECT_GE(Cross(places.at(at), places.at(next), places.at(hull.at(next))), 0);
            at = next;
            ASSERT_TRUE(at != start || i + 1 == hull.size());
        }
        EXPECT_EQ(at, start);
    }

    const Triangles& triangles;
    std::map<std::int32_t, Place> places;
    std::map<std::int32_t, std::int32_t> hull; // hull edges, keeping the triangles on the left
};

TEST(TriangulateProperties, LatticePointsMakeADelaunayMesh) {
    std::mt19937 rng(11);
    for (int i = 0; i < 1500; ++i) {
        const std::size_t count = 3 + static_cast<std::size_t>(i % 120);
        Points points = MakePoints(PointShape::Lattice, count, rng);
        const Outcome run = TriangulateList(points);
        if (run.result == -2) {
            continue;
        }
        ASSERT_EQ(run.result, 1);
        MeshCheck check(points, run.triangles);
        check.Everything();
        EXPECT_EQ(run.triangles.size(), 2 * points.size() - 2 - check.HullEdges()) << "input " << i;
        if (HasFailure()) {
            FAIL() << "input " << i;
        }
    }
}

} // namespace
