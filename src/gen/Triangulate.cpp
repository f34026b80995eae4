#include "gen/Triangulate.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "gen/DelaunayFlipper.h"
#include "gen/DelaunayHull.h"
#include "gen/DelaunayMesh.h"
#include "gen/DelaunayOrder.h"
#include "gen/DelaunaySeed.h"
#include "gen/ErrorLine.h"

#ifdef __FAST_MATH__
#error "The generated world depends on exact float arithmetic."
#endif
static_assert(FLT_EVAL_METHOD == 0, "Floats must be computed as 32-bit floats.");

namespace {

using Points = std::vector<DelaunayPoint>;
using Triangles = std::vector<DelaunayTriangle>;

constexpr std::size_t kSeedPoints = 3;
// A triangulation has less than two triangles a point.
constexpr std::size_t kMostPoints = static_cast<std::size_t>(kMostTriangles) / 2;

bool IsUsable(const DelaunayPoint& point) {
    return point.id >= 0 && std::isfinite(point.x) && std::isfinite(point.y);
}

void MoveUnusableBehind(Points& points) {
    const auto rest = std::stable_partition(points.begin(), points.end(), IsUsable);
    std::for_each(rest, points.end(), [](DelaunayPoint& point) {
        point.sortKey = std::numeric_limits<float>::infinity();
    });
}

// Puts the points in the order, from a given place of the list on.
void ArrangeFrom(std::size_t firstPlace, const Points& source, DelaunayOrder& order,
                 Points& points) {
    order.SortAll();
    for (std::size_t i = 0; i < order.Size(); ++i) {
        DelaunayPoint& point = points[firstPlace + i];
        point = source[order.Point(i)];
        point.sortKey = order.Distance(i);
    }
}

void ArrangeByDistanceFromFirst(DelaunayOrder& order, Points& points) {
    order.SortAll(); // while the points are still those it was made from
    const Points source = points;
    ArrangeFrom(0, source, order, points);
}

// The seed points first, which keep their distances from the first; then the others by distance
// from the circle's centre.
void ArrangeForInsertion(const DelaunaySeed& seed, std::size_t usable, Points& points) {
    const Points source = points;
    DelaunayOrder order(source, usable, seed.centre.x, seed.centre.y);
    for (std::size_t i = 0; i < kSeedPoints; ++i) {
        order.Exclude(seed.points[i]);
        points[i] = source[seed.points[i]];
        points[i].sortKey = seed.sortKeys[i];
    }
    ArrangeFrom(kSeedPoints, source, order, points);
}

// Every id's last position, for ids of any size: found by sorting where a table would be mostly
// empty.
std::vector<std::int32_t> NamesBySorting(const Points& points, std::size_t usable) {
    std::vector<std::pair<std::int32_t, std::int32_t>> entries; // id, position
    entries.reserve(usable);
    for (std::size_t k = 0; k < usable; ++k) {
        entries.emplace_back(points[k].id, static_cast<std::int32_t>(k));
    }
    std::sort(entries.begin(), entries.end());
    std::vector<std::int32_t> names(usable);
    std::int32_t last = entries.back().second;
    for (std::size_t i = usable; i-- > 0;) {
        if (i + 1 < usable && entries[i].first != entries[i + 1].first) {
            last = entries[i].second;
        }
        names[static_cast<std::size_t>(entries[i].second)] = last;
    }
    return names;
}

std::vector<std::int32_t> NamesByTable(const Points& points, std::size_t usable,
                                       std::size_t largestId) {
    std::vector<std::int32_t> table(largestId + 1);
    for (std::size_t k = 0; k < usable; ++k) {
        table[static_cast<std::size_t>(points[k].id)] = static_cast<std::int32_t>(k);
    }
    std::vector<std::int32_t> names(usable);
    for (std::size_t k = 0; k < usable; ++k) {
        names[k] = table[static_cast<std::size_t>(points[k].id)];
    }
    return names;
}

std::vector<std::int32_t> Names(const Points& points, std::size_t usable) {
    std::size_t largestId = 0;
    for (std::size_t k = 0; k < usable; ++k) {
        largestId = std::max(largestId, static_cast<std::size_t>(points[k].id));
    }
    return largestId < 8 * usable ? NamesByTable(points, usable, largestId)
                                  : NamesBySorting(points, usable);
}

DelaunayMesh MakeMesh(const Points& points, std::size_t usable) {
    DelaunayMesh mesh;
    mesh.vertices.reserve(usable);
    for (std::size_t k = 0; k < usable; ++k) {
        mesh.vertices.push_back({points[k].x, points[k].y});
    }
    mesh.representatives = Names(points, usable);
    for (std::size_t k = 0; k < usable; ++k) {
        mesh.idsDiffer &= mesh.representatives[k] == static_cast<std::int32_t>(k);
    }
    mesh.triangles.reserve(2 * usable);
    return mesh;
}

// Equal points stand side by side in the order, but for those equal to a seed point.
bool IsRepeated(const std::vector<Vec2f>& vertices, std::size_t k) {
    const Vec2f place = vertices[k];
    return place == vertices[k - 1] || place == vertices[0] || place == vertices[1] ||
           place == vertices[2];
}

void InsertPoints(DelaunayMesh& mesh) {
    DelaunayHull hull(mesh);
    for (std::size_t k = kSeedPoints; k < mesh.vertices.size(); ++k) {
        if (!IsRepeated(mesh.vertices, k)) {
            hull.Insert(static_cast<std::int32_t>(k));
        }
    }
}

void WriteTriangles(const DelaunayMesh& mesh, const Points& points, const DelaunaySeed& seed,
                    Triangles& triangles) {
    const auto idOf = [&points](std::int32_t vertex) {
        return points[static_cast<std::size_t>(vertex)].id;
    };
    triangles.reserve(mesh.triangles.size());
    for (const MeshTriangle& source : mesh.triangles) {
        const auto& [a, b, c] = source.corner;
        const auto& [bc, ac, ab] = source.links;
        triangles.push_back({idOf(a), idOf(b), idOf(c), LinkedTriangle(ab), LinkedTriangle(bc),
                             LinkedTriangle(ac)});
    }
    triangles[0].radiusSq = seed.radiusSq;
    triangles[0].centreX = seed.centre.x;
    triangles[0].centreY = seed.centre.y;
}

} // namespace

