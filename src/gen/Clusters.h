// Where land lies: the flags of a cluster's 16 x 16 cells, and the graph that links land cells.
//
// Free of SDL. Neither operation keeps state: any thread may call, with records and a map that no
// other thread uses. The world data store owns the records and the graph.
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

/// Overwrites the record with the land flags of the cluster: about 6 cells in 101 hold land. key.id
/// is the seed and alone decides the flags; key.x and key.y (cluster coordinates, y up) give the
/// cells their ids, which wrap.
void GenerateCluster(const GridKey& key, ClusterRecord& record);

/// Rebuilds `out` from the land cells of the records, taken in the order given; null records and
/// those with a negative id are skipped. Each cell that is a corner of a triangle gets an entry:
/// the cells that an edge joins to it, each once, in order of discovery. Fewer than three land
/// cells, or cells on one line, give an empty map. Writes the lines of `Triangulate` on standard
/// error.
void BuildNeighborGraph(const ClusterRecord* const* records, std::int32_t count,
                        CellNeighborMap& out);
