// One number for a generated record, to compare worlds by.
//
// Two builds, machines or orders of generation make the same world when they make the same digests.
// The game itself has no use for them; the digest tool and the tests do. No state; any thread may
// call. The generators write their lines on standard error all the while.
#pragma once

#include "gen/Clusters.h"
#include "gen/DungeonRecord.h"
#include "gfx/Vec2.h"

#include <cstddef>
#include <cstdint>

/// Takes in numbers one after the other; their order matters.
class Digest {
public:
    void Add(std::int32_t number) { AddWord(static_cast<std::uint32_t>(number)); }
    void AddWord(std::uint64_t word) {
        value = (value ^ word) * 0x9e3779b97f4a7c15u;
        value ^= value >> 32;
    }
    std::uint64_t Value() const { return value; }

private:
    std::uint64_t value = 0xcbf29ce484222325u;
};

/// Digests of everything that the records hold.
std::uint64_t DigestOf(const ClusterRecord& record);
std::uint64_t DigestOf(const CellNeighborMap& neighbors);
std::uint64_t DigestOf(const DungeonRecord& record);

/// Generates the 3 x 3 block of clusters around the one with these cluster coordinates, which wrap,
/// and links its land cells.
CellNeighborMap NeighborsAround(Vec2i cluster);

/// The digests of what is generated for a cluster, for the block of clusters around one, and for a
/// cell with a number of neighbours. Coordinates are those of the grid, y up.
std::uint64_t ClusterDigest(Vec2i cluster);
std::uint64_t NeighborDigest(Vec2i cluster);
std::uint64_t DungeonDigest(Vec2i cell, std::size_t neighborCount);
