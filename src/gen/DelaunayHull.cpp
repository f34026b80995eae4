#include "gen/DelaunayHull.h"

#include <array>
#include <cstring>

namespace {

constexpr std::size_t kBlock = 16; // edges looked at together
constexpr std::size_t kSpareLength = 64;

// Moves the elements from `begin` to before `end`, so that they start at `to`.
template <typename T>
void MoveTail(std::vector<T>& field, std::size_t begin, std::size_t to, std::size_t end) {
    std::memmove(field.data() + to, field.data() + begin, (end - begin) * sizeof(T));
}

// The side of a triangle with these two corners; one of them has.
Side SideWith(const MeshTriangle& triangle, std::int32_t p, std::int32_t q) {
    const auto& [a, b, c] = triangle.corner;
    const auto joins = [p, q](std::int32_t v, std::int32_t w) {
        return ((v == p) & (w == q)) | ((v == q) & (w == p));
    };
    return joins(a, b) ? kSideAB : (joins(a, c) ? kSideAC : kSideBC);
}

} // namespace

DelaunayHull::DelaunayHull(DelaunayMesh& theMesh) : mesh(theMesh) {
    const Vec2f p0 = mesh.vertices[0];
    const Vec2f p1 = mesh.vertices[1];
    const Vec2f p2 = mesh.vertices[2];
    const Vec2f centroid = {(p1.x + p0.x + p2.x) / 3.0f, (p1.y + p0.y + p2.y) / 3.0f};
    const float turn = (p1.y - p0.y) * (p0.x - centroid.x) - (p1.x - p0.x) * (p0.y - centroid.y);
    const std::array<std::int32_t, 3> corners =
        turn < 0.0f ? std::array{0, 1, 2} : std::array{0, 2, 1};
    Resize(3);
    MeshTriangle triangle;
    for (std::size_t i = 0; i < 3; ++i) {
        SetPoint(i, corners[i]);
        triangle.corner[i] = vertices[i];
    }
    for (std::size_t i = 0; i < 3; ++i) {
        SetEdge(i, (i + 1) % 3);
    }
    owners[0] = MakeLink(0, kSideAB);
    owners[1] = MakeLink(0, kSideBC);
    owners[2] = MakeLink(0, kSideAC);
    mesh.triangles.push_back(triangle);
}

void DelaunayHull::Insert(std::int32_t vertex) {
    const Run run = FindRun(mesh.vertices[static_cast<std::size_t>(vertex)]);
    if (run.count > 0) {
        AddTriangles(vertex, run);
        ReplacePoints(run, vertex);
    }
}

// Measured from the hull's first point, which rounds differently from the edge's own start.
bool DelaunayHull::SeesClosingEdgeFromFirst(Vec2f from) const {
    const std::size_t last = size - 1;
    return (from.x - x[0]) * edgeY[last] - (from.y - y[0]) * edgeX[last] < 0.0f;
}

// The first edge from `begin` on that the point sees, or the hull's size.
std::size_t DelaunayHull::FirstSeen(Vec2f from, std::size_t begin) const {
    for (std::size_t block = begin; block < size; block += kBlock) {
        int seen = 0;
        for (std::size_t h = block; h < block + kBlock; ++h) {
            seen |= Sees(from, h) ? 1 : 0;
        }
        if (seen != 0) {
            std::size_t h = block;
            while (!Sees(from, h)) {
                ++h;
            }
            return h;
        }
    }
    return size;
}

std::size_t DelaunayHull::FirstUnseen(Vec2f from, std::size_t begin) const {
    std::size_t h = begin;
    while (h < size && Sees(from, h)) {
        ++h;
    }
    return h;
}

// The run that begins with the first edge seen. Only a run with edge 0 in it may reach back over
// the closing edge.
DelaunayHull::Run DelaunayHull::FindRun(Vec2f from) const {
    if (!Sees(from, 0)) {
        const std::size_t start = FirstSeen(from, 1);
        return start == size ? Run{} : Run{start, FirstUnseen(from, start + 1) - start};
    }
    if (SeesClosingEdgeFromFirst(from)) {
        return FindRunOverClosingEdge(from);
    }
    const std::size_t end = FirstUnseen(from, 1);
    return end == size ? Run{} : Run{0, end};
}

DelaunayHull::Run DelaunayHull::FindRunOverClosingEdge(Vec2f from) const {
    const std::size_t last = size - 1;
    const std::size_t end = FirstUnseen(from, 0);
    if (end >= last) {
        return {};
    }
    std::size_t start = last;
    while (Sees(from, start - 1)) { // comes to `end` at the latest
        --start;
    }
    return {start, size - start + end};
}

