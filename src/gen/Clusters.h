// Where land lies: the flags of a cluster's 16 x 16 cells, and the graph that links land cells.
//
// Free of SDL. Neither operation keeps state. The world data store owns the records and the graph;
// any thread may call for records and maps that no other thread can reach.
#pragma once

#include "gen/GridKey.h"

#include <cstdint>
#include <map>
#include <vector>

struct ClusterRecord {
    std::map<std::int32_t, std::int32_t> cells; ///< cell id -> 1 land, 0 sea; 256 once generated
    GridKey key;

    /// 1 when the cell with this id holds land; 0 for sea, and for a cell of another cluster.
    std::int32_t LandFlag(std::int32_t cellId) const {
        const auto cell = cells.find(cellId);
        return cell == cells.end() ? 0 : cell->second;
    }
};

/// Land cell -> the land cells that a triangle edge joins to it, in order of discovery.
using CellNeighborMap = std::map<GridKey, std::vector<GridKey>>;

/// Overwrites the record with the land flags of the cluster: about 6 cells in 101 hold land. The
/// flags follow from key.id alone (the seed); key.x and key.y, in cluster coordinates with y up,
/// give the cells their ids, which wrap.
void GenerateCluster(const GridKey& key, ClusterRecord& record);

/// Rebuilds `out` from the land cells of the records, taken in the order given. A record counts
/// when it is not null, has been generated and its key's id is not negative. A cell has an entry
/// when it is a corner of a triangle: the cells that an edge joins to it, each once, in order of
/// discovery. Fewer than three land cells, or cells on one line, give an empty map. Says on
/// standard error what `Triangulate` says.
void BuildNeighborGraph(const ClusterRecord* const* records, std::int32_t count,
                        CellNeighborMap& out);
