// Seeded point sets of many shapes, made by exact arithmetic alone, so that they are the same
// everywhere.
#pragma once

#include "gen/Random.h"
#include "gen/Triangulate.h"

using Points = std::vector<DelaunayPoint>;

inline constexpr const char* kShapes[] = {"lattice", "plane", "circle", "columns",
                                          "tiny",    "mixed", "slivers"};

/// Appends a point whose id is its place in the list.
void AddPoint(float x, float y, Points& points);

/// About `count` points of distinct places with the ids 0, 1, 2, ...
Points MakePoints(std::size_t shape, std::int32_t count, Twister& rng);

/// Spoils a set in one of the ways that a caller should not, and still must not suffer from.
void Spoil(Points& points, Twister& rng);
