// The flips of a triangulation whose links are mutual: all of the work but its end.
//
// Makes the first pass over all triangles and the passes over what was rewritten, as described in
// DelaunayFlipper.h. Two things make them quick. A link names the side by which it arrives, so
// nothing is looked for. And a test that finds nothing to flip settles the edge until one of its
// two triangles is rewritten, since the swap test depends on nothing but their corners and comes
// out the same from either side; settled edges are left out, which changes nothing but the time.
//
// A flip keeps the links mutual, and the check for stability keeps any two triangles from sharing
// a second edge. Lives within one call of `Triangulate`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "gen/DelaunayMesh.h"

class DelaunayQuickFlips {
public:
    explicit DelaunayQuickFlips(DelaunayMesh& mesh);

    /// The first pass, then at most this many over what was rewritten.
    void Run(int repetitions);

private:
    void FlipAllTriangles();
    void FlipListedTriangles();
    bool WorthFetching() const;
    void FetchNeighbors(std::int32_t t) const;
    void VisitTriangle(std::int32_t t);
    template <std::size_t side>
    bool FlipEdge(std::int32_t t);
    void SetLinkBack(Link link, std::int32_t triangle, std::size_t side);

    std::vector<MeshTriangle>& triangles;
    const std::vector<Vec2f>& vertices;
    std::vector<std::int32_t> pending; ///< what a listed pass looks at, in order, with repeats
    std::vector<std::int32_t> flipped; ///< what the pass at hand rewrote
};
