// The flips that make a triangulation Delaunay.
//
// Two triangles that share an edge form a quad; a flip cuts it along the other diagonal. Passes
// over the triangles test every edge and flip where the swap test says so; the triangles that a
// pass rewrote are what the following pass looks at.
#pragma once

#include <cstdint>

#include "gen/DelaunayMesh.h"

/// Makes all passes. Returns the result of `Triangulate`: 1, or -3 or -4 after adjacency that does
/// not lead back, having said so on standard error. Keeps no state.
std::int32_t FlipTriangles(DelaunayMesh& mesh);
