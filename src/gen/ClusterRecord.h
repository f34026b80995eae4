// Which of a cluster's 16 x 16 cells hold land. Plain data: the world data store owns every record.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "gen/CellFlagMap.h"
#include "gen/GridKey.h"

struct ClusterRecord {
    CellFlagMap cells; ///< cell id -> 1 land, 0 sea; 256 once generated
    GridKey key;

    /// 1 when the cell with this id holds land; 0 for sea, and for a cell of another cluster.
    std::int32_t LandFlag(std::int32_t cellId) const {
        const auto cell = cells.find(cellId);
        return cell == cells.end() ? 0 : cell->second;
    }
};

/// Land cell -> the land cells that a triangle edge joins to it, in order of discovery.
using CellNeighborMap = std::map<GridKey, std::vector<GridKey>>;