// Each triangle of the fan has the vertex first, then the ends of its hull edge.
void DelaunayHull::AddTriangles(std::int32_t vertex, Run run) {
    const std::int32_t name = mesh.representatives[static_cast<std::size_t>(vertex)];
    const std::int32_t first = static_cast<std::int32_t>(mesh.triangles.size());
    const std::int32_t last = first + static_cast<std::int32_t>(run.count) - 1;
    std::size_t from = run.start;
    for (std::int32_t index = first; index <= last; ++index) {
        const std::size_t to = from + 1 == size ? 0 : from + 1;
        const std::int32_t owner = LinkedTriangle(owners[from]);
        MeshTriangle& neighbor = mesh.triangles[static_cast<std::size_t>(owner)];
        const std::size_t side = mesh.idsDiffer ? LinkedSide(owners[from])
                                                : SideWith(neighbor, vertices[from], vertices[to]);
        neighbor.links[side] = MakeLink(index, kSideBC);
        MeshTriangle triangle;
        triangle.corner = {name, vertices[from], vertices[to]};
        triangle.links[kSideBC] = MakeLink(owner, side);
        triangle.links[kSideAC] = index == last ? kNoLink : MakeLink(index + 1, kSideAB);
        triangle.links[kSideAB] = index == first ? kNoLink : MakeLink(index - 1, kSideAC);
        mesh.triangles.push_back(triangle);
        from = to;
    }
}

// Puts the vertex in the place of the points inside the run; its two new edges belong to the last
// and the first of the triangles just made.
void DelaunayHull::ReplacePoints(Run run, std::int32_t vertex) {
    const std::int32_t lastMade = static_cast<std::int32_t>(mesh.triangles.size()) - 1;
    const std::int32_t firstMade = lastMade - static_cast<std::int32_t>(run.count) + 1;
    const std::size_t end = run.start + run.count;
    std::size_t at = run.start + 1;
    if (end <= size) {
        Splice(at, end);
    } else {
        const std::size_t frontEnd = end - size;
        Resize(at);
        at = 0;
        Splice(at, frontEnd);
    }
    const std::size_t before = at == 0 ? size - 1 : at - 1;
    const std::size_t after = at + 1 == size ? 0 : at + 1;
    SetPoint(at, vertex);
    SetEdge(at, after);
    SetEdge(before, at);
    owners[at] = MakeLink(lastMade, kSideAC);
    owners[before] = MakeLink(firstMade, kSideAB);
}

void DelaunayHull::SetPoint(std::size_t at, std::int32_t vertex) {
    const Vec2f place = mesh.vertices[static_cast<std::size_t>(vertex)];
    x[at] = place.x;
    y[at] = place.y;
    vertices[at] = mesh.representatives[static_cast<std::size_t>(vertex)];
}

void DelaunayHull::SetEdge(std::size_t at, std::size_t to) {
    edgeX[at] = x[to] - x[at];
    edgeY[at] = y[to] - y[at];
}

// Keeps the arrays a block longer than the hull, and the edges behind it without length.
void DelaunayHull::Resize(std::size_t newSize) {
    if (newSize + kBlock > x.size()) {
        const std::size_t length = 2 * newSize + kSpareLength;
        for (std::vector<float>* field : {&x, &y, &edgeX, &edgeY}) {
            field->resize(length, 0.0f);
        }
        vertices.resize(length);
        owners.resize(length);
    }
    for (std::size_t h = newSize; h < size; ++h) {
        edgeX[h] = 0.0f;
        edgeY[h] = 0.0f;
    }
    size = newSize;
}

// Makes one free place of the places from `begin` to before `end`, of which there may be none.
void DelaunayHull::Splice(std::size_t begin, std::size_t end) {
    if (end - begin == 1) {
        return;
    }
    const std::size_t oldSize = size;
    const std::size_t newSize = size + 1 - (end - begin);
    if (newSize > oldSize) {
        Resize(newSize);
    }
    for (std::vector<float>* field : {&x, &y, &edgeX, &edgeY}) {
        MoveTail(*field, end, begin + 1, oldSize);
    }
    MoveTail(vertices, end, begin + 1, oldSize);
    MoveTail(owners, end, begin + 1, oldSize);
    if (newSize < oldSize) {
        Resize(newSize);
    }
}
