#include "world/CellGrid.h"

#include "common/CMN_TaskManager.h"
#include "entities/CompassEntity.h"
#include "entities/DumbEnemy.h"
#include "entities/TerrainCellEntity.h"
#include "world/ASM_AssetManager.h"
#include "world/WorldManager.h"

#include <algorithm>
#include <chrono>
#include <numeric>
#include <utility>

namespace {

// The centre of a tile of a dungeon (tile units) in the world.
Vec2i TileCenter(const GridKey& cell, Vec2i tile) {
    constexpr Vec2i half{kTileSize / 2, kTileSize / 2};
    return CellOrigin(cell.Coords()) + half + tile * kTileSize;
}

std::vector<std::unique_ptr<IEntity>> MakeEntities(const GridKey& cell,
                                                   const DungeonRecord& dungeon) {
    std::vector<std::unique_ptr<IEntity>> made;
    for (const std::int32_t room : dungeon.mainRooms) {
        for (const Vec2i& point : dungeon.Room(room).spawnPoints) {
            auto enemy = std::make_unique<DumbEnemy>();
            enemy->Init(TileCenter(cell, point));
            made.push_back(std::move(enemy));
        }
    }
    std::int32_t index = 0;
    for (const Vec2i& point : dungeon.compassPoints) {
        auto marker = std::make_unique<CompassEntity>();
        marker->Init(index, TileCenter(cell, point));
        made.push_back(std::move(marker));
        ++index;
    }
    return made;
}

} // namespace

TerrainCellEntity* CellGrid::GetEntity(std::size_t slot) const {
    const MutexLock lock(slotLock);
    return slots[slot].cellEntity;
}

TerrainCellEntity* CellGrid::FindLoaded(Vec2i cell) const {
    const MutexLock lock(slotLock);
    for (const CellSlot& slot : slots) {
        // A slot that is being re-targeted no longer counts as holding its former cell.
        if (slot.coords == cell && slot.cellEntity != nullptr && slot.cellEntity->active) {
            return slot.cellEntity;
        }
    }
    return nullptr;
}

void CellGrid::Update(Vec2i playerPosition) {
    const GridKey cell = CellKeyAt(playerPosition);
    const GridKey cluster = ClusterKeyOfCell(cell.Coords());
    if (!started || cluster.id != lastClusterKey.id) {
        AcquireClusters(cluster);
        lastClusterKey = cluster;
    }
    if (!started || cell.id != lastCellKey.id) {
        lastCellKey = cell;
        TargetCells(cell.Coords());
    }
    started = true;
}

void CellGrid::AcquireClusters(const GridKey& cluster) {
    ASM_AssetManager& store = *ASM_AssetManager::GetInstance();
    std::vector<GridKey> former;
    std::size_t entry = 0;
    for (std::int32_t dy = -1; dy <= 1; ++dy) {
        for (std::int32_t dx = -1; dx <= 1; ++dx) {
            if (clusters[entry] != nullptr) {
                former.push_back(clusters[entry]->key);
            }
            clusters[entry] = store.AcquireCluster(ClusterKey(cluster.Coords() + Vec2i{dx, dy}));
            ++entry;
        }
    }
    // Released after the new ones are held, so that a cluster in both blocks stays in use.
    for (const GridKey& key : former) {
        store.ReleaseCluster(key);
    }
    store.RebuildNeighbors(clusters.data(), static_cast<std::int32_t>(clusters.size()));
}

void CellGrid::TargetCells(Vec2i center) {
    std::vector<std::size_t> freeSlots(kSlotCount);
    std::iota(freeSlots.begin(), freeSlots.end(), 0);
    std::vector<Vec2i> cellsToLoad;
    for (std::int32_t dx = -1; dx <= 1; ++dx) {
        for (std::int32_t dy = -1; dy <= 1; ++dy) {
            const Vec2i wanted = center + Vec2i{dx, dy};
            const auto holder =
                std::find_if(freeSlots.begin(), freeSlots.end(),
                             [&](std::size_t slot) { return GetTarget(slot) == wanted; });
            if (holder != freeSlots.end()) {
                freeSlots.erase(holder);
            } else if (wanted.x >= 0 && wanted.y >= 0) {
                cellsToLoad.push_back(wanted);
            }
        }
    }
    for (std::size_t i = 0; i < cellsToLoad.size(); ++i) {
        RequestCell(freeSlots[i], CellKey(cellsToLoad[i]));
    }
}

Vec2i CellGrid::GetTarget(std::size_t slot) const {
    const MutexLock lock(slotLock);
    return slots[slot].target;
}

