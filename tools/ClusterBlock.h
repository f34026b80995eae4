// The 3 x 3 block of clusters around one: what the game knows while the player is in the middle
// one.
#pragma once

#include "gen/Clusters.h"
#include "gen/GridKey.h"
#include "gfx/Vec2.h"

#include <array>
#include <cstddef>
#include <cstdint>

/// The cluster with this number, 0 to 8, in the block around a middle one, row by row from the
/// lowest.
inline Vec2i ClusterInBlock(Vec2i middle, std::int32_t number) {
    return middle + Vec2i{number % 3 - 1, number / 3 - 1};
}

struct ClusterBlock {
    std::array<ClusterRecord, 9> clusters; ///< row by row, from the lowest

    /// Generates the clusters; the coordinates are the middle one's, in clusters, and wrap.
    explicit ClusterBlock(Vec2i middle) {
        for (std::int32_t i = 0; i < 9; ++i) {
            GenerateCluster(ClusterKey(ClusterInBlock(middle, i)),
                            clusters[static_cast<std::size_t>(i)]);
        }
    }

    /// Where the clusters are, for BuildNeighborGraph.
    std::array<const ClusterRecord*, 9> Pointers() const {
        std::array<const ClusterRecord*, 9> pointers{};
        for (std::size_t i = 0; i < 9; ++i) {
            pointers[i] = &clusters[i];
        }
        return pointers;
    }

    /// The graph of the block's land cells.
    CellNeighborMap Neighbors() const {
        CellNeighborMap neighbors;
        BuildNeighborGraph(Pointers().data(), 9, neighbors);
        return neighbors;
    }
};
