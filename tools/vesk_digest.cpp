// Prints digests of the generated world, to compare builds, compilers and machines by.
//
//   vesk_digest clusters X0 Y0 X1 Y1       the clusters from (X0, Y0) to (X1, Y1), both included
//   vesk_digest neighbors X0 Y0 X1 Y1      the neighbour maps of the 3 x 3 blocks around them
//   vesk_digest dungeons X0 Y0 X1 Y1 [N]   the dungeons of these cells, with N neighbours (0)
//   vesk_digest sample                     a wide sample of all three, wrapping keys included
//   vesk_digest golden                     a smaller sample, one line per record, for the tests
//
// A range gets a line with the number of records and one digest; with --each as the last word, a
// line for each record before it. Coordinates are those of clusters or cells, from -2^31 to
// 2^31 - 1. What the generator says on standard error is dropped.
#include "WorldDigest.h"
#include "gen/Random.h"
#include "gfx/Vec2.h"

#include <charconv>
#include <cinttypes>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <limits>
#include <optional>
#include <random>
#include <span>
#include <string_view>
#include <vector>

namespace {

enum class Kind { Cluster, Neighbors, Dungeon };

struct Item {
    Kind kind = Kind::Cluster;
    Vec2i place;
    std::int32_t neighborCount = 0;
};

struct Range {
    Kind kind = Kind::Cluster;
    Vec2i first;
    Vec2i last;
    std::int32_t neighborCount = 0;
};

std::uint64_t DigestOfItem(const Item& item) {
    switch (item.kind) {
    case Kind::Cluster:
        return ClusterDigest(item.place);
    case Kind::Neighbors:
        return NeighborDigest(item.place);
    default:
        return DungeonDigest(item.place, static_cast<std::size_t>(item.neighborCount));
    }
}

void PrintItem(const Item& item, std::uint64_t digest) {
    const char* const names[] = {"cluster", "neighbors", "dungeon"};
    std::printf("%s %" PRId32 " %" PRId32 " %" PRId32 " %016" PRIx64 "\n",
                names[static_cast<int>(item.kind)], item.place.x, item.place.y, item.neighborCount,
                digest);
}

// Adds an item to a digest of many and prints it when each is asked for.
void Take(const Item& item, bool each, Digest& sum) {
    const std::uint64_t digest = DigestOfItem(item);
    sum.AddWord(digest);
    if (each) {
        PrintItem(item, digest);
    }
}

void PrintRange(const Range& range, bool each) {
    Digest sum;
    std::uint64_t count = 0;
    for (std::int64_t y = range.first.y; y <= range.last.y; ++y) {
        for (std::int64_t x = range.first.x; x <= range.last.x; ++x) {
            const Vec2i place = {static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)};
            Take({range.kind, place, range.neighborCount}, each, sum);
            ++count;
        }
    }
    std::printf("%" PRIu64 " records %016" PRIx64 "\n", count, sum.Value());
}

// A third near the start of the world, a third within it, a third anywhere in 32 bits, where ids
// wrap.
Vec2i DrawPlace(std::size_t index, std::mt19937& rng) {
    constexpr std::int32_t low = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t high = std::numeric_limits<std::int32_t>::max();
    const std::int32_t reach = index % 3 == 0 ? 20 : 2000;
    const bool anywhere = index % 3 == 2;
    const std::int32_t x = UniformInt(rng, anywhere ? low : -reach, anywhere ? high : reach);
    const std::int32_t y = UniformInt(rng, anywhere ? low : -reach, anywhere ? high : reach);
    return {x, y};
}

std::vector<Item> DrawItems(Kind kind, std::size_t count) {
    std::mt19937 rng(static_cast<std::uint32_t>(kind));
    std::vector<Item> items;
    for (std::size_t i = 0; i < count; ++i) {
        const Vec2i place = DrawPlace(i, rng);
        items.push_back({kind, place, kind == Kind::Dungeon ? UniformInt(rng, 0, 9) : 0});
    }
    return items;
}

