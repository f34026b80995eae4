// The growing convex outline of a triangulation, and the insertion of points outside it.
//
// Hull edge h runs from hull point h to the following one, the last back to the first, with the
// triangles on one fixed hand. A new point is joined to the run of edges it sees and replaces the
// points inside the run. Lives within one call of `Triangulate`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "gen/DelaunayMesh.h"

class DelaunayHull {
public:
    /// Starts with a triangle of the mesh's vertices 0, 1 and 2, which becomes triangle 0.
    explicit DelaunayHull(DelaunayMesh& mesh);

    /// Adds the triangles that join a vertex to the edges it sees. A vertex that sees no edge, or
    /// every edge (both come from rounding), is left out.
    void Insert(std::int32_t vertex);

private:
    /// A run of edges around the hull, which may pass the closing edge.
    struct Run {
        std::size_t start = 0; ///< its first edge
        std::size_t count = 0; ///< of edges; 0 when the vertex has no place on the hull
    };

    bool Sees(Vec2f from, std::size_t edge) const {
        return (from.x - x[edge]) * edgeY[edge] - (from.y - y[edge]) * edgeX[edge] < 0.0f;
    }
    bool SeesClosingEdgeFromFirst(Vec2f from) const;
    std::size_t FirstSeen(Vec2f from, std::size_t begin) const;
    std::size_t FirstUnseen(Vec2f from, std::size_t begin) const;
    Run FindRun(Vec2f from) const;
    Run FindRunOverClosingEdge(Vec2f from) const;

    void AddTriangles(std::int32_t vertex, Run run);
    void ReplacePoints(Run run, std::int32_t vertex);
    void SetPoint(std::size_t at, std::int32_t vertex);
    void SetEdge(std::size_t at, std::size_t to);
    void Resize(std::size_t newSize);
    void Splice(std::size_t begin, std::size_t end);

    DelaunayMesh& mesh;
    std::size_t size = 0;
    // One array a field, so that the search for a seen edge looks at several edges at once. They
    // end in edges of no length, which nobody sees.
    std::vector<float> x;
    std::vector<float> y;
    std::vector<float> edgeX;
    std::vector<float> edgeY;
    std::vector<std::int32_t> vertices;
    std::vector<Link> owners; ///< the triangles that own the edges, and by which side
};
