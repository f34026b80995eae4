#include "gen/DelaunayQuickFlips.h"

#include "gen/SwapTest.h"

namespace {

constexpr std::size_t kSpareEntries = 64;

// How many visits ahead memory is asked for.
constexpr int kNeighborsAhead = 12;
constexpr std::size_t kTrianglesAhead = 24;
constexpr std::size_t kFewTriangles = 32768; // stay in the cache anyway

void Fetch(const MeshTriangle* triangle) {
    __builtin_prefetch(triangle);
}

// Does it lead to a triangle, over an edge that may have to be flipped?
constexpr bool IsOpen(Link link) {
    return link >= 0 && (link & kSettledBit) == 0;
}

constexpr Link Unsettled(Link link) {
    return link & ~kSettledBit;
}

} // namespace

DelaunayQuickFlips::DelaunayQuickFlips(DelaunayMesh& mesh)
    : triangles(mesh.triangles), vertices(mesh.vertices) {
    flipped.reserve(2 * triangles.size() + kSpareEntries); // memory that is not used costs nothing
}

void DelaunayQuickFlips::Run(int repetitions) {
    const std::size_t limit = PendingLimit(triangles.size());
    FlipAllTriangles();
    for (int i = 0; i < repetitions && !flipped.empty() && flipped.size() <= limit; ++i) {
        FlipListedTriangles();
    }
}

void DelaunayQuickFlips::FlipAllTriangles() {
    const auto count = static_cast<std::int32_t>(triangles.size());
    const std::int32_t lastToFetch = WorthFetching() ? count - 1 : -1;
    for (std::int32_t t = 0; t < count; ++t) {
        if (t + kNeighborsAhead <= lastToFetch) {
            FetchNeighbors(t + kNeighborsAhead);
        }
        VisitTriangle(t);
    }
}

void DelaunayQuickFlips::FlipListedTriangles() {
    pending.swap(flipped);
    flipped.clear();
    flipped.reserve(pending.size());
    const std::size_t fetchEnd = WorthFetching() ? pending.size() : 0;
    for (std::size_t i = 0; i < pending.size(); ++i) {
        if (i + kTrianglesAhead < fetchEnd) {
            Fetch(triangles.data() + pending[i + kTrianglesAhead]);
            FetchNeighbors(pending[i + kNeighborsAhead]);
        }
        VisitTriangle(pending[i]);
    }
}

bool DelaunayQuickFlips::WorthFetching() const {
    return triangles.size() > kFewTriangles;
}

// Asks for what lies across a triangle's sides, which may be anywhere in memory, in time for the
// visit.
void DelaunayQuickFlips::FetchNeighbors(std::int32_t t) const {
    for (const Link link : triangles[static_cast<std::size_t>(t)].links) {
        const std::int32_t neighbor = LinkedTriangle(link);
        Fetch(triangles.data() + (neighbor < 0 ? t : neighbor));
    }
}

// Tries the triangle's edges; at most one is flipped.
void DelaunayQuickFlips::VisitTriangle(std::int32_t t) {
    const MeshTriangle& triangle = triangles[static_cast<std::size_t>(t)];
    if (IsOpen(triangle.links[kSideBC]) && FlipEdge<kSideBC>(t)) {
        return;
    }
    if (IsOpen(triangle.links[kSideAB]) && FlipEdge<kSideAB>(t)) {
        return;
    }
    if (IsOpen(triangle.links[kSideAC])) {
        FlipEdge<kSideAC>(t);
    }
}

// Flips an open edge if it should be; settles it otherwise.
template <std::size_t side>
bool DelaunayQuickFlips::FlipEdge(std::int32_t t) {
    MeshTriangle& triangle = triangles[static_cast<std::size_t>(t)];
    const Link link = triangle.links[side];
    const std::int32_t t2 = LinkedTriangle(link);
    const std::size_t back = LinkedSide(link);
    MeshTriangle& other = triangles[static_cast<std::size_t>(t2)];
    const std::int32_t o = triangle.corner[side];
    const std::int32_t p = triangle.corner[FirstEnd(side)];
    const std::int32_t q = triangle.corner[SecondEnd(side)];
    const std::int32_t d = other.corner[back];
    const Vec2f* const places = vertices.data();
    if (SwapTest(places[o], places[p], places[q], places[d]) == 1) {
        triangle.links[side] = link | kSettledBit;
        other.links[back] |= kSettledBit;
        return false;
    }
    // A side has the index of the corner opposite, so the side o-p has that of q.
    const bool startsAtP = p == other.corner[FirstEnd(back)];
    const Link atFirst = other.links[FirstEnd(back)];
    const Link atSecond = other.links[SecondEnd(back)];
    const Link acrossOP = triangle.links[SecondEnd(side)];
    const Link acrossOQ = triangle.links[FirstEnd(side)];
    const Link acrossPD = startsAtP ? atSecond : atFirst;
    const Link acrossQD = startsAtP ? atFirst : atSecond;
    if (LinkedTriangle(acrossOP) == LinkedTriangle(acrossPD) ||
        LinkedTriangle(acrossOQ) == LinkedTriangle(acrossQD)) {
        return false;
    }
    flipped.push_back(t);
    flipped.push_back(t2);
    triangle = {{o, p, d}, {Unsettled(acrossPD), MakeLink(t2, kSideAC), Unsettled(acrossOP)}};
    other = {{o, q, d}, {Unsettled(acrossQD), MakeLink(t, kSideAC), Unsettled(acrossOQ)}};
    SetLinkBack(acrossOP, t, kSideAB);
    SetLinkBack(acrossPD, t, kSideBC);
    SetLinkBack(acrossOQ, t2, kSideAB);
    SetLinkBack(acrossQD, t2, kSideBC);
    return true;
}

// What lies across a rewritten side leads back to it, and is not settled any more.
void DelaunayQuickFlips::SetLinkBack(Link link, std::int32_t triangle, std::size_t side) {
    if (link >= 0) {
        MeshTriangle& outer = triangles[static_cast<std::size_t>(LinkedTriangle(link))];
        outer.links[LinkedSide(link)] = MakeLink(triangle, side);
    }
}
