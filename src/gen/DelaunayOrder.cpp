#include "gen/DelaunayOrder.h"

#include <algorithm>
#include <array>
#include <bit>

namespace {

constexpr std::size_t kFirstPiece = 12;
constexpr std::size_t kRadixWorthwhile = 512;

std::uint64_t DistanceBits(std::uint64_t entry) {
    return entry >> 32;
}

} // namespace

DelaunayOrder::DelaunayOrder(const std::vector<DelaunayPoint>& thePoints, std::size_t count,
                             float x, float y)
    : points(thePoints), entries(count) {
    for (std::size_t i = 0; i < count; ++i) {
        const float dx = points[i].x - x;
        const float dy = points[i].y - y;
        const std::uint64_t bits = std::bit_cast<std::uint32_t>(dx * dx + dy * dy);
        entries[i] = bits << 32 | i;
    }
}

void DelaunayOrder::Exclude(std::size_t point) {
    // Before sorting the entries stand in the points' order, with earlier exclusions missing.
    std::size_t at = std::min(point, entries.size() - 1);
    while ((entries[at] & 0xffffffffu) != point) {
        --at;
    }
    entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(at));
}

float DelaunayOrder::Distance(std::size_t place) {
    SortUpTo(place);
    return std::bit_cast<float>(static_cast<std::uint32_t>(DistanceBits(entries[place])));
}

// The sorted part at least doubles, so that looking at every place costs no more than one sort.
void DelaunayOrder::ExtendSorted(std::size_t place) {
    const std::size_t wanted = std::max({kFirstPiece, 2 * sortedCount, place + 1});
    if (wanted >= entries.size()) {
        SortRange(sortedCount, entries.size());
        return;
    }
    const auto begin = entries.begin() + static_cast<std::ptrdiff_t>(sortedCount);
    const auto last = entries.begin() + static_cast<std::ptrdiff_t>(wanted - 1);
    std::nth_element(begin, last, entries.end());
    // Points as far away as the last one belong to the same piece, for ties are broken within it.
    const std::uint64_t bits = DistanceBits(*last);
    const auto end = std::partition(last + 1, entries.end(), [bits](std::uint64_t entry) {
        return DistanceBits(entry) == bits;
    });
    SortRange(sortedCount, static_cast<std::size_t>(end - entries.begin()));
}

void DelaunayOrder::SortRange(std::size_t begin, std::size_t end) {
    if (begin == 0 && end == entries.size() && end >= kRadixWorthwhile) {
        RadixSort();
    } else {
        std::sort(entries.begin() + static_cast<std::ptrdiff_t>(begin),
                  entries.begin() + static_cast<std::ptrdiff_t>(end));
    }
    BreakTies(begin, end);
    sortedCount = end;
}

// Equal points stay in their order so far, which their entries carry.
void DelaunayOrder::BreakTies(std::size_t begin, std::size_t end) {
    const auto before = [this](std::uint64_t a, std::uint64_t b) {
        const DelaunayPoint& p = points[static_cast<std::size_t>(a & 0xffffffffu)];
        const DelaunayPoint& q = points[static_cast<std::size_t>(b & 0xffffffffu)];
        return p.x != q.x ? p.x < q.x : (p.y != q.y ? p.y < q.y : a < b);
    };
    for (std::size_t i = begin; i + 1 < end;) {
        std::size_t runEnd = i + 1;
        while (runEnd < end && DistanceBits(entries[runEnd]) == DistanceBits(entries[i])) {
            ++runEnd;
        }
        if (runEnd - i > 1) {
            std::sort(entries.begin() + static_cast<std::ptrdiff_t>(i),
                      entries.begin() + static_cast<std::ptrdiff_t>(runEnd), before);
        }
        i = runEnd;
    }
}

// Three passes over 11, 11 and 10 bits of the distance; each keeps the order of the one before.
void DelaunayOrder::RadixSort() {
    constexpr std::size_t bucketBits = 11;
    constexpr std::size_t bucketCount = std::size_t{1} << bucketBits;
    constexpr std::array<unsigned, 3> shifts = {32, 32 + bucketBits, 32 + 2 * bucketBits};
    const auto bucketOf = [](std::uint64_t entry, unsigned shift) {
        return static_cast<std::size_t>(entry >> shift) & (bucketCount - 1);
    };
    std::array<std::array<std::uint32_t, bucketCount>, shifts.size()> starts{};
    for (const std::uint64_t entry : entries) {
        for (std::size_t pass = 0; pass < shifts.size(); ++pass) {
            ++starts[pass][bucketOf(entry, shifts[pass])];
        }
    }
    std::vector<std::uint64_t> other(entries.size());
    for (std::size_t pass = 0; pass < shifts.size(); ++pass) {
        std::uint32_t next = 0;
        for (std::uint32_t& start : starts[pass]) {
            const std::uint32_t size = start;
            start = next;
            next += size;
        }
        for (const std::uint64_t entry : entries) {
            other[starts[pass][bucketOf(entry, shifts[pass])]++] = entry;
        }
        entries.swap(other);
    }
}
