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

/// The sides of a triangle with the corners a, b and c. A side has the index of the corner that
/// does not lie on it.
enum Side : std::size_t { kSideBC = 0, kSideAC = 1, kSideAB = 2 };

/// The ends of a side, as corners: the lower first.
constexpr std::size_t FirstEnd(std::size_t side) {
    return side == kSideBC ? 1 : 0;
}
constexpr std::size_t SecondEnd(std::size_t side) {
    return side == kSideAB ? 1 : 2;
}

/// What lies across a side, in one word. From the lowest bit: the side by which it is reached (two
/// bits), whether the edge between is settled (one, see DelaunayQuickFlips.h), the triangle there.
/// Negative where nothing lies across.
using Link = std::int32_t;

inline constexpr Link kNoLink = -1;
inline constexpr Link kSideBits = 3;
inline constexpr Link kSettledBit = 4;
inline constexpr int kTriangleShift = 3;
inline constexpr std::int32_t kMostTriangles = 1 << 28; ///< that a link can tell apart

constexpr Link MakeLink(std::int32_t triangle, std::size_t side) {
    return triangle * (1 << kTriangleShift) + static_cast<Link>(side);
}

/// -1 for no link, as in `DelaunayTriangle`.
constexpr std::int32_t LinkedTriangle(Link link) {
    return link >> kTriangleShift;
}

constexpr std::size_t LinkedSide(Link link) {
    return static_cast<std::size_t>(link & kSideBits);
}

/// How long the list of triangles to look at again may get; rounding can double it in every pass.
constexpr std::size_t PendingLimit(std::size_t triangles) {
    return 65536 + 4 * triangles;
}

/// Aligned so that no triangle straddles two cache lines.
struct alignas(32) MeshTriangle {
    std::array<std::int32_t, 3> corner{};                 ///< vertices a, b, c
    std::array<Link, 3> links{kNoLink, kNoLink, kNoLink}; ///< by side
};

struct DelaunayMesh {
    std::vector<Vec2f> vertices;
    /// The vertex that stands for a vertex in triangles: itself, but for points that share an id,
    /// where it is the last of them.
    std::vector<std::int32_t> representatives;
    /// Every vertex stands for itself. The links are mutual then, down to the sides; otherwise a
    /// triangle may have one vertex at several corners, and links may lead astray.
    bool idsDiffer = true;
    std::vector<MeshTriangle> triangles;
};
