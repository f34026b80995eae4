#include "gen/DelaunayMesh.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <iostream>
#include <set>
#include <string>

namespace {

constexpr std::size_t kLongList = 65536; // entries, plus 4 per triangle
constexpr std::size_t kBlock = 1024;     // entries of a long list

// Two triangles share the edge p-q, and o and d are their other corners. Returns -1 when the edge
// is to be flipped, else 1: it is when the angles at o and d add up to more than 180 degrees, that
// is when the sine of their sum is negative; two angles on the same side of 90 degrees need no sum.
// Comes out the same with o and d, or p and q, the other way round. Branches would be mispredicted.
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

// `mutual`: a twin is the way back from a neighbour, and an edge that a test has settled is left
// out until one of its triangles is rewritten, for the test would come out the same. Otherwise the
// way back is looked for, and there may be none. A flip keeps twins mutual, and the check for
// stability keeps two triangles from sharing a second edge; the hull pass makes no such check, so
// from there on nothing is taken for granted. Passes return false where no way leads back.
class DelaunayFlipper {
public:
    DelaunayFlipper(DelaunayMesh& meshToFlip, std::size_t longestList)
        : mesh(meshToFlip), triangles(meshToFlip.triangles), maxListed(longestList) {}

    template <bool mutual>
    std::int32_t Run() {
        if (!FlipAllTriangles<mutual>()) {
            return GiveUp(-3);
        }
        if (!RepeatListed<mutual>(49)) {
            return GiveUp(-4);
        }
        assert(!mutual || mesh.IsSound());
        flipped.clear();
        if (!FlipHullTriangles()) {
            return 1;
        }
        return RepeatListed<false>(100) ? 1 : GiveUp(-4);
    }

private:
    enum class Pass { All, Listed, Hull };
    enum class Visit { Unchanged, Flipped, Broken };

    template <bool mutual>
    bool FlipAllTriangles() {
        return VisitAll<Pass::All, mutual>();
    }

    bool FlipHullTriangles() { return VisitAll<Pass::Hull, false>(); }

    template <Pass pass, bool mutual>
    bool VisitAll() {
        const auto count = static_cast<std::int32_t>(triangles.size());
        for (std::int32_t t = 0; t < count; ++t) {
            if (!VisitTriangle<pass, mutual>(t)) {
                return false;
            }
        }
        return true;
    }

    // Looks again at what the last pass rewrote, until nothing is or it has been done often enough.
    template <bool mutual>
    bool RepeatListed(int repetitions) {
        const std::size_t longest = maxListed + 4 * triangles.size();
        for (int i = 0; i < repetitions && !flipped.empty() && flipped.size() <= longest; ++i) {
            if (!FlipListedTriangles<mutual>()) {
                return false;
            }
        }
        return true;
    }

    // Rounding can make triangles flip back and forth: the list then often doubles in every pass,
    // and soon repeats a few blocks. When each of them leaves the triangles as they were and puts
    // two of these blocks in its place, every later pass would do the same: all is done.
    template <bool mutual>
    bool FlipListedTriangles() {
        pending.swap(flipped);
        flipped.clear();
        const bool isLong = pending.size() > kLongList + 4 * triangles.size();
        const auto before = isLong ? triangles : std::vector<MeshTriangle>();
        bool repeats = isLong && pending.size() % kBlock == 0;
        for (std::size_t i = 0; i < pending.size(); ++i) {
            if (!VisitTriangle<Pass::Listed, mutual>(pending[i])) {
                return false;
            }
            repeats = repeats && ((i + 1) % kBlock != 0 || triangles == before);
        }
        if (repeats && flipped.size() == 2 * pending.size()) {
            const auto earlier = BlocksOf(pending);
            const auto later = BlocksOf(flipped);
            if (std::includes(earlier.begin(), earlier.end(), later.begin(), later.end())) {
                flipped.clear();
            }
        }
        return true;
    }

