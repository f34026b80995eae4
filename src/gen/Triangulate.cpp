#include "gen/Triangulate.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iostream>
#include <limits>
#include <map>
#include <ostream>
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

class Reference {
public:
    Reference(Points& thePoints, Triangles& theTriangles, std::ostream& theOut)
        : points(thePoints), triangles(theTriangles), out(theOut) {}

    void BuildTable() {
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
        DelaunayTriangle first;
        first.a = hull[0].id;
        first.b = hull[1].id;
        first.c = hull[2].id;
        first.radiusSq = seed.radiusSq;
        first.centreX = seed.x;
        first.centreY = seed.y;
        triangles.push_back(first);
    }

    void InsertAll() {
        for (std::size_t k = 3; k < points.size(); ++k) {
            const bool repeated =
                SamePlace(points[k], points[0]) || SamePlace(points[k], points[1]) ||
                SamePlace(points[k], points[2]) || SamePlace(points[k], points[k - 1]);
            if (!repeated) {
                Insert(points[k]);
            }
        }
    }

    std::int32_t FlipPhase() {
        const std::size_t limit = kPendingBase + kPendingPerTriangle * triangles.size();
        const auto tooLong = [&] { return pending.size() > limit; };
        pending.clear();
        if (FlipPass(Pass::All) < 0) {
            out << "cannot triangualte this set \n";
            return -3;
        }
        int count = 1;
        while (!pending.empty() && count < 50 && !tooLong()) {
            const std::int32_t r = FlipPass(Pass::Listed);
            ++count;
            if (r < 0) {
                out << "cannot triangualte this set \n";
                return -4;
            }
        }
        pending.clear();
        if (FlipPass(Pass::Hull) <= 0) {
            return 1;
        }
        for (int i = 0; i < 100 && !tooLong(); ++i) {
            if (FlipPass(Pass::Listed) < 0) {
                out << "cannot triangualte this set \n";
                return -4;
            }
            if (pending.empty()) {
                break;
            }
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
        const std::size_t m = hull.size();
        std::size_t ins = 0;
        bool placed = false;
        if (Sees(p, 0)) {
            const DelaunayPoint& last = hull[m - 1];
            if ((p.x - hull[0].x) * last.edgeY - (p.y - hull[0].y) * last.edgeX < 0.0f) {
                placed = InsertAtFront(p);
            } else {
                placed = InsertAfterFirst(p);
                ins = 1;
            }
        } else {
            placed = InsertInside(p, ins);
        }
        if (!placed) {
            hull = before;
            return;
        }
        AddTriangles(p, ins);
    }

    bool InsertAtFront(DelaunayPoint& p) {
        const std::size_t m = hull.size();
        chain.push_back(hull[m - 1].id);
        chainTris.push_back(hull[m - 1].hullTri);
        bool placed = false;
        for (std::size_t i = 0; i < m - 1; ++i) {
            chain.push_back(hull[0].id);
            chainTris.push_back(hull[0].hullTri);
            if (Sees(p, 0)) {
                hull.erase(hull.begin());
            } else {
                SetEdge(p, hull[0]);
                hull.insert(hull.begin(), p);
                placed = true;
                break;
            }
        }
        if (!placed) {
            return false;
        }
        for (std::size_t h = hull.size() - 2; h >= 1; --h) {
            if (Sees(p, h)) {
                chain.insert(chain.begin(), hull[h].id);
                chainTris.insert(chainTris.begin(), hull[h].hullTri);
                hull.erase(hull.begin() + static_cast<std::ptrdiff_t>(h) + 1);
            } else {
                SetEdge(hull.back(), p);
                break;
            }
        }
        return true;
    }

    bool InsertAfterFirst(DelaunayPoint& p) {
        chain.push_back(hull[0].id);
        chainTris.push_back(hull[0].hullTri);
        while (hull.size() > 1) {
            chain.push_back(hull[1].id);
            chainTris.push_back(hull[1].hullTri);
            if (Sees(p, 1)) {
                hull.erase(hull.begin() + 1);
            } else {
                SetEdge(p, hull[1]);
                SetEdge(hull[0], p);
                hull.insert(hull.begin() + 1, p);
                return true;
            }
        }
        return false;
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
            chain.push_back(hull[h].id);
            chainTris.push_back(hull[h].hullTri);
        }
        if (e == m) {
            chain.push_back(hull[0].id);
        }
        hull.erase(hull.begin() + static_cast<std::ptrdiff_t>(f) + 1,
                   hull.begin() + static_cast<std::ptrdiff_t>(e));
        SetEdge(p, e == m ? hull[0] : hull[f + 1]);
        SetEdge(hull[f], p);
        hull.insert(hull.begin() + static_cast<std::ptrdiff_t>(f) + 1, p);
        ins = f + 1;
        return true;
    }

    void AddTriangles(const DelaunayPoint& p, std::size_t ins) {
        const std::int32_t n = static_cast<std::int32_t>(triangles.size());
        const std::int32_t k = static_cast<std::int32_t>(chain.size()) - 1;
        for (std::int32_t i = 0; i < k; ++i) {
            DelaunayTriangle t;
            t.a = p.id;
            t.b = chain[At(i)];
            t.c = chain[At(i + 1)];
            t.adjBC = chainTris[At(i)];
            t.adjAB = i == 0 ? -1 : n + i - 1;
            t.adjAC = i == k - 1 ? -1 : n + i + 1;
            triangles.push_back(t);
            Link(triangles[At(chainTris[At(i)])], chain[At(i)], chain[At(i + 1)], n + i);
        }
        hull[ins].hullTri = n + k - 1;
        hull[ins == 0 ? hull.size() - 1 : ins - 1].hullTri = n;
    }

