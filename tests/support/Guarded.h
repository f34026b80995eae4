// Copies of what the world's locks guard. Any thread.
#pragma once

#include "world/ASM_AssetManager.h"
#include "world/WorldManager.h"

#include <cstddef>

inline CellSlot SlotAt(std::size_t slot) {
    const CellGrid& grid = WorldManager::GetInstance()->cellGrid;
    const MutexLock lock(grid.slotLock);
    return grid.slots[slot];
}

template <typename Record>
std::size_t PoolSize(const RecordTable<Record>& table) {
    const MutexLock lock(table.lock);
    return table.free.size();
}
