// The store of generated world data: clusters, dungeons and the neighbour map of land cells.
//
// Owns every record. Callers hold plain pointers while they hold a reference, and only read; a
// record whose last reference goes returns to its pool and is generated anew for the next key. Any
// thread may acquire and release. Each table has a lock of its own, held for moments only, never
// while a record is generated.
#pragma once

#include "app/CMN_Singleton.h"
#include "common/Mutex.h"
#include "gen/Clusters.h"
#include "gen/DungeonRecord.h"
#include "gen/GridKey.h"
#include "world/RecordTable.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class ASM_AssetManager : public CMN_Singleton<ASM_AssetManager> {
public:
    /// Fills the pools. Main thread, once. Always true.
    bool Init();

    /// A reference to the cluster's record, generated when it is not in use. Never null.
    ClusterRecord* AcquireCluster(const GridKey& key);

    /// Gives a reference back; nothing happens when none is held.
    void ReleaseCluster(const GridKey& key) { clusters.Release(key.id); }

    /// Whether a cell (cell coordinates) of a cluster in use holds land. Main thread.
    bool IsLand(Vec2i cell) const;

    /// A reference to the land cell's dungeon, generated when it is not in use, with compass points
    /// for this many neighbours. Never null.
    DungeonRecord* AcquireDungeon(const GridKey& cellKey, std::size_t neighborCount);

    /// The same for as many neighbours as the neighbour map gives the cell now.
    DungeonRecord* AcquireDungeon(const GridKey& cellKey);

    /// Gives a reference back, whatever the number of neighbours; nothing happens when none is
    /// held.
    void ReleaseDungeon(std::int32_t cellId) { dungeons.Release(cellId); }

    /// Links the land cells of these clusters anew, taken in the order given. Main thread.
    void RebuildNeighbors(const ClusterRecord* const* records, std::int32_t count)
        VESK_EXCLUDES(neighborLock);

    /// A copy of a land cell's neighbour list, empty when it has none. Any thread.
    std::vector<GridKey> GetNeighbors(const GridKey& cellKey) const VESK_EXCLUDES(neighborLock);

    /// Lists the records in use in the window, a line per id. Main thread.
    void DrawLoadedAssets() const;

    std::int32_t dungeonPoolSize = 12;   ///< records that Init makes
    RecordTable<DungeonRecord> dungeons; ///< by cell
    std::int32_t clusterPoolSize = 18;   ///< likewise
    /// By cluster id; the number of neighbours is 0. Only the main thread acquires and releases
    /// clusters, so a pointer from Find is valid there until its next ReleaseCluster.
    RecordTable<ClusterRecord> clusters;
    mutable Mutex neighborLock;
    CellNeighborMap neighbors VESK_GUARDED_BY(neighborLock);
};
