// Streams the 3 x 3 terrain cells and clusters around the player.
//
// Update runs on the main thread every tick; load jobs run on worker threads, at most one at a time
// per slot. A slot that is re-targeted while its job waits or runs only gets a newer request: a job
// that finds one pending gives up what it has made and serves that instead. The slot lock guards
// what jobs and the main thread share; it is held for moments, never while a dungeon is generated
// or anything is drawn. It comes before the entities' record locks and the store's locks.
#pragma once

#include "common/Mutex.h"
#include "gen/Clusters.h"
#include "gen/DungeonRecord.h"
#include "gen/GridKey.h"
#include "gfx/Vec2.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

class IEntity;
class TerrainCellEntity;

/// What a load job is asked to bring into a slot.
struct CellRequest {
    GridKey cell;
    std::int32_t land = 0;          ///< 1 land, 0 sea
    std::vector<GridKey> neighbors; ///< empty for sea
};

/// One of the streamed cells.
struct CellSlot {
    Vec2i coords{-1, -1};                    ///< the cell that is loaded; (-1, -1) for none
    TerrainCellEntity* cellEntity = nullptr; ///< owned by the world manager; set once
    std::vector<IEntity*> spawned;           ///< made for the loaded cell, in order; not owned here

    Vec2i target{-1, -1};               ///< the cell that is loaded or asked for last
    std::optional<CellRequest> pending; ///< asked for, and not taken up by a job yet
    bool busy = false;                  ///< a job for this slot is queued or running
};

class CellGrid {
public:
    static constexpr std::size_t kSlotCount = 9;

    /// Follows the player (world units, y up): acquires the clusters around it on a change of
    /// cluster, and asks for the cells that have come into reach on a change of cell. Main thread.
    void Update(Vec2i playerPosition) VESK_EXCLUDES(slotLock);

    /// Brings a cell into a slot in place of what it shows: the body of a load job. Gives up, with
    /// the slot left hidden, when another request comes in meanwhile. A cell with a negative
    /// coordinate empties the slot. Worker thread.
    void LoadCell(std::size_t slot, const CellRequest& request) VESK_EXCLUDES(slotLock);

    /// Hides what a slot shows and queues the removal of what was made for it. Worker thread.
    void UnloadCell(std::size_t slot) VESK_EXCLUDES(slotLock);

    /// The terrain entity of a slot. Any thread.
    TerrainCellEntity* GetEntity(std::size_t slot) const VESK_EXCLUDES(slotLock);

    /// The terrain entity that shows the cell with these coordinates; null while none does. Any
    /// thread.
    TerrainCellEntity* FindLoaded(Vec2i cell) const VESK_EXCLUDES(slotLock);

    /// Waits until no load is pending or running, at most so many milliseconds; false when one
    /// still is. The game never waits; tests and benchmarks need one place that knows when the
    /// world is at rest. Any thread but a worker.
    bool WaitForLoads(std::uint32_t milliseconds) VESK_EXCLUDES(slotLock);

    std::array<CellSlot, kSlotCount> slots VESK_GUARDED_BY(slotLock);
    std::array<ClusterRecord*, kSlotCount> clusters{}; ///< block order, row by row; main thread
    GridKey lastClusterKey; ///< where the player was at the last Update; main thread
    GridKey lastCellKey;    ///< likewise
    mutable Mutex slotLock;

private:
    using Spawned = std::vector<std::unique_ptr<IEntity>>;

    void AcquireClusters(const GridKey& cluster);
    void TargetCells(Vec2i center) VESK_EXCLUDES(slotLock);
    Vec2i GetTarget(std::size_t slot) const VESK_EXCLUDES(slotLock);
    void RequestCell(std::size_t slot, const GridKey& cell) VESK_EXCLUDES(slotLock);

    /// Leaves a request with the slot and hides what it shows; true when the slot has no job yet
    /// that would serve it.
    bool Retarget(std::size_t slot, CellRequest request) VESK_EXCLUDES(slotLock);

    // The parts of a load job, on a worker thread.
    void ServeRequests(std::size_t slot) VESK_EXCLUDES(slotLock);
    std::optional<CellRequest> TakeRequest(std::size_t slot) VESK_EXCLUDES(slotLock);
    bool IsOvertaken(std::size_t slot) const VESK_EXCLUDES(slotLock);

    /// Brings a loaded cell into its slot; false, with nothing changed, when the request has been
    /// overtaken.
    bool Commit(std::size_t slot, const CellRequest& request, DungeonRecord* dungeon,
                const Spawned& made) VESK_EXCLUDES(slotLock);

    bool started = false; ///< false until the first Update
    Condition settled;    ///< broadcast when a slot's job ends
};
