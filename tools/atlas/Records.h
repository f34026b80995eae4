// What the pictures and the data files show: the generator's records, taken as the game takes them.
#pragma once

#include "ClusterBlock.h"
#include "gen/Clusters.h"
#include "gen/DungeonRecord.h"
#include "gen/GridKey.h"
#include "gfx/Vec2.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

/// A player comes to no cell or cluster with a higher coordinate, nor to one with a negative one.
inline constexpr std::int32_t kLastCell = std::numeric_limits<std::int32_t>::max() / kCellSize;
inline constexpr std::int32_t kLastCluster = kLastCell / kClusterCells;

/// Whether a player can come to the cell with these cell coordinates.
constexpr bool IsInWorld(Vec2i cell) {
    return cell.x >= 0 && cell.x <= kLastCell && cell.y >= 0 && cell.y <= kLastCell;
}

/// Whether a line of the graph is drawn: beyond the world it has cells, too, but none is seen.
constexpr bool IsLinkSeen(Vec2i from, Vec2i to) {
    return IsInWorld(from) && IsInWorld(to);
}

/// The upper right one of a cluster's cells, of those that lie in the world. The cluster, which
/// does, comes in cluster coordinates.
constexpr Vec2i LastCellOf(Vec2i cluster) {
    const Vec2i last = cluster * kClusterCells + Vec2i{kClusterCells - 1, kClusterCells - 1};
    return {last.x < kLastCell ? last.x : kLastCell, last.y < kLastCell ? last.y : kLastCell};
}

/// The coordinates of the cell with this id that is nearest to a cell; up to half a million columns
/// and two thousand rows away. Ids of northern cells wrap, their differences do not.
Vec2i CellOfId(std::int32_t id, Vec2i near);

/// The 3 x 3 block of clusters around one, with the neighbour graph of its land cells: what the
/// game knows while the player is in the middle cluster.
class Block {
public:
    /// The coordinates are the middle cluster's.
    explicit Block(Vec2i cluster);

    /// The cells that the graph joins to a cell.
    std::vector<GridKey> NeighborsOf(const GridKey& cell) const;
    /// Whether a cell of the block holds land; false for any other.
    bool IsLand(const GridKey& cell) const;

private:
    ClusterBlock block;
    CellNeighborMap neighbors;
};

/// Whether a part of a hallway covers any tile.
inline bool CoversTiles(const DungeonRoom& hallway) {
    return hallway.w > 0 && hallway.h > 0;
}

struct Cell {
    GridKey key;
    std::vector<GridKey> neighbors;
    std::unique_ptr<DungeonRecord> dungeon; ///< null for a cell without land
};

/// The cell with these cell coordinates as it is while the player is in the block's middle cluster.
Cell GenerateCell(Vec2i coordinates, const Block& block);
