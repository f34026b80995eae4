// Makes a triangulation Delaunay by flips of edges.
//
// Two triangles that share an edge form a four-sided figure; a flip cuts it along the other
// diagonal. Passes over the triangles test every edge and flip where the swap test says so; the
// triangles that a pass rewrote are what the following pass looks at. Lives within one call of
// `Triangulate`.
//
// Where links are mutual, DelaunayQuickFlips makes the passes over all triangles and those that
// follow it. The passes here take nothing for granted: they find the way back from a neighbour by
// looking for it, and report when there is none. They serve for what is left, the triangles on the
// hull, and for points that share ids.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "gen/DelaunayMesh.h"

class DelaunayFlipper {
public:
    explicit DelaunayFlipper(DelaunayMesh& mesh);

    /// All passes. Returns the result of `Triangulate`: 1, or -3 or -4 after adjacency that is not
    /// mutual, having said so on standard error.
    std::int32_t Run();

private:
    enum class Pass { All, Listed, Hull };
    enum class Visit { Unchanged, Flipped, Broken };

    /// An edge p-q seen from triangle t, whose corner o is opposite, and from triangle t2 on the
    /// other side, whose corner d is opposite.
    struct Figure {
        std::int32_t t, t2;
        std::int32_t o, p, q, d;
        std::int32_t acrossOP, acrossOQ, acrossPD, acrossQD; ///< triangles outside the figure
    };

    bool FlipAllTriangles();
    bool FlipHullTriangles();
    bool FlipListedTriangles();
    bool RepeatListed(int repetitions);
    Visit VisitTriangle(Pass pass, std::int32_t t);
    Visit TryEdge(Pass pass, std::int32_t t, std::size_t side);
    std::optional<Side> SideLeadingTo(std::int32_t from, std::int32_t to) const;
    void LookAcross(Side back, Figure& figure) const;
    bool TouchesHull(std::int32_t t) const;
    std::int32_t Across(std::int32_t t, std::size_t side) const;
    Vec2f Place(std::int32_t vertex) const;
    void Flip(const Figure& figure);
    void Relink(std::int32_t triangle, std::int32_t from, std::int32_t to);

    DelaunayMesh& mesh;
    std::vector<std::int32_t> pending; ///< what a listed pass looks at, in order, with repeats
    std::vector<std::int32_t> flipped; ///< what the pass at hand rewrote
};
