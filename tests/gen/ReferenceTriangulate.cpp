#include "gen/ReferenceTriangulate.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <map>
#include <numeric>
#include <string>
#include <utility>

namespace {

using Points = std::vector<DelaunayPoint>;
using Triangles = std::vector<DelaunayTriangle>;

std::size_t At(std::int32_t index) {
    return static_cast<std::size_t>(index);
}

bool SamePlace(const DelaunayPoint& p, const DelaunayPoint& q) {
    return p.x == q.x && p.y == q.y;
}

bool Before(const DelaunayPoint& p, const DelaunayPoint& q) {
    if (p.sortKey != q.sortKey) {
        return p.sortKey < q.sortKey;
    }
    return p.x != q.x ? p.x < q.x : p.y < q.y;
}

void SortByDistance(Points& points, float x, float y) {
    for (DelaunayPoint& p : points) {
        p.sortKey = (p.x - x) * (p.x - x) + (p.y - y) * (p.y - y);
    }
    std::stable_sort(points.begin(), points.end(), Before);
}

struct Seed {
    std::int32_t second = 1;
    std::int32_t mid = -1;
    float radiusSq = 9.0e20f;
    float x = 0.0f;
    float y = 0.0f;
};

Seed FindSeed(const Points& points) {
    Seed seed;
    const std::int32_t n = static_cast<std::int32_t>(points.size());
    while (seed.second < n && SamePlace(points[At(seed.second)], points[0])) {
        ++seed.second;
    }
    if (seed.second == n) {
        return seed;
    }
    const DelaunayPoint& p0 = points[0];
    const DelaunayPoint& p1 = points[At(seed.second)];
    const float m01x = (p1.x + p0.x) * 0.5f;
    const float m01y = (p1.y + p0.y) * 0.5f;
    const float u = p0.x - p1.x;
    const float v = p1.y - p0.y;
    for (std::int32_t k = seed.second + 1; k < n; ++k) {
        const DelaunayPoint& pk = points[At(k)];
        const float mkx = (pk.x + p1.x) * 0.5f;
        const float mky = (pk.y + p1.y) * 0.5f;
        const float e = pk.x - p1.x;
        const float f = p1.y - pk.y;
        const float det = f * u - e * v;
        float r = -1.0f;
        float cx = 0.0f;
        float cy = 0.0f;
        if (det != 0.0f) {
            const float s = ((mky - m01y) * v - (mkx - m01x) * u) / det;
            cx = s * f + mkx;
            cy = s * e + mky;
            r = (p0.x - cx) * (p0.x - cx) + (p0.y - cy) * (p0.y - cy);
        }
        if (r < seed.radiusSq && r > 0.0f) {
            seed.mid = k;
            seed.radiusSq = r;
            seed.x = cx;
            seed.y = cy;
        } else if (pk.sortKey > 4.0f * seed.radiusSq) {
            break;
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

void SetEdge(DelaunayPoint& from, const DelaunayPoint& to) {
    from.edgeX = to.x - from.x;
    from.edgeY = to.y - from.y;
}

using Field = std::int32_t DelaunayTriangle::*;
using T = DelaunayTriangle;

// A triangle's edges in the order in which they are tried: the corner o opposite the edge p-q, what
// lies across p-q, across o-p and across o-q.
struct TriedEdge {
    Field o, p, q, acrossPQ, acrossOP, acrossOQ;
};
constexpr TriedEdge kTried[] = {{&T::a, &T::b, &T::c, &T::adjBC, &T::adjAB, &T::adjAC},
                                {&T::c, &T::a, &T::b, &T::adjAB, &T::adjAC, &T::adjBC},
                                {&T::b, &T::a, &T::c, &T::adjAC, &T::adjAB, &T::adjBC}};

// Where the way back may be found, in this order: the far corner d, and what lies across the two
// sides there when the edge's p is the corner `first`; the other way round when it is not.
struct WayBack {
    Field adjacent, d, first, acrossPD, acrossQD;
};
constexpr WayBack kSought[] = {{&T::adjAB, &T::c, &T::a, &T::adjAC, &T::adjBC},
                               {&T::adjAC, &T::b, &T::a, &T::adjAB, &T::adjBC},
                               {&T::adjBC, &T::a, &T::b, &T::adjAB, &T::adjAC}};

int SwapTest(const DelaunayPoint& o, const DelaunayPoint& p, const DelaunayPoint& q,
             const DelaunayPoint& d) {
    const float cosO = (q.y - o.y) * (p.y - o.y) + (q.x - o.x) * (p.x - o.x);
    const float cosD = (q.y - d.y) * (p.y - d.y) + (q.x - d.x) * (p.x - d.x);
    if (cosO < 0.0f && cosD < 0.0f) {
        return -1;
    }
    if (cosO > 0.0f && cosD > 0.0f) {
        return 1;
    }
    const float sinO = std::fabs((q.y - o.y) * (p.x - o.x) - (q.x - o.x) * (p.y - o.y));
    const float sinD = std::fabs((q.y - d.y) * (p.x - d.x) - (q.x - d.x) * (p.y - d.y));
    return sinD * cosO + sinO * cosD < 0.0f ? -1 : 1;
}

class Reference {
public:
    Reference(Points& thePoints, Triangles& theTriangles, std::ostream& theOut)
        : points(thePoints), triangles(theTriangles), out(theOut) {
        for (std::size_t k = 0; k < points.size(); ++k) {
            table[points[k].id] = k;
        }
    }

    void SeedHull(const Seed& seed) {
        const DelaunayPoint& p0 = points[0];
        const DelaunayPoint& p1 = points[1];
        const DelaunayPoint& p2 = points[2];
        const float gx = (p1.x + p0.x + p2.x) / 3.0f;
        const float gy = (p1.y + p0.y + p2.y) / 3.0f;
        const float d = (p1.y - p0.y) * (p0.x - gx) - (p1.x - p0.x) * (p0.y - gy);
        hull = d < 0.0f ? Points{p0, p1, p2} : Points{p0, p2, p1};
        for (std::size_t i = 0; i < 3; ++i) {
            hull[i].hullTri = 0;
            SetEdge(hull[i], hull[(i + 1) % 3]);
        }
        triangles.push_back(
            {hull[0].id, hull[1].id, hull[2].id, -1, -1, -1, seed.radiusSq, seed.x, seed.y});
    }

    void InsertAll() {
        for (std::size_t k = 3; k < points.size(); ++k) {
            const std::size_t others[] = {0, 1, 2, k - 1};
            if (std::none_of(std::begin(others), std::end(others), [&](std::size_t other) {
                    return SamePlace(points[k], points[other]);
                })) {
                Insert(points[k]);
            }
        }
    }

    std::int32_t FlipPhase() {
        // A list that grows as it did in the last pass must not come to more than 2^28 entries.
        const auto fits = [&](std::size_t before, int left) {
            double length = static_cast<double>(pending.size());
            for (const double growth = length / static_cast<double>(before); left > 0; --left) {
                length *= growth;
            }
            return length <= 268435456.0;
        };
        const auto repeatListed = [&](int repetitions) {
            std::size_t before = pending.size();
            for (int left = repetitions; left > 0 && !pending.empty(); --left) {
                const bool usual = pending.size() <= 65536 + 4 * triangles.size();
                if (!usual && !fits(before, left)) {
                    break;
                }
                before = pending.size();
                if (!FlipPass(Pass::Listed)) {
                    return false;
                }
            }
            return true;
        };
        if (!FlipPass(Pass::All)) {
            out << "cannot triangualte this set \n";
            return -3;
        }
        if (!repeatListed(49) || (FlipPass(Pass::Hull) && !repeatListed(100))) {
            out << "cannot triangualte this set \n";
            return -4;
        }
        return 1;
    }

private:
    enum class Pass { All, Listed, Hull };

    bool Sees(const DelaunayPoint& p, std::size_t h) const {
        return (p.x - hull[h].x) * hull[h].edgeY - (p.y - hull[h].y) * hull[h].edgeX < 0.0f;
    }

    void Insert(DelaunayPoint p) {
        chain.clear();
        chainTris.clear();
        const Points before = hull;
        const DelaunayPoint& first = hull.front();
        const DelaunayPoint& last = hull.back();
        std::size_t ins = 0;
        bool placed = false;
        if (!Sees(p, 0)) {
            placed = InsertInside(p, ins);
        } else if ((p.x - first.x) * last.edgeY - (p.y - first.y) * last.edgeX < 0.0f) {
            placed = InsertAtFront(p);
        } else {
            placed = InsertAfterFirst(p);
            ins = 1;
        }
        if (placed) {
            AddTriangles(p, ins);
        } else {
            hull = before;
        }
    }

    void Append(std::size_t h) {
        chain.push_back(hull[h].id);
        chainTris.push_back(hull[h].hullTri);
    }

    void Place(const DelaunayPoint& p, std::size_t h) { hull.insert(hull.begin() + Step(h), p); }
    void Remove(std::size_t h) { hull.erase(hull.begin() + Step(h)); }
    static std::ptrdiff_t Step(std::size_t h) { return static_cast<std::ptrdiff_t>(h); }

    bool InsertAtFront(DelaunayPoint& p) {
        const std::size_t m = hull.size();
        Append(m - 1);
        std::size_t removed = 0;
        for (Append(0); Sees(p, 0); Append(0)) {
            Remove(0);
            if (++removed == m - 1) {
                return false;
            }
        }
        SetEdge(p, hull[0]);
        Place(p, 0);
        std::size_t h = hull.size() - 2;
        for (; Sees(p, h); --h) {
            chain.insert(chain.begin(), hull[h].id);
            chainTris.insert(chainTris.begin(), hull[h].hullTri);
            Remove(h + 1);
        }
        SetEdge(hull.back(), p);
        return true;
    }

    bool InsertAfterFirst(DelaunayPoint& p) {
        Append(0);
        for (Append(1); Sees(p, 1); Append(1)) {
            Remove(1);
            if (hull.size() == 1) {
                return false;
            }
        }
        SetEdge(p, hull[1]);
        SetEdge(hull[0], p);
        Place(p, 1);
        return true;
    }

    bool InsertInside(DelaunayPoint& p, std::size_t& ins) {
        const std::size_t m = hull.size();
        std::size_t f = 1;
        while (f < m && !Sees(p, f)) {
            ++f;
        }
        if (f == m) {
            return false;
        }
        std::size_t e = f + 1;
        while (e < m && Sees(p, e)) {
            ++e;
        }
        for (std::size_t h = f; h < std::min(e + 1, m); ++h) {
            Append(h);
        }
        if (e == m) {
            chain.push_back(hull[0].id);
        }
        hull.erase(hull.begin() + Step(f + 1), hull.begin() + Step(e));
        SetEdge(p, e == m ? hull[0] : hull[f + 1]);
        SetEdge(hull[f], p);
        Place(p, f + 1);
        ins = f + 1;
        return true;
    }

    void AddTriangles(const DelaunayPoint& p, std::size_t ins) {
        const auto n = static_cast<std::int32_t>(triangles.size());
        const auto k = static_cast<std::int32_t>(chain.size()) - 1;
        for (std::int32_t i = 0; i < k; ++i) {
            const std::int32_t from = chain[At(i)];
            const std::int32_t to = chain[At(i + 1)];
            triangles.push_back({p.id, from, to, i == 0 ? -1 : n + i - 1, chainTris[At(i)],
                                 i == k - 1 ? -1 : n + i + 1});
            Link(triangles[At(chainTris[At(i)])], std::minmax({from, to}), n + i);
        }
        hull[ins].hullTri = n + k - 1;
        hull[ins == 0 ? hull.size() - 1 : ins - 1].hullTri = n;
    }

    static void Link(DelaunayTriangle& old, std::pair<std::int32_t, std::int32_t> ends,
                     std::int32_t added) {
        if (std::minmax({old.a, old.b}) == ends) {
            old.adjAB = added;
        } else if (std::minmax({old.a, old.c}) == ends) {
            old.adjAC = added;
        } else if (std::minmax({old.b, old.c}) == ends) {
            old.adjBC = added;
        }
    }

    // Reads the pending list when it is a listed pass, and replaces it. False at broken adjacency.
    bool FlipPass(Pass pass) {
        std::vector<std::int32_t> visited = std::exchange(pending, {});
        if (pass != Pass::Listed) {
            visited.resize(triangles.size());
            std::iota(visited.begin(), visited.end(), 0);
        }
        return std::all_of(visited.begin(), visited.end(),
                           [&](std::int32_t t) { return Visit(pass, t); });
    }

    bool Visit(Pass pass, std::int32_t t) {
        for (const TriedEdge& edge : kTried) {
            const DelaunayTriangle tri = triangles[At(t)];
            const std::int32_t t2 = tri.*edge.acrossPQ;
            const std::int32_t l1 = tri.*edge.acrossOP;
            const std::int32_t l2 = tri.*edge.acrossOQ;
            if (t2 < 0 || (pass == Pass::Hull && l1 != -1 && l2 != -1)) {
                continue;
            }
            const DelaunayTriangle other = triangles[At(t2)];
            const auto back =
                std::find_if(std::begin(kSought), std::end(kSought),
                             [&](const WayBack& way) { return other.*way.adjacent == t; });
            if (back == std::end(kSought)) {
                const bool named = pass == Pass::Listed && &edge == kTried;
                out << "triangle flipping error. " << t
                    << (named ? "  T2: " + std::to_string(t2) : "") << '\n';
                return false;
            }
            const std::int32_t o = tri.*edge.o;
            const std::int32_t p = tri.*edge.p;
            const std::int32_t q = tri.*edge.q;
            const std::int32_t d = other.*back->d;
            std::int32_t l3 = other.*back->acrossPD;
            std::int32_t l4 = other.*back->acrossQD;
            if (p != other.*back->first) {
                std::swap(l3, l4);
            }
            const bool stable = pass == Pass::Hull || (l1 != l3 && l2 != l4);
            if (stable && SwapTest(Of(o), Of(p), Of(q), Of(d)) == -1) {
                pending.insert(pending.end(), {t, t2});
                triangles[At(t)] = {o, p, d, l1, l3, t2, tri.radiusSq, tri.centreX, tri.centreY};
                triangles[At(t2)] = {
                    o, q, d, l2, l4, t, other.radiusSq, other.centreX, other.centreY};
                Relink(l3, t2, t);
                Relink(l2, t, t2);
                return true;
            }
        }
        return true;
    }

    void Relink(std::int32_t index, std::int32_t from, std::int32_t to) {
        for (const Field side : {&T::adjAB, &T::adjBC, &T::adjAC}) {
            if (index >= 0 && triangles[At(index)].*side == from) {
                triangles[At(index)].*side = to;
                return;
            }
        }
    }

    const DelaunayPoint& Of(std::int32_t id) const { return points[table.at(id)]; }

    Points& points;
    Triangles& triangles;
    std::ostream& out;
    std::map<std::int32_t, std::size_t> table;
    Points hull;
    std::vector<std::int32_t> chain;
    std::vector<std::int32_t> chainTris;
    std::vector<std::int32_t> pending; // what the last pass rewrote
};

bool IsUsable(const DelaunayPoint& p) {
    return p.id >= 0 && std::isfinite(p.x) && std::isfinite(p.y);
}

std::int32_t TriangulateUsable(Points& points, Triangles& triangles, std::ostream& out) {
    SortByDistance(points, points[0].x, points[0].y);
    const Seed seed = FindSeed(points);
    if (seed.mid < 0) {
        out << "linear structure, aborting \n";
        return -2;
    }
    const DelaunayPoint p0 = points[0];
    const DelaunayPoint p1 = points[At(seed.second)];
    const DelaunayPoint p2 = points[At(seed.mid)];
    if (IsObtuse(p0, p1, p2)) {
        out << "warning: obtuce seed triangle sellected \n";
    }
    points.erase(points.begin() + seed.mid);
    points.erase(points.begin() + seed.second);
    points.erase(points.begin());
    SortByDistance(points, seed.x, seed.y);
    for (const DelaunayPoint& p : {p2, p1, p0}) {
        points.insert(points.begin(), p);
    }
    Reference reference(points, triangles, out);
    reference.SeedHull(seed);
    reference.InsertAll();
    out << "of triangles " << triangles.size() << " to be flipped. \n";
    return reference.FlipPhase();
}

} // namespace

std::int32_t ReferenceTriangulate(Points& points, Triangles& triangles, std::ostream& out) {
    Points usable;
    Points unusable;
    for (const DelaunayPoint& p : points) {
        (IsUsable(p) ? usable : unusable).push_back(p);
    }
    if (usable.size() < 3) {
        out << "less than 3 points, aborting \n";
        return -1;
    }
    triangles.clear();
    const std::int32_t result = TriangulateUsable(usable, triangles, out);
    for (DelaunayPoint& p : unusable) {
        p.sortKey = std::numeric_limits<float>::infinity();
        usable.push_back(p);
    }
    points = usable;
    return result;
}