void CellGrid::RequestCell(std::size_t slot, const GridKey& cell) {
    CellRequest request;
    request.cell = cell;
    if (ASM_AssetManager::GetInstance()->IsLand(cell.Coords())) {
        request.land = 1;
        request.neighbors = ASM_AssetManager::GetInstance()->GetNeighbors(cell);
    }
    if (Retarget(slot, std::move(request))) {
        CMN_TaskManager::GetInstance()->AddTask([this, slot] { ServeRequests(slot); });
    }
}

bool CellGrid::Retarget(std::size_t slot, CellRequest request) {
    const MutexLock lock(slotLock);
    CellSlot& retargeted = slots[slot];
    retargeted.cellEntity->active = false;
    for (IEntity* entity : retargeted.spawned) {
        entity->active = false;
    }
    retargeted.target = request.cell.Coords();
    retargeted.pending = std::move(request);
    return !std::exchange(retargeted.busy, true);
}

void CellGrid::ServeRequests(std::size_t slot) {
    while (const std::optional<CellRequest> request = TakeRequest(slot)) {
        LoadCell(slot, *request);
    }
}

std::optional<CellRequest> CellGrid::TakeRequest(std::size_t slot) {
    const MutexLock lock(slotLock);
    CellSlot& served = slots[slot];
    if (!served.pending) {
        served.busy = false;
        settled.Broadcast();
    }
    return std::exchange(served.pending, std::nullopt);
}

void CellGrid::LoadCell(std::size_t slot, const CellRequest& request) {
    UnloadCell(slot);
    if (request.cell.x < 0 || request.cell.y < 0) {
        const MutexLock lock(slotLock);
        slots[slot].coords = {-1, -1};
        return;
    }
    ASM_AssetManager& store = *ASM_AssetManager::GetInstance();
    DungeonRecord* dungeon = nullptr;
    Spawned made;
    if (request.land == 1) {
        dungeon = store.AcquireDungeon(request.cell, request.neighbors.size());
        if (!IsOvertaken(slot)) { // else no entity would use the sprites, which are never freed
            made = MakeEntities(request.cell, *dungeon);
        }
    }
    if (!Commit(slot, request, dungeon, made)) {
        if (dungeon != nullptr) {
            store.ReleaseDungeon(request.cell.id);
        }
        return;
    }
    // No other job of this slot can queue their removal before this one has ended.
    for (std::unique_ptr<IEntity>& entity : made) {
        WorldManager::GetInstance()->QueueEntity(std::move(entity), kSpawnedLayer);
    }
}

void CellGrid::UnloadCell(std::size_t slot) {
    std::vector<IEntity*> former;
    {
        const MutexLock lock(slotLock);
        slots[slot].cellEntity->active = false;
        former.swap(slots[slot].spawned);
    }
    for (IEntity* entity : former) {
        WorldManager::GetInstance()->QueueCallback(
            [entity] { WorldManager::GetInstance()->RemoveEntity(entity); });
    }
}

bool CellGrid::IsOvertaken(std::size_t slot) const {
    const MutexLock lock(slotLock);
    return slots[slot].pending.has_value();
}

bool CellGrid::Commit(std::size_t slot, const CellRequest& request, DungeonRecord* dungeon,
                      const Spawned& made) {
    const MutexLock lock(slotLock);
    CellSlot& loaded = slots[slot];
    if (loaded.pending) {
        return false;
    }
    loaded.coords = request.cell.Coords();
    for (const std::unique_ptr<IEntity>& entity : made) {
        loaded.spawned.push_back(entity.get());
    }
    loaded.cellEntity->Setup(request.cell, static_cast<std::uint32_t>(request.land),
                             request.neighbors, dungeon);
    loaded.cellEntity->active = true;
    return true;
}

bool CellGrid::WaitForLoads(std::uint32_t milliseconds) {
    using Clock = std::chrono::steady_clock;
    using Milliseconds = std::chrono::milliseconds;
    const Clock::time_point deadline = Clock::now() + Milliseconds(milliseconds);
    const auto isBusy = [](const CellSlot& slot) { return slot.busy; };
    const MutexLock lock(slotLock);
    while (std::any_of(slots.begin(), slots.end(), isBusy)) {
        const auto left = std::chrono::duration_cast<Milliseconds>(deadline - Clock::now());
        if (left.count() <= 0) {
            return false;
        }
        settled.WaitFor(slotLock, static_cast<std::uint32_t>(left.count()));
    }
    return true;
}
