// A second triangulation, written as a plain reading of the rules with no thought of speed. The
// tests hold the program's own against it, bit for bit.
#pragma once

#include <cstdint>
#include <ostream>
#include <vector>

#include "gen/Triangulate.h"

/// As `Triangulate`; the messages go to `out`.
std::int32_t ReferenceTriangulate(std::vector<DelaunayPoint>& points,
                                  std::vector<DelaunayTriangle>& triangles, std::ostream& out);
