// Triangulates arbitrary points with arbitrary ids and checks what holds of every result.
#include "gen/Triangulate.h"

#include "ByteReader.h"
#include "FuzzSetup.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <set>
#include <vector>

namespace {

using Points = std::vector<DelaunayPoint>;
using Triangles = std::vector<DelaunayTriangle>;

// The first byte says how coordinates and ids are spelled: raw floats find what rounding does,
// small whole numbers find circles, lines and doubles.
class PointReader {
public:
    PointReader(const std::uint8_t* data, std::size_t size) : reader(data, size) {
        const auto mode = reader.Take<std::uint8_t>();
        coordinates = mode & 3U;
        arbitraryIds = (mode & 4U) != 0;
        smallIds = (mode & 8U) != 0;
    }

    Points Read() {
        Points points;
        while (!reader.IsEmpty()) {
            DelaunayPoint point;
            point.id = Id(points.size());
            point.x = Coordinate();
            point.y = Coordinate();
            points.push_back(point);
        }
        return points;
    }

private:
    std::int32_t Id(std::size_t index) {
        if (!arbitraryIds) {
            return static_cast<std::int32_t>(index);
        }
        return smallIds ? reader.Take<std::int8_t>() : reader.Take<std::int32_t>();
    }

    float Coordinate() {
        switch (coordinates) {
        case 0:
            return reader.Take<float>();
        case 1:
            return static_cast<float>(reader.Take<std::int8_t>());
        case 2:
            return static_cast<float>(reader.TakeBelow(8));
        default:
            return static_cast<float>(reader.Take<std::int16_t>()) * 0.5f;
        }
    }

    ByteReader reader;
    unsigned coordinates;
    bool arbitraryIds;
    bool smallIds;
};

bool IsUsable(const DelaunayPoint& point) {
    return point.id >= 0 && std::isfinite(point.x) && std::isfinite(point.y);
}

std::vector<std::int32_t> IdsOf(const Points& points) {
    std::vector<std::int32_t> ids;
    for (const DelaunayPoint& point : points) {
        ids.push_back(point.id);
    }
    return ids;
}

std::multiset<std::int32_t> Sorted(const std::vector<std::int32_t>& ids) {
    return {ids.begin(), ids.end()};
}

bool HasDistinctIds(const Points& points) {
    const std::vector<std::int32_t> ids = IdsOf(points);
    return std::set<std::int32_t>(ids.begin(), ids.end()).size() == ids.size();
}

std::vector<std::int32_t> CornersOf(const Triangles& triangles) {
    std::vector<std::int32_t> corners;
    for (const DelaunayTriangle& triangle : triangles) {
        corners.insert(corners.end(), {triangle.a, triangle.b, triangle.c});
    }
    return corners;
}

void CheckCorners(const Points& input, const Triangles& triangles) {
    std::set<std::int32_t> usable;
    for (const DelaunayPoint& point : input) {
        if (IsUsable(point)) {
            usable.insert(point.id);
        }
    }
    for (const std::int32_t corner : CornersOf(triangles)) {
        ASSERT_TRUE(usable.contains(corner)) << corner;
    }
}

bool HasEdge(const DelaunayTriangle& t, std::int32_t p, std::int32_t q, std::int32_t neighbor) {
    const auto joins = [&](std::int32_t u, std::int32_t v) {
        return (u == p && v == q) || (u == q && v == p);
    };
    return (t.adjAB == neighbor && joins(t.a, t.b)) || (t.adjBC == neighbor && joins(t.b, t.c)) ||
           (t.adjAC == neighbor && joins(t.a, t.c));
}

void CheckNeighbor(const Triangles& triangles, std::int32_t index, std::int32_t p, std::int32_t q,
                   std::int32_t neighbor, bool mutual) {
    ASSERT_GE(neighbor, -1);
    ASSERT_LT(neighbor, static_cast<std::int32_t>(triangles.size()));
    if (mutual && neighbor >= 0) {
        ASSERT_TRUE(HasEdge(triangles[static_cast<std::size_t>(neighbor)], p, q, index))
            << index << " and " << neighbor;
    }
}

void CheckAdjacency(const Triangles& triangles, bool mutual) {
    for (std::size_t i = 0; i < triangles.size(); ++i) {
        const DelaunayTriangle& t = triangles[i];
        const auto index = static_cast<std::int32_t>(i);
        CheckNeighbor(triangles, index, t.a, t.b, t.adjAB, mutual);
        CheckNeighbor(triangles, index, t.b, t.c, t.adjBC, mutual);
        CheckNeighbor(triangles, index, t.a, t.c, t.adjAC, mutual);
    }
}

void CheckRepeats(const Points& input, std::int32_t result, const Points& points,
                  const Triangles& triangles) {
    Points again = input;
    Triangles more(result == -1 ? 0 : 3); // emptied, but when nothing is usable
    ASSERT_EQ(Triangulate(again, more), result);
    ASSERT_EQ(IdsOf(again), IdsOf(points));
    ASSERT_EQ(CornersOf(more), CornersOf(triangles));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    SetUpFuzzing();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Points input = PointReader(data, size).Read();
    Points points = input;
    Triangles triangles;
    const std::int32_t result = Triangulate(points, triangles);
    EXPECT_TRUE(result == 1 || (result <= -1 && result >= -4)) << result;
    EXPECT_EQ(triangles.empty(), result == -1 || result == -2);
    EXPECT_EQ(Sorted(IdsOf(points)), Sorted(IdsOf(input)));
    CheckCorners(input, triangles);
    CheckAdjacency(triangles, result == 1 && HasDistinctIds(input));
    CheckRepeats(input, result, points, triangles);
    return 0;
}
