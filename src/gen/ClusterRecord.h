// Which of a cluster's 16 x 16 cells hold land. Plain data: the world data store owns every record.
#pragma once

#include <map>
#include <vector>

#include "gen/CellFlagMap.h"
#include "gen/GridKey.h"

struct ClusterRecord {
    CellFlagMap cells; ///< cell id -> 1 land, 0 sea; 256 once generated
    GridKey key;
};

/// Land cell -> the land cells that a triangle edge joins to it, in order of discovery.
using CellNeighborMap = std::map<GridKey, std::vector<GridKey>>;
