// Delaunay triangulation of points in the plane, with the triangles' adjacency.
//
// The idea. A seed triangle is chosen: the first point, the point nearest to it, and the third that
// makes the smallest circle through all three. The other points are added in order of their
// distance from that circle's centre, so each lies outside everything built before it, and the
// outline of what is built stays convex. Triangles made that way can be long and thin; flips of
// edges then repair them until no point lies within another triangle's circle.
//
// The terms.
// - Hull: the outline, a closed list of points. Hull edge i runs from point i to point i + 1 and
//   belongs to one triangle, its owner.
// - Visibility: a new point sees a hull edge when it lies strictly outside the edge's line. A point
//   on the line does not see the edge.
// - Chain: the run of hull points along the edges that a new point sees. The point is joined to
//   every edge of the chain by a triangle and takes the place of the chain's inner points.
// - Swap test: of the two ways to cut a four-sided figure into two triangles, is the other one
//   better? It is when the two angles that face the shared edge add up to more than 180 degrees.
//
// All geometry is in 32-bit floats, and every test is an exact comparison. The result is therefore
// the same, bit for bit, wherever no step is contracted into a fused multiply-add. It keeps no
// state between calls: any thread may call, with lists of its own; only standard error is shared,
// and each line goes there in one write.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

struct DelaunayPoint {
    std::int32_t id = 0;      ///< the caller's name for the point, 0 or greater
    std::int32_t hullTri = 0; ///< work field of copies on the hull, left as it is
    float x = 0.0f;
    float y = 0.0f;
    float edgeX = 0.0f;   ///< work field of copies on the hull, left as it is
    float edgeY = 0.0f;   ///< the same
    float sortKey = 0.0f; ///< written: a squared distance, see `Triangulate`
};

struct DelaunayTriangle {
    std::int32_t a = 0; ///< corners, as the points' ids
    std::int32_t b = 0;
    std::int32_t c = 0;
    std::int32_t adjAB = -1; ///< index of the triangle across the edge a-b; -1 outside the hull
    std::int32_t adjBC = -1;
    std::int32_t adjAC = -1;
    float radiusSq = -1.0f; ///< of the seed's circle in triangle 0; -1 in every other
    float centreX = 0.0f;
    float centreY = 0.0f;
};

/// Triangulates the points. The triangle list is emptied first; triangle 0 starts as the seed
/// triangle. The points are put in the order in which they were added, the three seed points first.
/// Their sort keys become the seed points' squared distances from the first of them, and the
/// others' from the seed circle's centre.
///
/// Returns
/// - 1 on success;
/// - -1 for fewer than three usable points (both lists stay as they are);
/// - -2 when no third point makes a circle with the first two, as for points on one line (the
///   points are left sorted by distance from the first, as their sort keys say);
/// - -3 or -4 when the first or a later pass of flips found adjacency that is not mutual, which
///   only repeated ids can cause (the triangles stay as they were at that moment).
/// Reports progress and problems on standard error. Takes up to 2^28 points.
///
/// Degenerate input:
/// - A negative id, or a coordinate that is not a finite number: not usable. Such points are left
///   out and stand behind the others in the caller's order, with an infinite sort key.
/// - Equal points: the first in the caller's list is used, the others belong to no triangle.
/// - A point that sees no hull edge, or all of them because of rounding: belongs to no triangle.
/// - A repeated id: triangles name it for each point, and flips take the last one's position.
/// - A large id, up to 2^31 - 1: costs no more than a small one.
///
/// Rounding can make triangles flip back and forth without end. Flipping therefore stops when the
/// list of triangles to look at again has more than 65,536 entries plus 4 per triangle.
std::int32_t Triangulate(std::vector<DelaunayPoint>& points,
                         std::vector<DelaunayTriangle>& triangles);

/// Calls visit(corner, other, other) for each corner of each triangle, by ids, in the order in
/// which neighbours are listed.
template <typename Visit>
void ForEachCorner(const std::vector<DelaunayTriangle>& triangles, const Visit& visit) {
    for (const DelaunayTriangle& t : triangles) {
        visit(t.a, t.b, t.c);
        visit(t.b, t.a, t.c);
        visit(t.c, t.b, t.a);
    }
}
