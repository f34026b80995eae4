// Points in order of their distance from a place.
//
// The order is by squared distance, then x, then y; points equal in all of these stay in the
// caller's order, so the order is the same with every sort. It is made piece by piece, since the
// seed search rarely looks at more than the nearest few. Lives within one call of `Triangulate`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "gen/Triangulate.h"

class DelaunayOrder {
public:
    /// Measures the first `count` points, whose coordinates are finite, from (x, y). The points are
    /// only read, and must outlive the order.
    DelaunayOrder(const std::vector<DelaunayPoint>& points, std::size_t count, float x, float y);

    std::size_t Size() const { return entries.size(); }

    /// Takes a point out, given by its index among the points. Only before the first look-up.
    void Exclude(std::size_t point);

    /// Sorts what is not sorted yet; from then on the points are not read any more.
    void SortAll() { SortUpTo(entries.size() - 1); }

    /// Index, among the points, of the point at a place of the order.
    std::size_t Point(std::size_t place) {
        SortUpTo(place);
        return static_cast<std::size_t>(entries[place] & 0xffffffffu);
    }

    /// Squared distance of the point at a place of the order.
    float Distance(std::size_t place);

private:
    void SortUpTo(std::size_t place) {
        if (place >= sortedCount) {
            ExtendSorted(place);
        }
    }
    void ExtendSorted(std::size_t place);
    void SortRange(std::size_t begin, std::size_t end);
    void BreakTies(std::size_t begin, std::size_t end);
    void RadixSort();

    const std::vector<DelaunayPoint>& points;
    /// Distance bits above the point's index. A float that is not negative orders as its bits do.
    std::vector<std::uint64_t> entries;
    std::size_t sortedCount = 0;
};
