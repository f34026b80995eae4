#include "gen/DelaunayMesh.h"

#include <cassert>
#include <cmath>
#include <iostream>
#include <string>

namespace {

constexpr std::size_t kLongestList = 65536; // entries, plus 4 per triangle

// Two triangles share the edge p-q, and o and d are their other corners. Returns -1 when the edge
// is to be flipped, else 1: it is when the angles at o and d add up to more than 180 degrees, that
// is when the sine of their sum is negative. Two angles on the same side of 90 degrees need no sum.
// The result is the same with o and d, or p and q, exchanged. There are no branches because they
// would be mispredicted.
int SwapTest(Vec2f o, Vec2f p, Vec2f q, Vec2f d) {
    // Cosines and sines are multiplied by the lengths of the angle's legs, here and below.
    const Vec2f oToP = p - o;
    const Vec2f oToQ = q - o;
    const Vec2f dToP = p - d;
    const Vec2f dToQ = q - d;
    const float cosO = oToQ.y * oToP.y + oToQ.x * oToP.x;
    const float cosD = dToQ.y * dToP.y + dToQ.x * dToP.x;
    const float sinO = std::fabs(oToQ.y * oToP.x - oToQ.x * oToP.y);
    const float sinD = std::fabs(dToQ.y * dToP.x - dToQ.x * dToP.y);
    const bool bothObtuse = (cosO < 0.0f) & (cosD < 0.0f);
    const bool bothAcute = (cosO > 0.0f) & (cosD > 0.0f);
    const bool sumBeyond180 = sinD * cosO + sinO * cosD < 0.0f;
    return bothObtuse | (sumBeyond180 & !bothAcute) ? -1 : 1;
}

// The first side, of a-b, a-c and b-c, that leads to a triangle; b-c when none does.
std::size_t SideLeadingTo(const MeshTriangle& triangle, std::int32_t t) {
    return triangle.Across(kAB) == t ? kAB : (triangle.Across(kAC) == t ? kAC : kBC);
}

std::int32_t GiveUp(std::int32_t result) {
    std::cerr << "cannot triangualte this set \n";
    return result;
}

// Passes over triangles that test their edges and flip some. A pass returns false, and ends, at an
// edge whose other triangle does not lead back.
class DelaunayFlipper {
public:
    explicit DelaunayFlipper(DelaunayMesh& meshToFlip)
        : mesh(meshToFlip), triangles(meshToFlip.triangles), mutual(meshToFlip.idsDiffer) {}

    std::int32_t Run() {
        if (!FlipAllTriangles()) {
            return GiveUp(-3);
        }
        if (!RepeatListed(49)) {
            return GiveUp(-4);
        }
        assert(!mutual || mesh.IsSound());
        flipped.clear();
        mutual = false; // because this pass can make two triangles share a second edge
        return !FlipHullTriangles() || RepeatListed(100) ? 1 : GiveUp(-4);
    }

private:
    enum class Pass { All, Listed, Hull };
    enum class Visit { Unchanged, Flipped, Broken };

    bool FlipAllTriangles() { return VisitAll(Pass::All); }
    bool FlipHullTriangles() { return VisitAll(Pass::Hull); }

    // The triangles that the last pass has rewritten.
    bool FlipListedTriangles() {
        pending.swap(flipped);
        flipped.clear();
        for (const std::int32_t t : pending) {
            if (!VisitTriangle(Pass::Listed, t)) {
                return false;
            }
        }
        return true;
    }

    bool VisitAll(Pass pass) {
        const auto count = static_cast<std::int32_t>(triangles.size());
        for (std::int32_t t = 0; t < count; ++t) {
            if (!VisitTriangle(pass, t)) {
                return false;
            }
        }
        return true;
    }

    // Until a pass has flipped nothing, or has been repeated often enough, or made too long a list.
    bool RepeatListed(int repetitions) {
        const std::size_t longest = kLongestList + 4 * triangles.size();
        for (int i = 0; i < repetitions && !flipped.empty() && flipped.size() <= longest; ++i) {
            if (!FlipListedTriangles()) {
                return false;
            }
        }
        return true;
    }

    // Tries the triangle's edges; at most one is flipped.
    bool VisitTriangle(Pass pass, std::int32_t t) {
        Visit visit = TryEdge<kBC>(pass, t);
        visit = visit != Visit::Unchanged ? visit : TryEdge<kAB>(pass, t);
        visit = visit != Visit::Unchanged ? visit : TryEdge<kAC>(pass, t);
        return visit != Visit::Broken;
    }

