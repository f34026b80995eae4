// The 3 x 3 block of clusters around one, as the game has it while the player is in the middle one.
#pragma once

#include "gen/Clusters.h"
#include "gen/GridKey.h"
#include "gfx/Vec2.h"

#include <array>
#include <cstddef>
#include <cstdint>

struct ClusterBlock {
    std::array<ClusterRecord, 9> clusters;          ///< row by row, from the lowest
    std::array<const ClusterRecord*, 9> pointers{}; ///< to them, for BuildNeighborGraph

    /// Generates the clusters; the coordinates are the middle one's, in clusters, and wrap.
    explicit ClusterBlock(Vec2i middle) {
        for (std::int32_t i = 0; i < 9; ++i) {
            const auto index = static_cast<std::size_t>(i);
            GenerateCluster(ClusterKey(middle + Vec2i{i % 3 - 1, i / 3 - 1}), clusters[index]);
            pointers[index] = &clusters[index];
        }
    }
    ClusterBlock(const ClusterBlock&) = delete; // it points into itself
    ClusterBlock& operator=(const ClusterBlock&) = delete;

    /// The graph of the block's land cells.
    CellNeighborMap Neighbors() const {
        CellNeighborMap neighbors;
        BuildNeighborGraph(pointers.data(), 9, neighbors);
        return neighbors;
    }
};
