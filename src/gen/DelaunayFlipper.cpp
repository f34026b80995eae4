#include "gen/DelaunayFlipper.h"

#include <array>
#include <optional>
#include <string>

#include "gen/DelaunayQuickFlips.h"
#include "gen/ErrorLine.h"
#include "gen/SwapTest.h"

namespace {

constexpr int kFirstRepetitions = 49;
constexpr int kHullRepetitions = 100;

// The order in which sides are tried, and that in which the way back is looked for.
constexpr std::array kTriedSides = {kSideBC, kSideAB, kSideAC};
constexpr std::array kSoughtSides = {kSideAB, kSideAC, kSideBC};

// The neighbour is named where a pass over a list breaks at a triangle's first edge.
void ReportBroken(std::int32_t t, std::int32_t namedNeighbor) {
    std::string line = "triangle flipping error. " + std::to_string(t);
    if (namedNeighbor >= 0) {
        line += "  T2: " + std::to_string(namedNeighbor);
    }
    WriteErrorLine(line);
}

std::int32_t GiveUp(std::int32_t result) {
    WriteErrorLine("cannot triangualte this set ");
    return result;
}

} // namespace

DelaunayFlipper::DelaunayFlipper(DelaunayMesh& theMesh) : mesh(theMesh) {}

std::int32_t DelaunayFlipper::Run() {
    if (mesh.idsDiffer) {
        DelaunayQuickFlips(mesh).Run(kFirstRepetitions);
    } else {
        if (!FlipAllTriangles()) {
            return GiveUp(-3);
        }
        if (!RepeatListed(kFirstRepetitions)) {
            return GiveUp(-4);
        }
    }
    if (!FlipHullTriangles()) {
        return 1;
    }
    return RepeatListed(kHullRepetitions) ? 1 : GiveUp(-4);
}

// Looks again at what the last pass rewrote, until nothing is or it has been done often enough.
bool DelaunayFlipper::RepeatListed(int repetitions) {
    const std::size_t limit = PendingLimit(mesh.triangles.size());
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
        if (VisitTriangle(Pass::All, t) == Visit::Broken) {
            return false;
        }
    }
    return true;
}

bool DelaunayFlipper::FlipHullTriangles() {
    flipped.clear();
    const auto count = static_cast<std::int32_t>(mesh.triangles.size());
    for (std::int32_t t = 0; t < count; ++t) {
        if (TouchesHull(t) && VisitTriangle(Pass::Hull, t) == Visit::Broken) {
            return false;
        }
    }
    return true;
}

bool DelaunayFlipper::FlipListedTriangles() {
    pending.swap(flipped);
    flipped.clear();
    for (const std::int32_t t : pending) {
        if (VisitTriangle(Pass::Listed, t) == Visit::Broken) {
            return false;
        }
    }
    return true;
}

// Tries the triangle's edges; at most one is flipped.
DelaunayFlipper::Visit DelaunayFlipper::VisitTriangle(Pass pass, std::int32_t t) {
    for (const Side side : kTriedSides) {
        const Visit visit = TryEdge(pass, t, side);
        if (visit != Visit::Unchanged) {
            return visit;
        }
    }
    return Visit::Unchanged;
}

DelaunayFlipper::Visit DelaunayFlipper::TryEdge(Pass pass, std::int32_t t, std::size_t side) {
    const MeshTriangle& triangle = mesh.triangles[static_cast<std::size_t>(t)];
    Figure figure{};
    figure.t = t;
    figure.t2 = Across(t, side);
    // A side has the index of the corner opposite, so the side o-p has that of q.
    figure.acrossOP = Across(t, SecondEnd(side));
    figure.acrossOQ = Across(t, FirstEnd(side));
    const bool besideHull = figure.acrossOP == -1 || figure.acrossOQ == -1;
    if (figure.t2 < 0 || (pass == Pass::Hull && !besideHull)) {
        return Visit::Unchanged;
    }
    figure.o = triangle.corner[side];
    figure.p = triangle.corner[FirstEnd(side)];
    figure.q = triangle.corner[SecondEnd(side)];
    const std::optional<Side> back = SideLeadingTo(figure.t2, t);
    if (!back) {
        ReportBroken(t, pass == Pass::Listed && side == kSideBC ? figure.t2 : -1);
        return Visit::Broken;
    }
    LookAcross(*back, figure);
    const bool stable = figure.acrossOP != figure.acrossPD && figure.acrossOQ != figure.acrossQD;
    if ((!stable && pass != Pass::Hull) ||
        SwapTest(Place(figure.o), Place(figure.p), Place(figure.q), Place(figure.d)) == 1) {
        return Visit::Unchanged;
    }
    Flip(figure);
    return Visit::Flipped;
}

std::optional<Side> DelaunayFlipper::SideLeadingTo(std::int32_t from, std::int32_t to) const {
    for (const Side side : kSoughtSides) {
        if (Across(from, side) == to) {
            return side;
        }
    }
    return std::nullopt;
}

// Fills in what lies beyond the figure's edge, whose side in t2 is `back`.
void DelaunayFlipper::LookAcross(Side back, Figure& figure) const {
    const MeshTriangle& other = mesh.triangles[static_cast<std::size_t>(figure.t2)];
    const bool startsAtP = figure.p == other.corner[FirstEnd(back)];
    const std::size_t cornerP = startsAtP ? FirstEnd(back) : SecondEnd(back);
    const std::size_t cornerQ = startsAtP ? SecondEnd(back) : FirstEnd(back);
    figure.d = other.corner[back];
    figure.acrossPD = Across(figure.t2, cornerQ);
    figure.acrossQD = Across(figure.t2, cornerP);
}

bool DelaunayFlipper::TouchesHull(std::int32_t t) const {
    const auto& [bc, ac, ab] = mesh.triangles[static_cast<std::size_t>(t)].links;
    return (bc | ac | ab) < 0;
}

std::int32_t DelaunayFlipper::Across(std::int32_t t, std::size_t side) const {
    return LinkedTriangle(mesh.triangles[static_cast<std::size_t>(t)].links[side]);
}

Vec2f DelaunayFlipper::Place(std::int32_t vertex) const {
    return mesh.vertices[static_cast<std::size_t>(vertex)];
}

// Triangle t becomes (o, p, d) and t2 becomes (o, q, d). The sides that links name are not used
// any more, so they are not kept.
void DelaunayFlipper::Flip(const Figure& figure) {
    const auto& [t, t2, o, p, q, d, acrossOP, acrossOQ, acrossPD, acrossQD] = figure;
    flipped.push_back(t);
    flipped.push_back(t2);
    mesh.triangles[static_cast<std::size_t>(t)] = {
        {o, p, d}, {MakeLink(acrossPD, 0), MakeLink(t2, 0), MakeLink(acrossOP, 0)}};
    mesh.triangles[static_cast<std::size_t>(t2)] = {
        {o, q, d}, {MakeLink(acrossQD, 0), MakeLink(t, 0), MakeLink(acrossOQ, 0)}};
    Relink(acrossPD, t2, t);
    Relink(acrossOQ, t, t2);
}

// The first side, of a-b, b-c and a-c, that leads to `from` leads to `to` instead.
void DelaunayFlipper::Relink(std::int32_t triangle, std::int32_t from, std::int32_t to) {
    if (triangle < 0) {
        return;
    }
    for (const Side side : {kSideAB, kSideBC, kSideAC}) {
        if (Across(triangle, side) == from) {
            mesh.triangles[static_cast<std::size_t>(triangle)].links[side] = MakeLink(to, 0);
            return;
        }
    }
}
