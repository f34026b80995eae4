// The triangulation: what its rules say of small sets, and the recorded outcome of thousands of
// others, clean and spoiled.
#include "gen/Triangulate.h"

#include <bit>
#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "WorldDigest.h"
#include "gen/PointSets.h"
#include "support/Files.h"
#include "support/Holds.h"

namespace {

struct Outcome {
    std::int32_t result = 0;
    Points points;
    std::vector<DelaunayTriangle> triangles{2}; // must be emptied
    std::string messages;
};

Outcome TriangulateSet(Points points) {
    Outcome run;
    run.points = std::move(points);
    ErrorLines errors;
    run.result = Triangulate(run.points, run.triangles);
    run.messages = errors.Take();
    return run;
}

// Ids in their new order; corners and neighbours of all triangles.
std::string Text(const Outcome& run) {
    std::string text;
    for (const DelaunayPoint& p : run.points) {
        text += std::to_string(p.id) + ' ';
    }
    for (const DelaunayTriangle& t : run.triangles) {
        text += "| ";
        for (const std::int32_t number : {t.a, t.b, t.c, t.adjAB, t.adjBC, t.adjAC}) {
            text += std::to_string(number) + ' ';
        }
    }
    return text;
}

void AddOutcome(const Outcome& run, Digest& digest) {
    const auto add = [&digest](auto... floats) {
        (digest.Add(std::bit_cast<std::int32_t>(floats)), ...);
    };
    digest.Add(run.result);
    for (const char c : run.messages) {
        digest.Add(c);
    }
    for (const DelaunayPoint& p : run.points) {
        digest.Add(p.id);
        add(p.x, p.y, std::isnan(p.sortKey) ? 0.0f : p.sortKey);
    }
    for (const DelaunayTriangle& t : run.triangles) {
        for (const std::int32_t number : {t.a, t.b, t.c, t.adjAB, t.adjBC, t.adjAC}) {
            digest.Add(number);
        }
    }
}

} // namespace

TEST(TriangulateTest, FollowsItsRulesOnSmallSets) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    struct Case {
        std::vector<std::pair<float, float>> places;
        std::int32_t result;
        std::string messages;
        std::string outcome;
    };
    const std::string one = "of triangles 1 to be flipped. \n";
    const std::string obtuse = "warning: obtuce seed triangle sellected \n";
    const Case cases[] = {
        {{{5, 5}, {1, 1}, {nan, 0}},
         -1,
         "less than 3 points, aborting \n",
         "0 1 2 | 0 0 0 -1 -1 -1 | 0 0 0 -1 -1 -1 "},
        {{{0, 0}, {9, 9}, {1, 1}, {4, 4}}, -2, "linear structure, aborting \n", "0 2 3 1 "},
        {{{2, 2}, {2, 2}, {2, 2}}, -2, "linear structure, aborting \n", "0 1 2 "},
        {{{0, 0}, {10, 0}, {5, 1}}, 1, obtuse + one, "0 2 1 | 0 2 1 -1 -1 -1 "},
        {{{0, 0}, {1, 0}, {0, 1}, {1, 1}},
         1,
         "of triangles 2 to be flipped. \n",
         "0 2 1 3 | 0 2 1 -1 1 -1 | 3 2 1 -1 0 -1 "},
    };
    for (const Case& c : cases) {
        Points points;
        for (const auto& [x, y] : c.places) {
            AddPoint(x, y, points);
        }
        const Outcome run = TriangulateSet(points);
        EXPECT_EQ(run.result, c.result) << c.outcome;
        EXPECT_EQ(run.messages, c.messages);
        EXPECT_EQ(Text(run), c.outcome);
    }
    Points points;
    AddPoint(0, 0, points);
    AddPoint(4, 0, points);
    AddPoint(2, 3, points);
    const DelaunayTriangle seed = TriangulateSet(points).triangles.at(0);
    EXPECT_FLOAT_EQ(seed.centreX, 2.0f);
    EXPECT_FLOAT_EQ(seed.centreY, 5.0f / 6.0f);
    EXPECT_FLOAT_EQ(seed.radiusSq, 4.0f + 25.0f / 36.0f);
}

TEST(TriangulateTest, DoesWithManySetsWhatIsRecorded) {
    std::string found =
        "# Outcomes of the triangulation of point sets: shape, clean or spoiled, largest set, "
        "digest.\n"
        "# The test writes what it finds to build/<preset>/found; copy it here when it is meant.\n";
    Twister rng(11);
    for (std::size_t shape = 0; shape < std::size(kShapes); ++shape) {
        for (const bool spoiled : {false, true}) {
            for (const std::int32_t most : {6, 20, 60, 250, 900}) {
                Digest digest;
                for (int i = 0; i < (most == 900 ? 1 : 20000 / most / most + 20); ++i) {
                    Points points = MakePoints(shape, UniformInt(rng, most / 2, most), rng);
                    for (int k = spoiled ? UniformInt(rng, 1, 12) : 0; k > 0; --k) {
                        Spoil(points, rng);
                    }
                    AddOutcome(TriangulateSet(points), digest);
                }
                found += std::string(kShapes[shape]) + (spoiled ? " spoiled " : " clean ") +
                         std::to_string(most) + ' ' + std::to_string(digest.Value()) + '\n';
            }
        }
    }
    EXPECT_EQ(FirstDifference(ReadFile(VESK_TESTS "/data/triangulate_golden.txt"), found), "");
    WriteFound("triangulate_golden.txt", found);
}
