#include "gen/Triangulate.h"

#include "gen/DelaunayMesh.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <iostream>
#include <limits>
#include <string>
#include <unordered_map>

#ifdef __FAST_MATH__
#error "The generated world depends on exact float arithmetic."
#endif
static_assert(FLT_EVAL_METHOD == 0, "Floats must be computed as 32-bit floats.");

namespace {

using Points = std::vector<DelaunayPoint>;

bool IsUsable(const DelaunayPoint& point) {
    return point.id >= 0 && std::isfinite(point.x) && std::isfinite(point.y);
}

void MoveUnusableBehind(Points& points) {
    const auto unusable = std::stable_partition(points.begin(), points.end(), IsUsable);
    std::for_each(unusable, points.end(), [](DelaunayPoint& point) {
        point.sortKey = std::numeric_limits<float>::infinity();
    });
}

// A point in a sort.
struct Entry {
    float distanceSq = 0.0f; // from the place that the points are sorted around
    std::uint32_t index = 0; // among the points
};

// By distance, then x, then y; points equal in all of these stay in the caller's order.
struct Before {
    const Points& points;

    bool operator()(Entry a, Entry b) const {
        if (a.distanceSq != b.distanceSq) {
            return a.distanceSq < b.distanceSq;
        }
        const DelaunayPoint& p = points[a.index];
        const DelaunayPoint& q = points[b.index];
        return p.x != q.x ? p.x < q.x : (p.y != q.y ? p.y < q.y : a.index < b.index);
    }
};

std::vector<Entry> Measure(const Points& points, std::size_t count, Vec2f from) {
    std::vector<Entry> entries(count);
    for (std::size_t i = 0; i < count; ++i) {
        const float dx = points[i].x - from.x;
        const float dy = points[i].y - from.y;
        entries[i] = {dx * dx + dy * dy, static_cast<std::uint32_t>(i)};
    }
    return entries;
}

// Puts points into the order of the entries, from a position on.
void Arrange(Points& points, std::size_t position, const Points& source,
             const std::vector<Entry>& order) {
    for (const auto& [distanceSq, index] : order) {
        points[position] = source[index];
        points[position++].sortKey = distanceSq;
    }
}

void ArrangeByDistanceFromFirst(Points& points, std::size_t usable) {
    const Points source = points;
    std::vector<Entry> order = Measure(source, usable, {source[0].x, source[0].y});
    std::sort(order.begin(), order.end(), Before{source});
    Arrange(points, 0, source, order);
}

struct Circle {
    float radiusSq = -1.0f; // -1 for points on one line
    Vec2f centre;
};

struct Seed {
    std::array<Entry, kSeedPoints> points{}; // with their distances from the first
    Circle circle{9.0e20f, {}};
    bool found = false;
};

Vec2f Midpoint(const DelaunayPoint& a, const DelaunayPoint& b) {
    return {(a.x + b.x) * 0.5f, (a.y + b.y) * 0.5f};
}

// The perpendicular bisectors of p0-p1 and p1-pk meet at the centre.
Circle CircleThrough(const DelaunayPoint& p0, const DelaunayPoint& p1, const DelaunayPoint& pk) {
    const Vec2f m01 = Midpoint(p1, p0);
    const Vec2f mk = Midpoint(pk, p1);
    const float u = p0.x - p1.x;
    const float v = p1.y - p0.y;
    const float e = pk.x - p1.x;
    const float f = p1.y - pk.y;
    const float det = f * u - e * v;
    if (det == 0.0f) {
        return {};
    }
    const float s = ((mk.y - m01.y) * v - (mk.x - m01.x) * u) / det;
    const Vec2f centre{s * f + mk.x, s * e + mk.y};
    const float dx = p0.x - centre.x;
    const float dy = p0.y - centre.y;
    return {dx * dx + dy * dy, centre};
}

// The second seed point is the nearest to the first that differs from it, the third makes the
// smallest circle with both. The points come from a heap, nearest first, because few have to be
// looked at.
Seed FindSeed(const Points& points, std::size_t usable) {
    const auto after = [before = Before{points}](Entry a, Entry b) { return before(b, a); };
    std::vector<Entry> heap = Measure(points, usable, {points[0].x, points[0].y});
    std::make_heap(heap.begin(), heap.end(), after);
    const auto takeNearest = [&heap, after] {
        std::pop_heap(heap.begin(), heap.end(), after);
        const Entry nearest = heap.back();
        heap.pop_back();
        return nearest;
    };
    Seed seed;
    auto& [first, second, third] = seed.points;
    first = takeNearest();
    const DelaunayPoint& p0 = points[first.index];
    do {
        second = takeNearest();
    } while (!heap.empty() && points[second.index].x == p0.x && points[second.index].y == p0.y);
    const DelaunayPoint& p1 = points[second.index];
    while (!heap.empty()) {
        const Entry candidate = takeNearest();
        const Circle circle = CircleThrough(p0, p1, points[candidate.index]);
        if (circle.radiusSq < seed.circle.radiusSq && circle.radiusSq > 0.0f) {
            third = candidate;
            seed.circle = circle;
            seed.found = true;
        } else if (candidate.distanceSq > 4.0f * seed.circle.radiusSq) {
            break; // its circle cannot be smaller, nor can any after it
        }
    }
    return seed;
}

bool IsObtuse(const DelaunayPoint& p0, const DelaunayPoint& p1, const DelaunayPoint& p2) {
    const auto dot = [](float ax, float ay, float bx, float by) { return ax * bx + ay * by; };
    return dot(p2.x - p0.x, p2.y - p0.y, p1.x - p0.x, p1.y - p0.y) < 0.0f ||
           dot(p1.x - p2.x, p1.y - p2.y, p2.x - p0.x, p2.y - p0.y) > 0.0f ||
           dot(p1.x - p2.x, p1.y - p2.y, p1.x - p0.x, p1.y - p0.y) < 0.0f;
}

// The seed points, which keep their distances from the first; then the others by distance from the
// circle's centre.
void ArrangeForInsertion(const Seed& seed, std::size_t usable, Points& points) {
    const Points source = points;
    std::vector<Entry> others = Measure(source, usable, seed.circle.centre);
    std::erase_if(others, [&seed](Entry entry) {
        return std::any_of(seed.points.begin(), seed.points.end(),
                           [entry](Entry taken) { return taken.index == entry.index; });
    });
    std::sort(others.begin(), others.end(), Before{source});
    Arrange(points, 0, source, {seed.points.begin(), seed.points.end()});
    Arrange(points, kSeedPoints, source, others);
}

// For each position the last position with the same id. The table maps ids to positions.
template <typename Table>
std::vector<std::int32_t> LastPositions(const Points& points, std::size_t usable, Table table) {
    for (std::size_t k = 0; k < usable; ++k) {
        table[At(points[k].id)] = static_cast<std::int32_t>(k);
    }
    std::vector<std::int32_t> last(usable);
    for (std::size_t k = 0; k < usable; ++k) {
        last[k] = table[At(points[k].id)];
    }
    return last;
}

DelaunayMesh MakeMesh(const Points& points, std::size_t usable) {
    DelaunayMesh mesh;
    mesh.places.reserve(usable);
    std::size_t largestId = 0;
    for (std::size_t k = 0; k < usable; ++k) {
        mesh.places.push_back({points[k].x, points[k].y});
        largestId = std::max(largestId, At(points[k].id));
    }
    // Memory follows the number of points, not the size of their ids.
    mesh.names =
        largestId < 8 * usable
            ? LastPositions(points, usable, std::vector<std::int32_t>(largestId + 1))
            : LastPositions(points, usable, std::unordered_map<std::size_t, std::int32_t>{});
    for (std::size_t k = 0; k < usable; ++k) {
        mesh.idsDiffer &= At(mesh.names[k]) == k;
    }
    mesh.triangles.reserve(2 * usable);
    return mesh;
}

void WriteTriangles(const Points& points, const DelaunayMesh& mesh, const Circle& seedCircle,
                    std::vector<DelaunayTriangle>& triangles) {
    const auto idOf = [&points](std::int32_t position) { return points[At(position)].id; };
    triangles.reserve(mesh.triangles.size());
    for (const MeshTriangle& triangle : mesh.triangles) {
        const auto& [a, b, c] = triangle.corner;
        triangles.push_back({idOf(a), idOf(b), idOf(c), triangle.Across(kAB), triangle.Across(kBC),
                             triangle.Across(kAC)});
    }
    triangles[0].radiusSq = seedCircle.radiusSq;
    triangles[0].centreX = seedCircle.centre.x;
    triangles[0].centreY = seedCircle.centre.y;
}

} // namespace

std::int32_t Triangulate(std::vector<DelaunayPoint>& points,
                         std::vector<DelaunayTriangle>& triangles) {
    const auto usable =
        static_cast<std::size_t>(std::count_if(points.begin(), points.end(), IsUsable));
    if (usable < kSeedPoints) {
        std::cerr << "less than 3 points, aborting \n";
        return -1;
    }
    triangles.clear();
    MoveUnusableBehind(points);
    const Seed seed = FindSeed(points, usable);
    if (!seed.found) {
        std::cerr << "linear structure, aborting \n";
        ArrangeByDistanceFromFirst(points, usable);
        return -2;
    }
    ArrangeForInsertion(seed, usable, points);
    if (IsObtuse(points[0], points[1], points[2])) {
        std::cerr << "warning: obtuce seed triangle sellected \n";
    }
    DelaunayMesh mesh = MakeMesh(points, usable);
    InsertPoints(points, mesh);
    std::cerr << "of triangles " + std::to_string(mesh.triangles.size()) + " to be flipped. \n";
    const std::int32_t result = FlipTriangles(mesh);
    WriteTriangles(points, mesh, seed.circle, triangles);
    return result;
}
