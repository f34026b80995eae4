// Draws one terrain cell: its tiles and, when switched on, its border, rooms, spanning tree and
// hallways.
//
// The world manager owns nine for the whole run, one per streamed slot. Load jobs set an entity up
// for another cell while it is inactive; the record lock, held for moments only, guards what they
// change. An active entity is set up anew only after the main thread has deactivated it, so while
// it is drawn its dungeon stays valid without the lock.
#pragma once

#include "common/Mutex.h"
#include "gen/DungeonRecord.h"
#include "gen/GridKey.h"
#include "gfx/Sprite.h"
#include "world/IEntity.h"

#include <array>
#include <cstdint>
#include <vector>

class TerrainCellEntity : public IEntity {
public:
    /// What the entity shows, taken in one moment.
    struct View {
        GridKey key;                            ///< unset before the first Setup
        std::uint32_t occupied = 0;             ///< 1 when the cell holds land
        std::array<Vec2i, 4> corners{};         ///< world units: origin, up, up-right, right
        const DungeonRecord* dungeon = nullptr; ///< null for a cell without land; not owned
    };

    /// Cuts the tile sprites, which the graphics manager owns. Main thread. Always true.
    bool Init();

    /// Shows another cell: releases the dungeon of the cell shown before and takes over the
    /// caller's reference to this one. Any thread, while the entity is inactive. Always true.
    bool Setup(const GridKey& key, std::uint32_t occupied,
               const std::vector<GridKey>& cellNeighbors, const DungeonRecord* dungeon)
        VESK_EXCLUDES(recordLock);

    void Update() override {}
    void Render() override;

    /// Any thread. The dungeon stays valid for the caller only on the main thread and only while
    /// the entity is active.
    View GetView() const VESK_EXCLUDES(recordLock);

    /// A copy of the cell's neighbour list. Any thread.
    std::vector<GridKey> GetNeighbors() const VESK_EXCLUDES(recordLock);

    /// The tile under a world position, 0 outside the cell or without a dungeon. As division
    /// truncates, the first tiles also reach up to 23 units out of the cell. Any thread.
    std::uint8_t TileAt(Vec2i world) const VESK_EXCLUDES(recordLock);

    /// Calls `read(key, record)` under the record lock when the cell holds land, active or not. For
    /// copying what is needed, not for drawing. Any thread.
    template <typename Reader>
    void ReadDungeon(Reader read) const VESK_EXCLUDES(recordLock) {
        const MutexLock lock(recordLock);
        if (view.occupied == 1 && view.dungeon != nullptr) {
            read(view.key, *view.dungeon);
        }
    }

private:
    void RenderTiles(const View& shown) const;
    static void RenderOverlays(const View& shown);

    std::array<Sprite*, 3> tileSprites{}; ///< by tile value; not owned
    mutable Mutex recordLock;
    View view VESK_GUARDED_BY(recordLock);
    std::vector<GridKey> neighbors VESK_GUARDED_BY(recordLock);
};
