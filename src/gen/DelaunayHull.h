// The growing convex outline of a triangulation, and the insertion of points outside it.
#pragma once

#include <vector>

#include "gen/DelaunayMesh.h"
#include "gen/Triangulate.h"

/// Makes the mesh's triangle 0 of the points 0, 1 and 2 and adds the others that the mesh has a
/// name for, in their order. A point equal to one before it is left out, and so is one that sees no
/// edge of the hull, or all of them (both by rounding). Keeps no state.
void InsertPoints(const std::vector<DelaunayPoint>& points, DelaunayMesh& mesh);
