// The triangle that a triangulation starts from. Part of `Triangulate`; keeps no state.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "gen/DelaunayOrder.h"
#include "gen/Triangulate.h"
#include "gfx/Vec2.h"

struct DelaunaySeed {
    bool found = false;
    std::array<std::size_t, 3> points{}; ///< indices: the first, the nearest to it, the third
    std::array<float, 3> sortKeys{};     ///< their squared distances from the first
    float radiusSq = 0.0f;               ///< of the circle through the three
    Vec2f centre;
};

/// Looks for the third point that makes the smallest circle with the first two points of the
/// order, nearest candidates first. The search ends at a candidate so far away that its circle
/// cannot be smaller. Nothing is found when every candidate lies on a line with the first two.
DelaunaySeed FindSeed(const std::vector<DelaunayPoint>& points, DelaunayOrder& order);

/// Does the triangle have an angle of more than 90 degrees?
bool IsObtuse(const DelaunayPoint& p0, const DelaunayPoint& p1, const DelaunayPoint& p2);