    static std::set<std::vector<std::int32_t>> BlocksOf(const std::vector<std::int32_t>& list) {
        std::set<std::vector<std::int32_t>> blocks;
        for (auto block = list.begin(); block != list.end(); block += kBlock) {
            blocks.emplace(block, block + kBlock);
        }
        return blocks;
    }

    // Tries the triangle's edges; at most one is flipped.
    template <Pass pass, bool mutual>
    bool VisitTriangle(std::int32_t t) {
        Visit visit = TryEdge<pass, mutual, kBC>(t);
        visit = visit != Visit::Unchanged ? visit : TryEdge<pass, mutual, kAB>(t);
        visit = visit != Visit::Unchanged ? visit : TryEdge<pass, mutual, kAC>(t);
        return visit != Visit::Broken;
    }

    // The edge p-q has triangle t with the corner o on one side and t2 with the corner d on the
    // other. A flip makes them (o, p, d) and (o, q, d).
    template <Pass pass, bool mutual, std::size_t side>
    Visit TryEdge(std::int32_t t) {
        MeshTriangle& triangle = triangles[At(t)];
        const HalfEdge twin = triangle.twin[side];
        const HalfEdge acrossOP = triangle.twin[SecondEnd(side)];
        const HalfEdge acrossOQ = triangle.twin[FirstEnd(side)];
        if (twin < 0 || (mutual && (twin & kSettled) != 0) ||
            (pass == Pass::Hull && acrossOP >= 0 && acrossOQ >= 0)) {
            return Visit::Unchanged;
        }
        const std::int32_t t2 = TriangleOf(twin);
        MeshTriangle& other = triangles[At(t2)];
        const std::size_t back = mutual ? SideOf(twin) : SideLeadingTo(other, t);
        if (!mutual && other.Across(back) != t) {
            const bool namesNeighbor = pass == Pass::Listed && side == kBC;
            std::cerr << "triangle flipping error. " + std::to_string(t) +
                             (namesNeighbor ? "  T2: " + std::to_string(t2) : "") + '\n';
            return Visit::Broken;
        }
        const std::int32_t o = triangle.corner[side];
        const std::int32_t p = triangle.corner[FirstEnd(side)];
        const std::int32_t q = triangle.corner[SecondEnd(side)];
        const std::int32_t d = other.corner[back];
        if (SwapTest(Place(o), Place(p), Place(q), Place(d)) == 1) {
            triangle.twin[side] |= kSettled;
            other.twin[back] |= kSettled;
            return Visit::Unchanged;
        }
        const bool startsAtP = p == other.corner[FirstEnd(back)];
        const HalfEdge acrossPD = other.twin[startsAtP ? SecondEnd(back) : FirstEnd(back)];
        const HalfEdge acrossQD = other.twin[startsAtP ? FirstEnd(back) : SecondEnd(back)];
        const bool stable = TriangleOf(acrossOP) != TriangleOf(acrossPD) &&
                            TriangleOf(acrossOQ) != TriangleOf(acrossQD);
        if (pass != Pass::Hull && !stable) {
            return Visit::Unchanged;
        }
        flipped.push_back(t);
        flipped.push_back(t2);
        triangle = {{o, p, d}, {Unsettled(acrossPD), MakeHalfEdge(t2, kAC), Unsettled(acrossOP)}};
        other = {{o, q, d}, {Unsettled(acrossQD), MakeHalfEdge(t, kAC), Unsettled(acrossOQ)}};
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

    // What lies across a rewritten side leads back to it, and is not settled any more.
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
    std::size_t maxListed;             // plus 4 per triangle: longer lists are not looked at
    std::vector<std::int32_t> pending; // what a listed pass looks at, in order, with repeats
    std::vector<std::int32_t> flipped; // what the pass at hand rewrote
};

} // namespace

std::int32_t FlipTriangles(DelaunayMesh& mesh, std::size_t maxListed) {
    DelaunayFlipper flipper(mesh, maxListed);
    return mesh.idsDiffer ? flipper.Run<true>() : flipper.Run<false>();
}
