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

/// A side of a certain triangle, in one word: the side in the two lowest bits, above them the
/// triangle. Negative for none.
using HalfEdge = std::int32_t;

inline constexpr std::size_t kSeedPoints = 3;

constexpr HalfEdge MakeHalfEdge(std::int32_t triangle, std::size_t side) {
    return 4 * triangle + static_cast<HalfEdge>(side);
}
constexpr std::int32_t TriangleOf(HalfEdge edge) {
    return edge >> 2; // -1 for none
}
constexpr std::size_t SideOf(HalfEdge edge) {
    return static_cast<std::size_t>(edge & 3);
}

/// 24 bytes, because flips of a large mesh wait for memory.
struct MeshTriangle {
    std::array<std::int32_t, 3> corner; ///< positions of a, b and c
    std::array<HalfEdge, 3> twin;       ///< by side: the same edge as the triangle across has it

    std::int32_t Across(std::size_t side) const { return TriangleOf(twin[side]); }
};

struct DelaunayMesh {
    std::vector<Vec2f> places;       ///< by position
    std::vector<std::int32_t> names; ///< by position: the last position with the same id
    std::vector<MeshTriangle> triangles;
    bool idsDiffer = true; ///< then twins are mutual; otherwise they may not be

    /// Whether every side's twin has that side for its twin, and the same ends.
    bool IsSound() const {
        const auto ends = [this](HalfEdge edge) {
            const std::array<std::int32_t, 3>& corner = triangles[At(TriangleOf(edge))].corner;
            return std::minmax(corner[FirstEnd(SideOf(edge))], corner[SecondEnd(SideOf(edge))]);
        };
        bool sound = true;
        for (std::size_t t = 0; t < triangles.size(); ++t) {
            for (const std::size_t side : {kBC, kAC, kAB}) {
                const HalfEdge edge = MakeHalfEdge(static_cast<std::int32_t>(t), side);
                const HalfEdge twin = triangles[t].twin[side];
                sound &= twin < 0 || (triangles[At(TriangleOf(twin))].twin[SideOf(twin)] == edge &&
                                      ends(twin) == ends(edge));
            }
        }
        return sound;
    }
};

/// Starts with triangle (0, 1, 2) and inserts the other points that have a name, in their order.
/// Skips points equal to an earlier one, and those that see no hull edge or, because of rounding,
/// all.
void InsertPoints(const std::vector<DelaunayPoint>& points, DelaunayMesh& mesh);

/// Makes the triangulation Delaunay. Two triangles that share an edge form a quad; a flip cuts it
/// along the other diagonal. Passes over the triangles test every edge and flip where the swap test
/// says so. Each further pass looks at the list of triangles that the last one has rewritten,
/// unless it has more than 65,536 entries plus 4 per triangle. Returns the result of `Triangulate`:
/// 1, or -3 or -4 after adjacency that does not lead back, having said so on standard error.
std::int32_t FlipTriangles(DelaunayMesh& mesh);