std::int32_t Triangulate(std::vector<DelaunayPoint>& points,
                         std::vector<DelaunayTriangle>& triangles) {
    const auto usable =
        static_cast<std::size_t>(std::count_if(points.begin(), points.end(), IsUsable));
    if (usable < kSeedPoints || usable > kMostPoints) {
        WriteErrorLine("less than 3 points, aborting ");
        return -1;
    }
    triangles.clear();
    if (usable < points.size()) {
        MoveUnusableBehind(points);
    }
    DelaunayOrder order(points, usable, points[0].x, points[0].y);
    const DelaunaySeed seed = FindSeed(points, order);
    if (!seed.found) {
        WriteErrorLine("linear structure, aborting ");
        ArrangeByDistanceFromFirst(order, points);
        return -2;
    }
    if (IsObtuse(points[seed.points[0]], points[seed.points[1]], points[seed.points[2]])) {
        WriteErrorLine("warning: obtuce seed triangle sellected ");
    }
    ArrangeForInsertion(seed, usable, points);

    DelaunayMesh mesh = MakeMesh(points, usable);
    InsertPoints(mesh);
    WriteErrorLine("of triangles " + std::to_string(mesh.triangles.size()) + " to be flipped. ");
    const std::int32_t result = DelaunayFlipper(mesh).Run();
    WriteTriangles(mesh, points, seed, triangles);
    return result;
}
