#include "gen/DelaunayFlipper.h"

#include <array>
#include <cmath>
#include <string>

#include "gen/ErrorLine.h"
#include "gen/Triangulate.h"

namespace {

constexpr int kFirstRepetitions = 49;
constexpr int kHullRepetitions = 100;
constexpr std::size_t kSpareEntries = 64;

// A triangle's edges in the order they are tried: the edge, the corners opposite it and at its
// ends, and the triangle's other two sides.
struct TriedEdge {
    Side side;
    std::size_t o, p, q;
    Side sideOP, sideOQ;
};
constexpr std::array<TriedEdge, 3> kTriedEdges = {{
    {kSideBC, 0, 1, 2, kSideAB, kSideAC},
    {kSideAB, 2, 0, 1, kSideAC, kSideBC},
    {kSideAC, 1, 0, 2, kSideAB, kSideBC},
}};

// The same from the other triangle: for each side the corner opposite it, the corner it starts
// from, and the sides that meet it there and at its other end.
struct FacingEdge {
    std::size_t d, start;
    Side sideAtStart, sideAtEnd;
};
constexpr std::array<FacingEdge, 3> kFacingEdges = {{
    {2, 0, kSideAC, kSideBC}, // side AB
    {0, 1, kSideAB, kSideAC}, // side BC
    {1, 0, kSideAB, kSideBC}, // side AC
}};

constexpr std::size_t kNoSide = 3;

// The side that a triangle shares with another, AB before AC before BC. Where a triangle is next to
// another cannot be foreseen, so this and what follows choose without branches.
std::size_t SideTowards(const MeshTriangle& triangle, std::int32_t other) {
    const auto& [ab, bc, ac] = triangle.adjacent;
    std::size_t side = bc == other ? kSideBC : kNoSide;
    side = ac == other ? kSideAC : side;
    return ab == other ? kSideAB : side;
}

constexpr std::uint32_t Bit(std::size_t side) {
    return std::uint32_t{1} << side;
}

// The neighbour is named where a pass over a list breaks at a triangle's first edge.
void ReportBroken(std::int32_t t, std::int32_t namedNeighbor) {
    std::string line = "triangle flipping error. " + std::to_string(t);
    if (namedNeighbor >= 0) {
        line += "  T2: " + std::to_string(namedNeighbor);
    }
    WriteErrorLine(line);
}

struct Angle {
    float cosine, sine; // both times the product of the angle's legs
};

// The angle at `at` that faces p-q.
Angle AngleAt(Vec2f at, Vec2f p, Vec2f q) {
    const Vec2f toP = p - at;
    const Vec2f toQ = q - at;
    return {toQ.y * toP.y + toQ.x * toP.x, std::fabs(toQ.y * toP.x - toQ.x * toP.y)};
}

} // namespace

DelaunayFlipper::DelaunayFlipper(DelaunayMesh& theMesh)
    : mesh(theMesh), sharesOneEdge(theMesh.namesDiffer) {
    flipped.reserve(mesh.triangles.size() + kSpareEntries);
}

std::int32_t DelaunayFlipper::Run() {
    const auto giveUp = [](std::int32_t result) {
        WriteErrorLine("cannot triangualte this set ");
        return result;
    };
    if (!FlipAllTriangles()) {
        return giveUp(-3);
    }
    if (!RepeatListed(kFirstRepetitions)) {
        return giveUp(-4);
    }
    if (!FlipHullTriangles()) {
        return 1;
    }
    return RepeatListed(kHullRepetitions) ? 1 : giveUp(-4);
}

// Looks again at what the last pass rewrote, until nothing is or it has been done often enough.
bool DelaunayFlipper::RepeatListed(int repetitions) {
    const std::size_t limit = kPendingBase + kPendingPerTriangle * mesh.triangles.size();
    for (int i = 0; i < repetitions && !flipped.empty() && flipped.size() <= limit; ++i) {
        if (!FlipListedTriangles()) {
            return false;
        }
    }
    return true;
}

bool DelaunayFlipper::FlipAllTriangles() {
    flipped.clear();
    const auto count = static_cast<std::int32_t>(mesh.triangles.size());
    for (std::int32_t t = 0; t < count; ++t) {
        if (VisitTriangle<Pass::All>(t) == Visit::Broken) {
            return false;
        }
    }
    return true;
}

// The only pass that may join two triangles by a second edge.
bool DelaunayFlipper::FlipHullTriangles() {
    sharesOneEdge = false;
    flipped.clear();
    const auto count = static_cast<std::int32_t>(mesh.triangles.size());
    for (std::int32_t t = 0; t < count; ++t) {
        const auto& [ab, bc, ac] = At(t).adjacent;
        if ((ab | bc | ac) < 0 && VisitTriangle<Pass::Hull>(t) == Visit::Broken) {
            return false;
        }
    }
    return true;
}

bool DelaunayFlipper::FlipListedTriangles() {
    pending.swap(flipped);
    flipped.clear();
    for (const std::int32_t t : pending) {
        if (VisitTriangle<Pass::Listed>(t) == Visit::Broken) {
            return false;
        }
    }
    return true;
}

// Tries the triangle's edges; at most one is flipped.
template <DelaunayFlipper::Pass pass>
DelaunayFlipper::Visit DelaunayFlipper::VisitTriangle(std::int32_t t) {
    Visit visit = TryEdge<pass, 0>(t);
    if (visit == Visit::Unchanged) {
        visit = TryEdge<pass, 1>(t);
    }
    if (visit == Visit::Unchanged) {
        visit = TryEdge<pass, 2>(t);
    }
    return visit;
}