    // The edge p-q has triangle t with the corner o on one side and t2 with the corner d on the
    // other.
    template <std::size_t side>
    Visit TryEdge(Pass pass, std::int32_t t) {
        const MeshTriangle& triangle = triangles[At(t)];
        const HalfEdge twin = triangle.twin[side];
        const bool onHull = triangle.twin[FirstEnd(side)] < 0 || triangle.twin[SecondEnd(side)] < 0;
        if (twin < 0 || (pass == Pass::Hull && !onHull)) {
            return Visit::Unchanged;
        }
        const std::int32_t t2 = TriangleOf(twin);
        const MeshTriangle& other = triangles[At(t2)];
        const std::size_t back = mutual ? SideOf(twin) : SideLeadingTo(other, t);
        if (other.Across(back) != t) {
            const bool namesNeighbor = pass == Pass::Listed && side == kBC;
            std::cerr << "triangle flipping error. " + std::to_string(t) +
                             (namesNeighbor ? "  T2: " + std::to_string(t2) : "") + '\n';
            return Visit::Broken;
        }
        const Vec2f p = Place(triangle.corner[FirstEnd(side)]);
        const Vec2f q = Place(triangle.corner[SecondEnd(side)]);
        if (SwapTest(Place(triangle.corner[side]), p, q, Place(other.corner[back])) == 1) {
            return Visit::Unchanged;
        }
        return Flip(t, side, t2, back, pass != Pass::Hull);
    }

    // Makes (o, p, d) of t and (o, q, d) of t2. With `stable`, only where neither would have one
    // triangle, or two hull edges, for neighbours twice.
    Visit Flip(std::int32_t t, std::size_t side, std::int32_t t2, std::size_t back, bool stable) {
        MeshTriangle& triangle = triangles[At(t)];
        MeshTriangle& other = triangles[At(t2)];
        const std::int32_t o = triangle.corner[side];
        const std::int32_t p = triangle.corner[FirstEnd(side)];
        const std::int32_t q = triangle.corner[SecondEnd(side)];
        const std::int32_t d = other.corner[back];
        const bool startsAtP = p == other.corner[FirstEnd(back)];
        const HalfEdge acrossOP = triangle.twin[SecondEnd(side)];
        const HalfEdge acrossOQ = triangle.twin[FirstEnd(side)];
        const HalfEdge acrossPD = other.twin[startsAtP ? SecondEnd(back) : FirstEnd(back)];
        const HalfEdge acrossQD = other.twin[startsAtP ? FirstEnd(back) : SecondEnd(back)];
        if (stable && (TriangleOf(acrossOP) == TriangleOf(acrossPD) ||
                       TriangleOf(acrossOQ) == TriangleOf(acrossQD))) {
            return Visit::Unchanged;
        }
        flipped.push_back(t);
        flipped.push_back(t2);
        triangle = {{o, p, d}, {acrossPD, MakeHalfEdge(t2, kAC), acrossOP}};
        other = {{o, q, d}, {acrossQD, MakeHalfEdge(t, kAC), acrossOQ}};
        if (mutual) {
            SetTwin(acrossOP, MakeHalfEdge(t, kAB));
            SetTwin(acrossPD, MakeHalfEdge(t, kBC));
            SetTwin(acrossOQ, MakeHalfEdge(t2, kAB));
            SetTwin(acrossQD, MakeHalfEdge(t2, kBC));
        } else {
            Relink(TriangleOf(acrossPD), t2, t);
            Relink(TriangleOf(acrossOQ), t, t2);
        }
        return Visit::Flipped;
    }

    Vec2f Place(std::int32_t position) const { return mesh.places[At(position)]; }

    void SetTwin(HalfEdge edge, HalfEdge twin) {
        if (edge >= 0) {
            triangles[At(TriangleOf(edge))].twin[SideOf(edge)] = twin;
        }
    }

    // The first side, of a-b, b-c and a-c, that leads to `from` leads to `to` instead. The side by
    // which it arrives is not read any more.
    void Relink(std::int32_t t, std::int32_t from, std::int32_t to) {
        for (const std::size_t side : {kAB, kBC, kAC}) {
            if (t >= 0 && triangles[At(t)].Across(side) == from) {
                triangles[At(t)].twin[side] = MakeHalfEdge(to, 0);
                return;
            }
        }
    }

    const DelaunayMesh& mesh;
    std::vector<MeshTriangle>& triangles;
    // Whether every half-edge's twin leads back to it. With repeated ids, and from the hull pass
    // on, it may not: then the way back is searched for, and a half-edge's side means nothing.
    bool mutual;
    std::vector<std::int32_t> pending; // what the last pass has rewritten, in order, with repeats
    std::vector<std::int32_t> flipped; // what this pass has
};

} // namespace

std::int32_t FlipTriangles(DelaunayMesh& mesh) {
    return DelaunayFlipper(mesh).Run();
}