// The corners of the key space, and both sides of the places where ids wrap.
std::vector<Item> EdgeItems(Kind kind) {
    std::vector<Item> items;
    for (const std::int32_t x : {std::numeric_limits<std::int32_t>::min(), -65536, -1, 0, 65535,
                                 134217727, std::numeric_limits<std::int32_t>::max()}) {
        for (const std::int32_t y : {std::numeric_limits<std::int32_t>::min(), -2049, -1, 0, 1, 127,
                                     2048, std::numeric_limits<std::int32_t>::max()}) {
            items.push_back({kind, {x, y}, kind == Kind::Dungeon ? 3 : 0});
        }
    }
    return items;
}

void PrintSample() {
    struct {
        Kind kind;
        std::size_t count;
        const char* name;
    } const parts[] = {{Kind::Cluster, 2000, "clusters"},
                       {Kind::Neighbors, 500, "neighbors"},
                       {Kind::Dungeon, 5000, "dungeons"}};
    Digest whole;
    for (const auto& part : parts) {
        Digest sum;
        std::vector<Item> items = EdgeItems(part.kind);
        const std::vector<Item> drawn = DrawItems(part.kind, part.count - items.size());
        items.insert(items.end(), drawn.begin(), drawn.end());
        for (const Item& item : items) {
            Take(item, false, sum);
        }
        std::printf("%zu %s %016" PRIx64 "\n", items.size(), part.name, sum.Value());
        whole.AddWord(sum.Value());
    }
    std::printf("sample %016" PRIx64 "\n", whole.Value());
}

void PrintGolden() {
    std::puts("# Digests of generated records: kind, x, y, neighbours of a dungeon, digest.\n"
              "# Written by: vesk_digest golden. A change means that existing worlds change.");
    Digest unused;
    for (const Kind kind : {Kind::Cluster, Kind::Neighbors, Kind::Dungeon}) {
        for (const Item& item : EdgeItems(kind)) {
            Take(item, true, unused);
        }
        for (const Item& item : DrawItems(kind, 144)) {
            Take(item, true, unused);
        }
    }
}

std::optional<std::int32_t> ParseNumber(std::string_view word) {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    const bool whole = error == std::errc() && end == word.data() + word.size();
    return whole ? std::optional(number) : std::nullopt;
}

std::optional<Kind> ParseKind(std::string_view word) {
    if (word == "clusters") {
        return Kind::Cluster;
    }
    if (word == "neighbors") {
        return Kind::Neighbors;
    }
    return word == "dungeons" ? std::optional(Kind::Dungeon) : std::nullopt;
}

std::optional<Range> ParseRange(std::span<const std::string_view> words) {
    const std::optional<Kind> kind = words.empty() ? std::nullopt : ParseKind(words[0]);
    if (!kind) {
        return std::nullopt;
    }
    std::vector<std::int32_t> numbers;
    for (const std::string_view word : words.subspan(1)) {
        const std::optional<std::int32_t> number = ParseNumber(word);
        if (!number) {
            return std::nullopt;
        }
        numbers.push_back(*number);
    }
    const std::size_t most = *kind == Kind::Dungeon ? 5 : 4;
    if (numbers.size() < 4 || numbers.size() > most || (numbers.size() == 5 && numbers[4] < 0)) {
        return std::nullopt;
    }
    const std::int32_t neighborCount = numbers.size() == 5 ? numbers[4] : 0;
    return Range{*kind, {numbers[0], numbers[1]}, {numbers[2], numbers[3]}, neighborCount};
}

int Usage() {
    std::fputs("usage: vesk_digest clusters|neighbors X0 Y0 X1 Y1 [--each]\n"
               "       vesk_digest dungeons X0 Y0 X1 Y1 [NEIGHBORS] [--each]\n"
               "       vesk_digest sample|golden\n",
               stderr);
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    std::cerr.rdbuf(nullptr);
    std::vector<std::string_view> words(argv + 1, argv + argc);
    if (words.size() == 1 && words[0] == "sample") {
        PrintSample();
        return 0;
    }
    if (words.size() == 1 && words[0] == "golden") {
        PrintGolden();
        return 0;
    }
    const bool each = !words.empty() && words.back() == "--each";
    if (each) {
        words.pop_back();
    }
    const std::optional<Range> range = ParseRange(words);
    if (!range) {
        return Usage();
    }
    PrintRange(*range, each);
    return 0;
}