template <DelaunayFlipper::Pass pass, std::size_t tried>
DelaunayFlipper::Visit DelaunayFlipper::TryEdge(std::int32_t t) {
    constexpr TriedEdge edge = kTriedEdges[tried];
    MeshTriangle& triangle = At(t);
    const std::int32_t t2 = triangle.adjacent[edge.side];
    if ((triangle.settled & Bit(edge.side)) != 0 || t2 < 0) {
        return Visit::Unchanged;
    }
    const std::int32_t acrossOP = triangle.adjacent[edge.sideOP];
    const std::int32_t acrossOQ = triangle.adjacent[edge.sideOQ];
    if (pass == Pass::Hull && acrossOP != -1 && acrossOQ != -1) {
        return Visit::Unchanged;
    }
    MeshTriangle& other = At(t2);
    const std::size_t sharedSide = SideTowards(other, t);
    if (sharedSide == kNoSide) {
        ReportBroken(t, pass == Pass::Listed && edge.side == kSideBC ? t2 : -1);
        return Visit::Broken;
    }
    const FacingEdge facing = kFacingEdges[sharedSide];
    const std::int32_t o = triangle.corner[edge.o];
    const std::int32_t p = triangle.corner[edge.p];
    const std::int32_t q = triangle.corner[edge.q];
    const std::int32_t d = other.corner[facing.d];
    if (!ShouldSwap(o, p, q, d)) {
        triangle.settled |= Bit(edge.side);
        other.settled |= sharesOneEdge ? Bit(sharedSide) : 0u;
        return Visit::Unchanged;
    }
    const bool startsAtP = p == other.corner[facing.start];
    const std::int32_t atStart = other.adjacent[facing.sideAtStart];
    const std::int32_t atEnd = other.adjacent[facing.sideAtEnd];
    const std::int32_t acrossPD = startsAtP ? atStart : atEnd;
    const std::int32_t acrossQD = startsAtP ? atEnd : atStart;
    if (pass != Pass::Hull && (acrossOP == acrossPD || acrossOQ == acrossQD)) {
        return Visit::Unchanged;
    }
    Flip({t, t2, o, p, q, d, acrossOP, acrossOQ, acrossPD, acrossQD});
    return Visit::Flipped;
}

// Triangle t becomes (o, p, d) and t2 becomes (o, q, d).
void DelaunayFlipper::Flip(const Figure& figure) {
    const auto& [t, t2, o, p, q, d, acrossOP, acrossOQ, acrossPD, acrossQD] = figure;
    flipped.push_back(t);
    flipped.push_back(t2);
    At(t) = {{o, p, d}, {acrossOP, acrossPD, t2}, 0};
    At(t2) = {{o, q, d}, {acrossOQ, acrossQD, t}, 0};
    Relink(acrossPD, t2, t);
    Relink(acrossOQ, t, t2);
    for (const std::int32_t neighbor : {acrossOP, acrossOQ, acrossPD, acrossQD}) {
        Unsettle(neighbor, t, t2);
    }
}

// The first side that leads to `from` leads to `to` instead.
void DelaunayFlipper::Relink(std::int32_t triangle, std::int32_t from, std::int32_t to) {
    if (triangle < 0) {
        return;
    }
    auto& [ab, bc, ac] = At(triangle).adjacent;
    const bool isAB = ab == from;
    const bool isBC = !isAB & (bc == from);
    const bool isAC = !isAB & !isBC & (ac == from);
    ab = isAB ? to : ab;
    bc = isBC ? to : bc;
    ac = isAC ? to : ac;
}

// Every side of the triangle that leads to one of two rewritten ones is to be tested again.
void DelaunayFlipper::Unsettle(std::int32_t triangle, std::int32_t t, std::int32_t t2) {
    if (triangle < 0) {
        return;
    }
    MeshTriangle& unsettled = At(triangle);
    std::uint32_t sides = 0;
    for (std::size_t side = 0; side < 3; ++side) {
        const std::int32_t neighbor = unsettled.adjacent[side];
        sides |= static_cast<std::uint32_t>((neighbor == t) | (neighbor == t2)) << side;
    }
    unsettled.settled &= ~sides;
}

// The angles at o and d add up to more than 180 degrees when the sine of their sum is negative; two
// angles on the same side of 90 degrees need no sum. Written without branches, for no processor
// can foresee them.
bool DelaunayFlipper::ShouldSwap(std::int32_t vertexO, std::int32_t vertexP, std::int32_t vertexQ,
                                 std::int32_t vertexD) const {
    const Vec2f* const places = mesh.vertices.data();
    const Vec2f p = places[vertexP];
    const Vec2f q = places[vertexQ];
    const Angle o = AngleAt(places[vertexO], p, q);
    const Angle d = AngleAt(places[vertexD], p, q);
    const bool bothObtuse = (o.cosine < 0.0f) & (d.cosine < 0.0f);
    const bool bothAcute = (o.cosine > 0.0f) & (d.cosine > 0.0f);
    const bool sumBeyond180 = d.sine * o.cosine + o.sine * d.cosine < 0.0f;
    return bothObtuse | (sumBeyond180 & !bothAcute);
}
