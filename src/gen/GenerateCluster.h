// Decides which cells of a cluster hold land. Keeps no state; any thread may call for a record that
// no other thread can reach.
#pragma once

#include "gen/ClusterRecord.h"
#include "gen/GridKey.h"

/// Overwrites the record with the land flags of the cluster: about 6 cells in 101 hold land. The
/// flags follow from key.id alone (the seed); key.x and key.y, in cluster coordinates with y up,
/// give the cells their ids, which wrap.
void GenerateCluster(const GridKey& key, ClusterRecord& record);
