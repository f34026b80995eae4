#include "gen/DelaunayFlipper.h"

#include <array>
#include <cmath>
#include <string>

#include "gen/ErrorLine.h"
#include "gen/Triangulate.h"

namespace {

constexpr int kFirstRepetitions = 49;
constexpr int kHullRepetitions = 100;

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

// The side that a triangle shares with another, AB before AC before BC.
std::size_t SideTowards(const MeshTriangle& triangle, std::int32_t other) {
    const auto& [ab, bc, ac] = triangle.adjacent;
    return ab == other ? kSideAB : (ac == other ? kSideAC : (bc == other ? kSideBC : kNoSide));
}

constexpr std::uint32_t Bit(std::size_t side) {
    return std::uint32_t{1} << side;
}

constexpr std::uint32_t kAllSettled = 7;

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

DelaunayFlipper::DelaunayFlipper(DelaunayMesh& theMesh) : mesh(theMesh) {}

std::int32_t DelaunayFlipper::Run() {
    const auto giveUp = [](std::int32_t result) {
        WriteErrorLine("cannot triangualte this set ");
        return result;
    };
    if (FlipAllTriangles() == Visit::Broken) {
        return giveUp(-3);
    }
    if (!RepeatListed(kFirstRepetitions)) {
        return giveUp(-4);
    }
    if (FlipHullTriangles() == Visit::Broken) {
        return 1;
    }
    return RepeatListed(kHullRepetitions) ? 1 : giveUp(-4);
}

// Looks again at what the last pass rewrote, until nothing is or it has been done often enough.
bool DelaunayFlipper::RepeatListed(int repetitions) {
    const std::size_t limit = kPendingBase + kPendingPerTriangle * mesh.triangles.size();
    for (int i = 0; i < repetitions && !flipped.empty() && flipped.size() <= limit; ++i) {
        if (FlipListedTriangles() == Visit::Broken) {
            return false;
        }
    }
    return true;
}

DelaunayFlipper::Visit DelaunayFlipper::FlipAllTriangles() {
    flipped.clear();
    const auto count = static_cast<std::int32_t>(mesh.triangles.size());
    for (std::int32_t t = 0; t < count; ++t) {
        if (VisitTriangle<Pass::All>(t) == Visit::Broken) {
            return Visit::Broken;
        }
    }
    return Visit::Done;
}

DelaunayFlipper::Visit DelaunayFlipper::FlipHullTriangles() {
    flipped.clear();
    const auto count = static_cast<std::int32_t>(mesh.triangles.size());
    for (std::int32_t t = 0; t < count; ++t) {
        const auto& [ab, bc, ac] = At(t).adjacent;
        if ((ab | bc | ac) < 0 && VisitTriangle<Pass::Hull>(t) == Visit::Broken) {
            return Visit::Broken;
        }
    }
    return Visit::Done;
}

DelaunayFlipper::Visit DelaunayFlipper::FlipListedTriangles() {
    pending.swap(flipped);
    flipped.clear();
    for (const std::int32_t t : pending) {
        if (VisitTriangle<Pass::Listed>(t) == Visit::Broken) {
            return Visit::Broken;
        }
    }
    return Visit::Done;
}

// Tries the triangle's edges; at most one is flipped.
template <DelaunayFlipper::Pass pass>
DelaunayFlipper::Visit DelaunayFlipper::VisitTriangle(std::int32_t t) {
    MeshTriangle& triangle = At(t);
    if (triangle.settled == kAllSettled) {
        return Visit::Done;
    }
    for (const TriedEdge& edge : kTriedEdges) {
        const std::int32_t t2 = triangle.adjacent[edge.side];
        if ((triangle.settled & Bit(edge.side)) != 0 || t2 < 0) {
            continue;
        }
        const std::int32_t acrossOP = triangle.adjacent[edge.sideOP];
        const std::int32_t acrossOQ = triangle.adjacent[edge.sideOQ];
        if (pass == Pass::Hull && acrossOP != -1 && acrossOQ != -1) {
            continue;
        }
        MeshTriangle& other = At(t2);
        const std::size_t sharedSide = SideTowards(other, t);
        if (sharedSide == kNoSide) {
            ReportBroken(t, pass == Pass::Listed && edge.side == kSideBC ? t2 : -1);
            return Visit::Broken;
        }
        const FacingEdge& facing = kFacingEdges[sharedSide];
        const std::int32_t p = triangle.corner[edge.p];
        const bool startsAtP = p == other.corner[facing.start];
        const std::int32_t atStart = other.adjacent[facing.sideAtStart];
        const std::int32_t atEnd = other.adjacent[facing.sideAtEnd];
        const Figure figure = {t,
                               t2,
                               triangle.corner[edge.o],
                               p,
                               triangle.corner[edge.q],
                               other.corner[facing.d],
                               acrossOP,
                               acrossOQ,
                               startsAtP ? atStart : atEnd,
                               startsAtP ? atEnd : atStart};
        if (!ShouldSwap(figure)) {
            triangle.settled |= Bit(edge.side);
            const std::int32_t farEnd = other.corner[3 - facing.d - facing.start];
            const bool sameEdge = startsAtP ? figure.q == farEnd
                                            : figure.q == other.corner[facing.start] && p == farEnd;
            // Two triangles that share more than one edge take another one for this from there.
            if (sameEdge && SideTowards(triangle, t2) == edge.side) {
                other.settled |= Bit(sharedSide);
            }
        } else if (pass == Pass::Hull ||
                   (figure.acrossOP != figure.acrossPD && figure.acrossOQ != figure.acrossQD)) {
            Flip(figure);
            return Visit::Done;
        }
    }
    return Visit::Done;
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
    for (std::int32_t& neighbor : At(triangle).adjacent) {
        if (neighbor == from) {
            neighbor = to;
            return;
        }
    }
}

// Every side of the triangle that leads to one of two rewritten ones is to be tested again.
void DelaunayFlipper::Unsettle(std::int32_t triangle, std::int32_t t, std::int32_t t2) {
    if (triangle < 0) {
        return;
    }
    MeshTriangle& unsettled = At(triangle);
    for (std::size_t side = 0; side < 3; ++side) {
        if (unsettled.adjacent[side] == t || unsettled.adjacent[side] == t2) {
            unsettled.settled &= ~Bit(side);
        }
    }
}

// The angles at o and d add up to more than 180 degrees when the sine of their sum is negative.
bool DelaunayFlipper::ShouldSwap(const Figure& figure) const {
    const auto place = [this](std::int32_t vertex) {
        return mesh.vertices[static_cast<std::size_t>(vertex)];
    };
    const Vec2f p = place(figure.p);
    const Vec2f q = place(figure.q);
    const Angle o = AngleAt(place(figure.o), p, q);
    const Angle d = AngleAt(place(figure.d), p, q);
    if (o.cosine < 0.0f && d.cosine < 0.0f) {
        return true;
    }
    if (o.cosine > 0.0f && d.cosine > 0.0f) {
        return false;
    }
    return d.sine * o.cosine + o.sine * d.cosine < 0.0f;
}
