// The triangles that a triangulation works on, in a compact form, and the two steps that make them:
// points are inserted outside a growing hull, then edges are flipped. Plain data of one call of
// `Triangulate`; no step keeps state.
//
// A point is named by its position in the order of insertion, so that its coordinates are found
// without a table. Where several points share an id, the last of them stands for all.
#pragma once

#include "gen/Triangulate.h"
#include "gfx/Vec2.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// Indices are 32-bit integers, -1 for none; vectors count with std::size_t.
constexpr std::size_t At(std::int32_t index) {
    return static_cast<std::size_t>(index);
}

/// The sides of a triangle (a, b, c). A side has the index of the corner that does not lie on it.
inline constexpr std::size_t kBC = 0;
inline constexpr std::size_t kAC = 1;
inline constexpr std::size_t kAB = 2;

/// The ends of a side, as corners: the lower first. The side from a side's first end to its
/// opposite corner is, by the same rule, `SecondEnd`; that from its second end, `FirstEnd`.
constexpr std::size_t FirstEnd(std::size_t side) {
    return side == kBC ? 1 : 0;
}
constexpr std::size_t SecondEnd(std::size_t side) {
    return side == kAB ? 1 : 2;
}

/// A side of a certain triangle, in one word; negative for none. From the lowest bit: the side
/// (two bits), whether the edge is settled (one), the triangle.
using HalfEdge = std::int32_t;

inline constexpr HalfEdge kSettled = 4; ///< no flip is due while the edge's two triangles stay
inline constexpr std::size_t kSeedPoints = 3;

constexpr HalfEdge MakeHalfEdge(std::int32_t triangle, std::size_t side) {
    return 8 * triangle + static_cast<HalfEdge>(side);
}
constexpr HalfEdge Unsettled(HalfEdge edge) {
    return edge & ~kSettled;
}
constexpr std::int32_t TriangleOf(HalfEdge edge) {
    return edge >> 3; // -1 for none
}
constexpr std::size_t SideOf(HalfEdge edge) {
    return static_cast<std::size_t>(edge & 3);
}

/// As small as can be: where there are many, flipping them takes as long as fetching them.
struct MeshTriangle {
    std::array<std::int32_t, 3> corner; ///< positions of a, b and c
    std::array<HalfEdge, 3> twin;       ///< by side: the same edge as the triangle across has it

    std::int32_t Across(std::size_t side) const { return TriangleOf(twin[side]); }
    std::array<std::int32_t, 3> Neighbors() const { return {Across(0), Across(1), Across(2)}; }

    /// All that decides what a flip does.
    bool operator==(const MeshTriangle& other) const {
        return corner == other.corner && Neighbors() == other.Neighbors();
    }
};

struct DelaunayMesh {
    std::vector<Vec2f> places;       ///< by position
    std::vector<std::int32_t> names; ///< by position: the last position with the same id
    std::vector<MeshTriangle> triangles;
    /// All ids differ, so a half-edge and its twin name each other. Otherwise a twin may lead
    /// astray.
    bool idsDiffer = true;

    /// Whether every twin leads back and has the same ends.
    bool IsSound() const {
        const auto ends = [](const MeshTriangle& triangle, std::size_t side) {
            return std::minmax({triangle.corner[FirstEnd(side)], triangle.corner[SecondEnd(side)]});
        };
        bool sound = true;
        for (std::size_t t = 0; t < triangles.size(); ++t) {
            for (const std::size_t side : {kBC, kAC, kAB}) {
                const auto [p, q] = ends(triangles[t], side);
                const HalfEdge twin = triangles[t].twin[side];
                const MeshTriangle& other = triangles[twin < 0 ? t : At(TriangleOf(twin))];
                const std::size_t back = SideOf(twin);
                sound &= twin < 0 ||
                         (At(other.Across(back)) == t && ends(other, back) == std::pair(p, q));
            }
        }
        return sound;
    }
};

/// Makes the mesh's triangle 0 of the points 0, 1 and 2 and adds the others that the mesh has a
/// name for, in their order. A point equal to one before it is left out, and so is one that sees no
/// edge of the hull, or all of them (both by rounding).
void InsertPoints(const std::vector<DelaunayPoint>& points, DelaunayMesh& mesh);

/// Makes the triangulation Delaunay. Two triangles that share an edge form a quad; a flip cuts it
/// along the other diagonal. Passes over the triangles test every edge and flip where the swap test
/// says so; the list of those that a pass rewrote is what the following pass looks at, unless it
/// has more entries than maxListed plus 4 per triangle. Returns the result of `Triangulate`: 1, or
/// -3 or -4 after adjacency that does not lead back, having said so on standard error.
std::int32_t FlipTriangles(DelaunayMesh& mesh, std::size_t maxListed);
