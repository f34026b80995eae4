// Links the land cells of a block of clusters by the edges of a triangulation. Keeps no state; runs
// on the main thread while the records cannot change, and writes only the map it is given.
#pragma once

#include <cstdint>

#include "gen/ClusterRecord.h"

/// Rebuilds `out` from the land cells of the records, taken in the order given. A record counts
/// when it is not null, has been generated and its key's id is not negative. A cell has an entry
/// when it is a corner of a triangle: the cells that an edge joins to it, each once, in order of
/// discovery. Fewer than three land cells, or cells on one line, give an empty map. Says on
/// standard error what `Triangulate` says.
void BuildNeighborGraph(const ClusterRecord* const* records, std::int32_t count,
                        CellNeighborMap& out);
