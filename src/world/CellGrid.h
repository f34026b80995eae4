// Streams the 3 x 3 terrain cells and clusters around the player.
//
// Update runs on the main thread every tick; load jobs run on worker threads, at most one at a time
// per slot. A slot that is re-targeted while its job waits or runs only gets a newer request: a job
// that finds itself overtaken gives up what it has made and serves the newest request instead. The
// slot lock guards what jobs and the main thread share; it is held for moments, never while a
// dungeon is generated or anything is drawn. It comes before the entities' record locks and the
// store's lock.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "common/Mutex.h"
#include "gen/ClusterRecord.h"
#include "gen/DungeonRecord.h"
#include "world/CellSlot.h"

class CellGrid {
public:
    static constexpr std::size_t kSlotCount = 9;

    /// Follows the player (world units, y up): acquires the clusters around it on a change of
    /// cluster, and asks for the cells that have come into reach on a change of cell. Main thread.
    void Update(Vec2i playerPosition) VESK_EXCLUDES(slotLock);

    /// Gives a slot its terrain entity. Main thread, before the first Update.
    void SetEntity(std::size_t slot, TerrainCellEntity* entity) VESK_EXCLUDES(slotLock);

    /// The terrain entity of a slot. Main thread.
    TerrainCellEntity* GetEntity(std::size_t slot) const VESK_EXCLUDES(slotLock);

    /// The terrain entity that shows the cell with these coordinates; null while none does. Any
    /// thread.
    TerrainCellEntity* FindLoaded(Vec2i cell) const VESK_EXCLUDES(slotLock);

    /// The nine cluster records held, in block order; null before the first Update. Main thread.
    const std::array<const ClusterRecord*, kSlotCount>& GetClusters() const { return clusters; }

    /// Waits until no load is pending or running, at most so many milliseconds; false when one
    /// still is. For tests and benchmarks; the game never waits. Any thread but a worker.
    bool WaitForLoads(std::uint32_t milliseconds) VESK_EXCLUDES(slotLock);

    /// A copy of a slot, for tests. Any thread.
    CellSlot GetSlot(std::size_t slot) const VESK_EXCLUDES(slotLock);

private:
    using Spawned = std::vector<std::unique_ptr<IEntity>>;

    void AcquireClusters(const GridKey& cluster);
    void TargetCells(Vec2i center) VESK_EXCLUDES(slotLock);
    Vec2i GetTarget(std::size_t slot) const VESK_EXCLUDES(slotLock);
    void RequestCell(std::size_t slot, const GridKey& cell) VESK_EXCLUDES(slotLock);
    std::int32_t LandFlag(const GridKey& cell) const;

    /// Makes this the slot's newest request and hides what it shows; true when the slot has no job
    /// yet that would serve it.
    bool Retarget(std::size_t slot, CellRequest request) VESK_EXCLUDES(slotLock);

    // The parts of a load job, on a worker thread.
    void ServeRequests(std::size_t slot) VESK_EXCLUDES(slotLock);
    std::optional<CellRequest> NextRequest(std::size_t slot) VESK_EXCLUDES(slotLock);
    void LoadCell(std::size_t slot, const CellRequest& request) VESK_EXCLUDES(slotLock);
    void UnloadCell(std::size_t slot) VESK_EXCLUDES(slotLock);
    bool IsNewest(std::size_t slot, const CellRequest& request) const VESK_EXCLUDES(slotLock);

    /// Brings a loaded cell into its slot; false, with nothing changed, when the request has been
    /// overtaken.
    bool Commit(std::size_t slot, const CellRequest& request, const DungeonRecord* dungeon,
                const Spawned& made) VESK_EXCLUDES(slotLock);

    std::array<const ClusterRecord*, kSlotCount> clusters{}; ///< block order, row by row
    GridKey lastClusterKey;
    GridKey lastCellKey;
    bool hasClusters = false;
    bool hasCells = false;

    mutable Mutex slotLock;
    Condition settled; ///< broadcast when a slot's job ends
    std::array<CellSlot, kSlotCount> slots VESK_GUARDED_BY(slotLock);
};
