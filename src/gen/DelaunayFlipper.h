// Makes a triangulation Delaunay by flips of edges.
//
// Two triangles that share an edge form a four-sided figure; a flip cuts it along the other
// diagonal. Passes over the triangles test every edge and flip where the swap test says so; the
// triangles that a pass rewrote are what the following pass looks at. Lives within one call of
// `Triangulate`.
//
// A test that finds nothing to flip settles the edge until one of its two triangles is rewritten:
// the swap test depends on nothing but their corners, and rounds the same from either side. Visits
// leave settled edges out, which changes nothing but the time they take.
#pragma once

#include <cstddef>
#include <cstdint>
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
    using TriangleList = std::vector<std::int32_t>;

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
    template <Pass pass>
    Visit VisitTriangle(std::int32_t t);
    template <Pass pass, std::size_t tried>
    Visit TryEdge(std::int32_t t);
    void Flip(const Figure& figure);
    void Relink(std::int32_t triangle, std::int32_t from, std::int32_t to);
    void Unsettle(std::int32_t triangle, std::int32_t t, std::int32_t t2);
    bool ShouldSwap(std::int32_t o, std::int32_t p, std::int32_t q, std::int32_t d) const;

    MeshTriangle& At(std::int32_t triangle) {
        return mesh.triangles[static_cast<std::size_t>(triangle)];
    }

    DelaunayMesh& mesh;
    TriangleList pending; ///< what a listed pass looks at, in order, repeats included
    TriangleList flipped; ///< what the pass at hand rewrote
    /// No two triangles share more than one edge, so that either one of a pair finds the same edge.
    bool sharesOneEdge;
};
