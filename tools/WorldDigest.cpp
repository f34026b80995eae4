#include "WorldDigest.h"

#include "ClusterBlock.h"
#include "gen/GEN_DungeonGenerator.h"
#include "gen/Random.h"

#include <array>
#include <bit>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

enum class Kind { Cluster, Neighbors, Dungeon };

struct Item {
    Kind kind = Kind::Cluster;
    Vec2i place; // coordinates of a cluster, of a block's middle cluster, of a cell
    std::int32_t neighborCount = 0; // of a dungeon's cell
};

// A generated record in figures for people, and its digest.
struct Summary {
    std::string figures;
    std::uint64_t digest = 0;
};

template <typename... Values>
std::string Line(const char* format, Values... values) {
    char text[200];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

Summary SummarizeCluster(Vec2i place) {
    ClusterRecord record;
    GenerateCluster(ClusterKey(place), record);
    std::size_t land = 0;
    for (const auto& [id, flag] : record.cells) {
        land += flag == 1 ? 1 : 0;
    }
    return {Line("%zu land", land), Digest().Add(record).Value()};
}

Summary SummarizeNeighbors(Vec2i place) {
    const CellNeighborMap neighbors = ClusterBlock(place).Neighbors();
    std::size_t links = 0;
    for (const auto& [cell, others] : neighbors) {
        links += others.size();
    }
    return {Line("%zu land, %zu links", neighbors.size(), links), Digest().Add(neighbors).Value()};
}

std::unique_ptr<DungeonRecord> MakeDungeon(Vec2i cell, std::size_t neighborCount) {
    auto record = std::make_unique<DungeonRecord>();
    GEN_DungeonGenerator().Generate(CellKey(cell), neighborCount, *record);
    return record;
}

Summary SummarizeDungeon(Vec2i cell, std::size_t neighborCount) {
    const auto record = MakeDungeon(cell, neighborCount);
    std::size_t enemies = 0;
    for (const DungeonRoom& room : record->rooms) {
        enemies += room.spawnPoints.size();
    }
    return {Line("%zu neighbours, %zu rooms, %zu main, %zu hallways, %zu enemies, %zu markers",
                 neighborCount, record->rooms.size(), record->mainRooms.size(),
                 record->hallways.size(), enemies, record->compassPoints.size()),
            Digest().Add(*record).Value()};
}

Summary Summarize(const Item& item) {
    switch (item.kind) {
    case Kind::Cluster:
        return SummarizeCluster(item.place);
    case Kind::Neighbors:
        return SummarizeNeighbors(item.place);
    default:
        return SummarizeDungeon(item.place, static_cast<std::size_t>(item.neighborCount));
    }
}

// A third near the start of the world, a third within it, a third anywhere in 32 bits, where ids
// wrap.
Vec2i DrawPlace(std::size_t index, Twister& rng) {
    const std::int32_t reach = index % 3 == 0 ? 20 : 2000;
    const bool anywhere = index % 3 == 2;
    const std::int32_t x =
        UniformInt(rng, anywhere ? kLowest : -reach, anywhere ? kHighest : reach);
    const std::int32_t y =
        UniformInt(rng, anywhere ? kLowest : -reach, anywhere ? kHighest : reach);
    return {x, y};
}

// The corners of the key space and both sides of the places where ids wrap; then so many drawn.
std::vector<Item> SampleOf(Kind kind, std::size_t drawn) {
    std::vector<Item> items;
    for (const std::int32_t x : {kLowest, -65536, -1, 0, 65535, 134217727, kHighest}) {
        for (const std::int32_t y : {kLowest, -2049, -1, 0, 1, 127, 2048, kHighest}) {
            items.push_back({kind, {x, y}, kind == Kind::Dungeon ? 3 : 0});
        }
    }
    Twister rng(static_cast<std::uint32_t>(kind));
    for (std::size_t i = 0; i < drawn; ++i) {
        const Vec2i place = DrawPlace(i, rng);
        items.push_back({kind, place, kind == Kind::Dungeon ? UniformInt(rng, 0, 9) : 0});
    }
    return items;
}

// Eight tiles a step, the first in the lowest byte whatever the machine's order of bytes.
template <std::size_t count>
void AddTiles(Digest& digest, const std::array<std::uint8_t, count>& tiles) {
    static_assert(count % 8 == 0);
    for (std::size_t i = 0; i < count; i += 8) {
        std::uint64_t word = 0;
        if constexpr (std::endian::native == std::endian::little) {
            std::memcpy(&word, tiles.data() + i, 8); // several times as fast
        } else {
            for (std::size_t k = 0; k < 8; ++k) {
                word |= std::uint64_t{tiles[i + k]} << (8 * k);
            }
        }
        digest.Add(word);
    }
}

} // namespace

void AddTo(Digest& digest, Vec2i v) {
    digest.Add(v.x, v.y);
}

void AddTo(Digest& digest, Vec2f v) {
    digest.Add(v.x, v.y);
}

void AddTo(Digest& digest, const GridKey& key) {
    digest.Add(key.x, key.y, key.id);
}

void AddTo(Digest& digest, const ClusterRecord& record) {
    digest.Add(record.key, record.cells);
}

void AddTo(Digest& digest, const DungeonEdge& edge) {
    digest.Add(edge.a, edge.b, edge.lengthSquared);
}

void AddTo(Digest& digest, const DungeonRoom& room) {
    digest.Add(room.x, room.y, room.w, room.h, room.center, room.minCorner, room.maxCorner,
               room.spawnPoints);
}

void AddTo(Digest& digest, const DungeonRecord& record) {
    digest.Add(record.rooms, record.edges, record.mainRooms, record.hallwayEdges, record.hallways,
               record.adjacency, record.compassPoints);
    AddTiles(digest, record.tiles);
}

std::uint64_t DungeonDigest(Vec2i cell, std::size_t neighborCount) {
    return Digest().Add(*MakeDungeon(cell, neighborCount)).Value();
}

std::string SampleDigests() {
    struct {
        Kind kind;
        std::size_t drawn;
        const char* name;
    } const parts[] = {{Kind::Cluster, 1944, "clusters"},
                       {Kind::Neighbors, 444, "neighbors"},
                       {Kind::Dungeon, 4944, "dungeons"}};
    std::string text;
    Digest whole;
    for (const auto& [kind, drawn, name] : parts) {
        const std::vector<Item> items = SampleOf(kind, drawn);
        Digest sum;
        for (const Item& item : items) {
            sum.Add(Summarize(item).digest);
        }
        text += Line("%zu %s %016" PRIx64 "\n", items.size(), name, sum.Value());
        whole.Add(sum.Value());
    }
    return text + Line("sample %016" PRIx64 "\n", whole.Value());
}

std::string GoldenDigests() {
    std::string text =
        "# Generated records: kind, coordinates, what there is of it, digest.\n"
        "# Written by: vesk_digest golden. A change means that existing worlds change.\n";
    const char* const names[] = {"cluster", "neighbors", "dungeon"};
    for (const Kind kind : {Kind::Cluster, Kind::Neighbors, Kind::Dungeon}) {
        for (const Item& item : SampleOf(kind, 144)) {
            const auto [figures, digest] = Summarize(item);
            text += Line("%s (%" PRId32 ",%" PRId32 ") ", names[static_cast<int>(kind)],
                         item.place.x, item.place.y) +
                    figures + Line("; %016" PRIx64 "\n", digest);
        }
    }
    return text;
}
