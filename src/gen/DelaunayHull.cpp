#include "gen/DelaunayMesh.h"

#include <cassert>
#include <cstddef>

namespace {

// The side that joins two of a triangle's corners: the first that does of a-b, a-c and b-c. There
// are no branches because they would be mispredicted.
std::size_t SideWith(const MeshTriangle& triangle, std::int32_t p, std::int32_t q) {
    const auto& [a, b, c] = triangle.corner;
    const auto joins = [p, q](std::int32_t v, std::int32_t w) -> std::size_t {
        return ((v == p) & (w == q)) | ((v == q) & (w == p));
    };
    const std::size_t ab = joins(a, b);
    return ab * kAB + (1 - ab) * (joins(a, c) * kAC + (1 - joins(a, c)) * kBC);
}

class DelaunayHull {
public:
    DelaunayHull(const std::vector<DelaunayPoint>& insertionOrder, DelaunayMesh& meshToGrow)
        : points(insertionOrder), mesh(meshToGrow) {
        const DelaunayPoint& p0 = points[0];
        const DelaunayPoint& p1 = points[1];
        const DelaunayPoint& p2 = points[2];
        const Vec2f g{(p1.x + p0.x + p2.x) / 3.0f, (p1.y + p0.y + p2.y) / 3.0f};
        const float d = (p1.y - p0.y) * (p0.x - g.x) - (p1.x - p0.x) * (p0.y - g.y);
        hull = {HullEntry(0), HullEntry(d < 0.0f ? 1 : 2), HullEntry(d < 0.0f ? 2 : 1)};
        for (std::size_t h = 0; h < hull.size(); ++h) {
            hull[h].hullTri = 0;
            SetEdge(h);
        }
        mesh.triangles.push_back({{hull[0].id, hull[1].id, hull[2].id}, {-1, -1, -1}});
    }

    void Insert(std::size_t position) {
        const DelaunayPoint p = HullEntry(position);
        const Chain chain = FindChain(p);
        if (chain.edges > 0) {
            AddTriangles(p, chain);
            ReplaceInnerPoints(p, chain);
        }
    }

private:
    // The hull edges that a point sees: a run that may lead over the closing edge.
    struct Chain {
        std::size_t start = 0;
        std::size_t edges = 0; // 0 when the point has no place on the hull
    };

    DelaunayPoint HullEntry(std::size_t position) const {
        DelaunayPoint point = points[position];
        point.id = mesh.names[position];
        return point;
    }

    std::size_t Next(std::size_t h) const { return h + 1 == hull.size() ? 0 : h + 1; }

    void SetEdge(std::size_t h) {
        hull[h].edgeX = hull[Next(h)].x - hull[h].x;
        hull[h].edgeY = hull[Next(h)].y - hull[h].y;
    }

    // Does the point lie strictly outside the edge's line?
    bool Sees(const DelaunayPoint& p, std::size_t h) const {
        return (p.x - hull[h].x) * hull[h].edgeY - (p.y - hull[h].y) * hull[h].edgeX < 0.0f;
    }

    // Measured from the edge's end, the hull's first point; from its start it would round
    // differently.
    bool SeesClosingEdge(const DelaunayPoint& p) const {
        const DelaunayPoint& last = hull.back();
        return (p.x - hull[0].x) * last.edgeY - (p.y - hull[0].y) * last.edgeX < 0.0f;
    }

    // Case A: the point sees edge 0, and the chain starts there (A2), unless it sees the closing
    // edge too: then the chain starts before the hull's first point (A1). Case B: it starts at the
    // first edge seen.
    Chain FindChain(const DelaunayPoint& p) const {
        const std::size_t m = hull.size();
        std::size_t start = 0;
        while (start < m && !Sees(p, start)) {
            ++start;
        }
        std::size_t end = start;
        while (end < m && Sees(p, end)) {
            ++end;
        }
        if (start > 0) { // B
            return {start, end - start};
        }
        if (!SeesClosingEdge(p)) { // A2
            return {0, end == m ? 0 : end};
        }
        if (end + 1 >= m) {
            return {};
        }
        start = m - 1;               // A1
        while (Sees(p, start - 1)) { // comes to `end` at the latest
            --start;
        }
        return {start, m - start + end};
    }

    // Adds a triangle (point, q, r) for each visible hull edge q-r, and links it to the edge's
    // owner and to the new triangles before and after it.
    void AddTriangles(const DelaunayPoint& p, Chain chain) {
        const auto first = static_cast<std::int32_t>(mesh.triangles.size());
        const auto last = first + static_cast<std::int32_t>(chain.edges) - 1;
        std::size_t h = chain.start;
        for (std::int32_t t = first; t <= last; ++t) {
            const std::int32_t owner = hull[h].hullTri;
            const std::int32_t q = hull[h].id;
            h = Next(h);
            const std::int32_t r = hull[h].id;
            const std::size_t side = SideWith(mesh.triangles[At(owner)], q, r);
            mesh.triangles[At(owner)].twin[side] = MakeHalfEdge(t, kBC);
            mesh.triangles.push_back(
                {{p.id, q, r},
                 {MakeHalfEdge(owner, side), t == last ? -1 : MakeHalfEdge(t + 1, kAB),
                  t == first ? -1 : MakeHalfEdge(t - 1, kAC)}});
        }
    }

    // Puts the point in the place of those inside the chain. Its two edges belong to the last and
    // the first of the triangles just made.
    void ReplaceInnerPoints(const DelaunayPoint& p, Chain chain) {
        const auto entry = [this](std::size_t h) {
            return hull.begin() + static_cast<std::ptrdiff_t>(h);
        };
        std::size_t ins = chain.start + 1;
        std::size_t end = chain.start + chain.edges;
        if (end > hull.size()) {
            end -= hull.size();
            hull.erase(entry(ins), hull.end());
            ins = 0;
        }
        if (ins == end) {
            hull.insert(entry(ins), p);
        } else {
            hull[ins] = p;
            hull.erase(entry(ins + 1), entry(end));
        }
        const std::size_t before = ins == 0 ? hull.size() - 1 : ins - 1;
        const auto last = static_cast<std::int32_t>(mesh.triangles.size()) - 1;
        SetEdge(ins);
        SetEdge(before);
        hull[ins].hullTri = last;
        hull[before].hullTri = last - static_cast<std::int32_t>(chain.edges) + 1;
    }

    const std::vector<DelaunayPoint>& points;
    DelaunayMesh& mesh;
    // Copies of the points on the outline, named as in the mesh. Entry h describes hull edge h,
    // from its point to the following one, the last back to the first: `edgeX` and `edgeY` are its
    // vector, `hullTri` is the triangle that owns it.
    std::vector<DelaunayPoint> hull;
};

} // namespace

void InsertPoints(const std::vector<DelaunayPoint>& points, DelaunayMesh& mesh) {
    DelaunayHull hull(points, mesh);
    const std::vector<Vec2f>& at = mesh.places;
    for (std::size_t k = kSeedPoints; k < at.size(); ++k) {
        // Equal points stand side by side in the order, but for those equal to a seed point.
        if (at[k] != at[k - 1] && at[k] != at[0] && at[k] != at[1] && at[k] != at[2]) {
            hull.Insert(k);
        }
    }
    assert(!mesh.idsDiffer || mesh.IsSound());
}
