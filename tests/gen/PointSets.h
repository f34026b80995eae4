// Seeded point sets of many shapes for the tests of the triangulation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "gen/Triangulate.h"

enum class PointShape {
    Lattice,       ///< distinct points of a small lattice: many equal distances and circles
    Plane,         ///< floats at random
    Lines,         ///< runs of points on a few lines
    Circle,        ///< points near one circle, in floats and on the lattice
    Clumps,        ///< tight groups far apart
    FarColumns,    ///< lattice columns about a million units apart
    Huge,          ///< nearly as large as a seed circle may be
    Tiny,          ///< so small that squares lose most of their bits
    MixedScale,    ///< every power of ten
    NearlyOnALine, ///< slivers
    Count
};

/// Appends a point whose id is its place in the list.
void AddPoint(float x, float y, std::vector<DelaunayPoint>& points);

/// Up to `count` points with the ids 0, 1, 2, ...; distinct places.
std::vector<DelaunayPoint> MakePoints(PointShape shape, std::size_t count, std::mt19937& rng);

/// Points evenly spread over a circle, as well as floats can say. Rounding keeps the flips from
/// ever settling.
std::vector<DelaunayPoint> MakeCircle(std::int32_t count);