    static void Link(DelaunayTriangle& old, std::int32_t p, std::int32_t q, std::int32_t added) {
        const auto matches = [&](std::int32_t v, std::int32_t w) {
            return (v == p && w == q) || (v == q && w == p);
        };
        if (matches(old.a, old.b)) {
            old.adjAB = added;
        } else if (matches(old.a, old.c)) {
            old.adjAC = added;
        } else if (matches(old.b, old.c)) {
            old.adjBC = added;
        }
    }

    // One pass. The pending list is read by a listed pass and replaced by every pass.
    std::int32_t FlipPass(Pass pass) {
        std::vector<std::int32_t> output;
        std::int32_t result = 1;
        if (pass == Pass::Listed) {
            for (std::size_t i = 0; i < pending.size() && result > 0; ++i) {
                result = Visit(pass, pending[i], output);
            }
        } else {
            for (std::size_t t = 0; t < triangles.size() && result > 0; ++t) {
                result = Visit(pass, static_cast<std::int32_t>(t), output);
            }
        }
        pending = std::move(output);
        return result;
    }

    std::int32_t Visit(Pass pass, std::int32_t t, std::vector<std::int32_t>& output) {
        for (int edge = 1; edge <= 3; ++edge) {
            const DelaunayTriangle& tri = triangles[At(t)];
            std::int32_t o = 0, p = 0, q = 0, t2 = 0, l1 = 0, l2 = 0;
            if (edge == 1) {
                o = tri.a, p = tri.b, q = tri.c, t2 = tri.adjBC, l1 = tri.adjAB, l2 = tri.adjAC;
            } else if (edge == 2) {
                o = tri.c, p = tri.a, q = tri.b, t2 = tri.adjAB, l1 = tri.adjAC, l2 = tri.adjBC;
            } else {
                o = tri.b, p = tri.a, q = tri.c, t2 = tri.adjAC, l1 = tri.adjAB, l2 = tri.adjBC;
            }
            if (t2 < 0 || (pass == Pass::Hull && l1 != -1 && l2 != -1)) {
                continue;
            }
            const DelaunayTriangle& other = triangles[At(t2)];
            std::int32_t d = 0, l3 = 0, l4 = 0;
            if (other.adjAB == t) {
                d = other.c, l3 = other.adjAC, l4 = other.adjBC;
                if (p != other.a) {
                    std::swap(l3, l4);
                }
            } else if (other.adjAC == t) {
                d = other.b, l3 = other.adjAB, l4 = other.adjBC;
                if (p != other.a) {
                    std::swap(l3, l4);
                }
            } else if (other.adjBC == t) {
                d = other.a, l3 = other.adjAB, l4 = other.adjAC;
                if (p != other.b) {
                    std::swap(l3, l4);
                }
            } else {
                out << "triangle flipping error. " << t;
                if (pass == Pass::Listed && edge == 1) {
                    out << "  T2: " << t2;
                }
                out << '\n';
                return pass == Pass::Listed ? -6 : -5;
            }
            const bool stable = pass == Pass::Hull || (l1 != l3 && l2 != l4);
            if (SwapTest(Of(o), Of(p), Of(q), Of(d)) != -1 || !stable) {
                continue;
            }
            output.push_back(t);
            output.push_back(t2);
            Rewrite(triangles[At(t)], {o, p, d}, {l1, l3, t2});
            Rewrite(triangles[At(t2)], {o, q, d}, {l2, l4, t});
            Relink(l3, t2, t);
            Relink(l2, t, t2);
            return 1;
        }
        return 1;
    }

    struct Three {
        std::int32_t ab, bc, ac;
    };

    static void Rewrite(DelaunayTriangle& tri, Three corners, Three adjacent) {
        tri.a = corners.ab;
        tri.b = corners.bc;
        tri.c = corners.ac;
        tri.adjAB = adjacent.ab;
        tri.adjBC = adjacent.bc;
        tri.adjAC = adjacent.ac;
    }

    void Relink(std::int32_t index, std::int32_t from, std::int32_t to) {
        if (index < 0) {
            return;
        }
        DelaunayTriangle& tri = triangles[At(index)];
        if (tri.adjAB == from) {
            tri.adjAB = to;
        } else if (tri.adjBC == from) {
            tri.adjBC = to;
        } else if (tri.adjAC == from) {
            tri.adjAC = to;
        }
    }

    const DelaunayPoint& Of(std::int32_t id) const { return points[table.at(id)]; }

    static int SwapTest(const DelaunayPoint& o, const DelaunayPoint& p, const DelaunayPoint& q,
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

    Points& points;
    Triangles& triangles;
    std::ostream& out;
    std::map<std::int32_t, std::size_t> table;
    Points hull;
    std::vector<std::int32_t> chain;
    std::vector<std::int32_t> chainTris;
    std::vector<std::int32_t> pending;
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
    reference.BuildTable();
    reference.SeedHull(seed);
    reference.InsertAll();
    out << "of triangles " << triangles.size() << " to be flipped. \n";
    return reference.FlipPhase();
}

} // namespace

std::int32_t Triangulate(Points& points, Triangles& triangles) {
    std::ostream& out = std::cerr;
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
