// The triangulation: what its rules say of small sets, and the recorded outcome of thousands of
// others, clean and spoiled.
#include "gen/Triangulate.h"

#include "WorldDigest.h"
#include "common/Arithmetic.h"
#include "gen/Random.h"
#include "support/Files.h"
#include "support/Holds.h"
#include "support/Limits.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>
#include <utility>

namespace {

using Points = std::vector<DelaunayPoint>;
using Place = std::pair<float, float>;

constexpr const char* kShapes[] = {"lattice", "plane", "circle", "columns", "tiny"};

// Made by exact arithmetic alone, so that places are the same everywhere.
Place OneOf(std::size_t shape, std::size_t count, Twister& rng) {
    const auto whole = [&rng](std::int32_t lo, std::int32_t hi) {
        return static_cast<float>(UniformInt(rng, lo, hi));
    };
    const auto unit = [&] { return std::ldexp(whole(-(1 << 24), 1 << 24), -24); };
    const float t = unit();
    const std::int32_t side = 3 + static_cast<std::int32_t>(count) / 8;
    const float x = whole(0, side);
    const float half = whole(0, 1);
    const float onCircle = (half * 2000.0f - 1000.0f) / (1.0f + t * t);
    const Place places[] = {{x, whole(0, side)},
                            {t, unit()},
                            // Rounding keeps flips on a circle from settling.
                            {(1.0f - t * t) * onCircle, 2.0f * t * onCircle},
                            {whole(0, 31) + 1048544.0f * half, whole(0, 31)},
                            {1.0e-21f * x, 1.0e-21f * whole(0, 99)}};
    return places[shape];
}

// Points of these places with the ids 0, 1, 2, ...
Points PointsAt(const std::vector<Place>& places) {
    Points points(places.size());
    for (std::size_t i = 0; i < places.size(); ++i) {
        points[i].id = static_cast<std::int32_t>(i);
        std::tie(points[i].x, points[i].y) = places[i];
    }
    return points;
}

// Does what a caller should not, and still must not suffer from: repeated, negative or huge ids,
// places that are none or repeated.
void Spoil(Points& points, Twister& rng) {
    const auto any = [&]() -> DelaunayPoint& { return points[rng() % points.size()]; };
    const std::int32_t ids[] = {any().id, -5, WrapSub(0x7fffffff, any().id % 4)};
    const float values[] = {kNan, -kInfinite, std::numeric_limits<float>::max(), -0.0f, any().y};
    any().id = ids[rng() % 3];
    any().x = values[rng() % 5];
    points.push_back(any());
}

// The result and the messages; the points' ids in their new order; corners and neighbours of all
// triangles.
std::string Outcome(Points& points, std::vector<DelaunayTriangle>& triangles) {
    ErrorLines errors;
    const std::int32_t result = Triangulate(points, triangles);
    std::string text = std::to_string(result) + ' ' + errors.Take();
    for (const DelaunayPoint& p : points) {
        text += std::to_string(p.id) + ' ';
    }
    for (const DelaunayTriangle& t : triangles) {
        text += "| ";
        for (const std::int32_t number : {t.a, t.b, t.c, t.adjAB, t.adjBC, t.adjAC}) {
            text += std::to_string(number) + ' ';
        }
    }
    return text;
}

void AddOutcome(Points points, Digest& digest) {
    std::vector<DelaunayTriangle> triangles(2); // must be emptied
    for (const char c : Outcome(points, triangles)) {
        digest.Add(c);
    }
    for (const DelaunayPoint& p : points) {
        digest.Add(p.x, p.y, p.sortKey);
    }
}

} // namespace

TEST(TriangulateTest, FollowsItsRulesOnSmallSets) {
    struct Case {
        std::vector<Place> places;
        std::string outcome;
    };
    std::vector<DelaunayTriangle> triangles;
    for (const Case& c :
         {Case{{{5, kInfinite}, {1, 1}, {3, 3}}, "-1 less than 3 points, aborting \n0 1 2 "},
          {{{0, 0}, {9, 9}, {1, 1}, {4, 4}}, "-2 linear structure, aborting \n0 2 3 1 "},
          {{{2, 2}, {2, 2}, {2, 2}}, "-2 linear structure, aborting \n0 1 2 "},
          {{{0, 0}, {10, 0}, {5, 1}},
           "1 warning: obtuce seed triangle sellected \nof triangles 1 to be flipped. \n"
           "0 2 1 | 0 2 1 -1 -1 -1 "},
          {{{0, 0}, {1, 0}, {0, 1}, {1, 1}},
           "1 of triangles 2 to be flipped. \n0 2 1 3 | 0 2 1 -1 1 -1 | 3 2 1 -1 0 -1 "}}) {
        Points points = PointsAt(c.places);
        EXPECT_EQ(Outcome(points, triangles), c.outcome);
    }
    EXPECT_FLOAT_EQ(triangles[0].centreX, 0.5f);
    EXPECT_FLOAT_EQ(triangles[0].centreY, 0.5f);
    EXPECT_FLOAT_EQ(triangles[0].radiusSq, 0.5f);
}

TEST(TriangulateTest, DoesWithManySetsWhatIsRecorded) {
    std::string found =
        "# Outcomes of the triangulation of point sets: shape, clean or spoiled, largest set, "
        "digest.\n"
        "# The test writes what it finds to build/<preset>/found; copy it here when it is meant.\n";
    Twister rng(11);
    for (std::size_t shape = 0; shape < std::size(kShapes); ++shape) {
        for (const bool spoiled : {false, true}) {
            for (const std::size_t most : {6U, 20U, 60U, 250U, 900U}) {
                Digest digest;
                for (std::size_t i = 0; i < (most == 900 ? 1 : 20000 / most / most + 20); ++i) {
                    std::vector<Place> places(most / 2 + rng() % (most / 2));
                    for (Place& place : places) {
                        place = OneOf(shape, places.size(), rng);
                    }
                    Points points = PointsAt(places);
                    for (int k = spoiled ? UniformInt(rng, 1, 4) : 0; k > 0; --k) {
                        Spoil(points, rng);
                    }
                    AddOutcome(points, digest);
                }
                found += std::string(kShapes[shape]) + (spoiled ? " spoiled " : " clean ") +
                         std::to_string(most) + ' ' + std::to_string(digest.Value()) + '\n';
            }
        }
    }
    EXPECT_EQ(CompareGolden(VESK_TESTS "/data/triangulate_golden.txt", found), "");
}
