// What the steps of the triangulation work on: vertices and triangles in a compact form.
//
// A vertex is named by its position in the order of insertion, so that its coordinates are found
// without a table. Plain data of one call of `Triangulate`.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "gfx/Vec2.h"

/// The sides of a triangle with the corners a, b and c.
enum Side : std::size_t { kSideAB = 0, kSideBC = 1, kSideAC = 2 };

/// Aligned so that no triangle straddles two cache lines.
struct alignas(32) MeshTriangle {
    std::array<std::int32_t, 3> corner{};             ///< vertices a, b, c
    std::array<std::int32_t, 3> adjacent{-1, -1, -1}; ///< triangles, by side; -1 outside the hull
    std::uint32_t settled = 0; ///< bit per side: tested since its figure changed, stays unflipped
};

/// The triangle's corner that does not lie on the side.
constexpr std::size_t OppositeCorner(std::size_t side) {
    return (side + 2) % 3;
}

struct DelaunayMesh {
    std::vector<Vec2f> vertices;
    /// Vertex whose name a vertex has in triangles: itself, but for points that share an id, where
    /// it is the last of them.
    std::vector<std::int32_t> names;
    bool namesDiffer = true; ///< no two vertices share a name
    std::vector<MeshTriangle> triangles;
};
