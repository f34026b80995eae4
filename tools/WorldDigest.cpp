#include "WorldDigest.h"

#include "gen/Clusters.h"
#include "gen/GEN_DungeonGenerator.h"

#include <array>
#include <bit>
#include <cstring>
#include <memory>

namespace {

void Add(Digest& digest, std::size_t size) {
    digest.AddWord(size);
}

void Add(Digest& digest, std::int32_t number) {
    digest.Add(number);
}

void Add(Digest& digest, Vec2i v) {
    digest.Add(v.x);
    digest.Add(v.y);
}

void Add(Digest& digest, const GridKey& key) {
    Add(digest, key.Coords());
    digest.Add(key.id);
}

void Add(Digest& digest, const DungeonEdge& edge) {
    for (const std::int32_t number : {edge.a, edge.b, edge.lengthSquared}) {
        digest.Add(number);
    }
}

void Add(Digest& digest, const DungeonRoom& room);

template <typename T>
void Add(Digest& digest, const std::vector<T>& list) {
    Add(digest, list.size());
    for (const T& item : list) {
        Add(digest, item);
    }
}

void Add(Digest& digest, const DungeonRoom& room) {
    for (const std::int32_t number : {room.x, room.y, room.w, room.h}) {
        digest.Add(number);
    }
    for (const Vec2i place : {room.center, room.minCorner, room.maxCorner}) {
        Add(digest, place);
    }
    Add(digest, room.spawnPoints);
}

// Eight tiles per step, the first in the lowest byte whatever the machine's order of bytes.
template <std::size_t count>
void AddTiles(Digest& digest, const std::array<std::uint8_t, count>& tiles) {
    static_assert(count % 8 == 0);
    for (std::size_t i = 0; i < count; i += 8) {
        std::uint64_t word = 0;
        if constexpr (std::endian::native == std::endian::little) {
            std::memcpy(&word, tiles.data() + i, 8);
        } else {
            for (std::size_t k = 0; k < 8; ++k) {
                word |= static_cast<std::uint64_t>(tiles[i + k]) << (8 * k);
            }
        }
        digest.AddWord(word);
    }
}

} // namespace

std::uint64_t DigestOf(const ClusterRecord& record) {
    Digest digest;
    Add(digest, record.key);
    Add(digest, record.cells.size());
    for (const auto& [id, flag] : record.cells) {
        digest.Add(id);
        digest.Add(flag);
    }
    return digest.Value();
}

std::uint64_t DigestOf(const CellNeighborMap& neighbors) {
    Digest digest;
    Add(digest, neighbors.size());
    for (const auto& [cell, list] : neighbors) {
        Add(digest, cell);
        Add(digest, list);
    }
    return digest.Value();
}

std::uint64_t DigestOf(const DungeonRecord& record) {
    Digest digest;
    Add(digest, record.rooms);
    Add(digest, record.edges);
    Add(digest, record.mainRooms);
    Add(digest, record.hallwayEdges);
    Add(digest, record.hallways);
    Add(digest, record.adjacency.size());
    for (const auto& [room, list] : record.adjacency) {
        digest.AddWord(room);
        Add(digest, list);
    }
    Add(digest, record.compassPoints);
    AddTiles(digest, record.tiles);
    return digest.Value();
}

CellNeighborMap NeighborsAround(Vec2i cluster) {
    std::array<ClusterRecord, 9> records;
    std::array<const ClusterRecord*, 9> pointers{};
    for (std::int32_t i = 0; i < 9; ++i) {
        const Vec2i offset = {i % 3 - 1, i / 3 - 1};
        ClusterRecord& record = records[static_cast<std::size_t>(i)];
        GenerateCluster(ClusterKey(cluster + offset), record);
        pointers[static_cast<std::size_t>(i)] = &record;
    }
    CellNeighborMap neighbors;
    BuildNeighborGraph(pointers.data(), 9, neighbors);
    return neighbors;
}

std::uint64_t ClusterDigest(Vec2i cluster) {
    ClusterRecord record;
    GenerateCluster(ClusterKey(cluster), record);
    return DigestOf(record);
}

std::uint64_t NeighborDigest(Vec2i cluster) {
    return DigestOf(NeighborsAround(cluster));
}

std::uint64_t DungeonDigest(Vec2i cell, std::size_t neighborCount) {
    const auto record = std::make_unique<DungeonRecord>();
    GEN_DungeonGenerator().Generate(CellKey(cell), neighborCount, *record);
    return DigestOf(*record);
}
