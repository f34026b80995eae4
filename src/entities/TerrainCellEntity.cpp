#include "entities/TerrainCellEntity.h"

#include "entities/CameraEntity.h"
#include "gfx/DrawColorScope.h"
#include "gfx/GFX_GraphicsManager.h"
#include "world/ASM_AssetManager.h"
#include "world/WorldManager.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr SDL_Color kRed{255, 0, 0, 255};
constexpr SDL_Color kYellow{255, 255, 0, 255};
constexpr SDL_Color kGreen{0, 255, 0, 255};

// Tile columns or rows from first to last, none when first exceeds last.
struct TileRange {
    std::int64_t first = 0;
    std::int64_t last = -1;
};

// The extent of the window at zoom 1 along one axis, in units of the cell: what is drawn is the
// same whatever the zoom. 64 bits, because the far edge of the outermost cell leaves 32.
struct Extent {
    std::int64_t low;
    std::int64_t high;

    Extent(std::int32_t origin, std::int32_t camera, std::int32_t half)
        : low(std::max<std::int64_t>(origin, std::int64_t{camera} - half) - origin),
          high(std::min<std::int64_t>(std::int64_t{origin} + kCellSize,
                                      std::int64_t{camera} + half) -
               origin) {}

    TileRange Tiles() const {
        if (low > kCellSize) {
            return {};
        }
        return {low / kTileSize, std::min<std::int64_t>(high / kTileSize, kCellTiles - 1)};
    }
};

// Places things of one cell, given in its tiles, in the window.
class CellProjection {
public:
    explicit CellProjection(const TerrainCellEntity::View& cell)
        : origin(cell.corners[0]), camera(*WorldManager::GetInstance()->camera),
          graphics(*GFX_GraphicsManager::GetInstance()) {}

    Vec2i Corner(Vec2i tile) const { return Point(origin + tile * kTileSize); }

    Vec2i Point(Vec2i world) const {
        return graphics.WorldToScreen(world, camera.position, camera.zoom);
    }

    Vec2i Size(std::int32_t w, std::int32_t h) const {
        return Vec2i{w, h} * kTileSize * camera.zoom;
    }

private:
    Vec2i origin;
    const CameraEntity& camera;
    const GFX_GraphicsManager& graphics;
};

void DrawLockedLine(Vec2i from, Vec2i to) {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    const MutexLock lock(graphics.renderLock);
    graphics.DrawScreenLine(from, to);
}

void OutlineLocked(Vec2i corner, Vec2i size) {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    const MutexLock lock(graphics.renderLock);
    graphics.OutlineScreenRect({corner.x, corner.y, size.x, size.y});
}

void RenderBorder(const TerrainCellEntity::View& cell, const CellProjection& place) {
    const DrawColorScope scope(GFX_GraphicsManager::GetInstance()->renderer, kRed);
    for (std::size_t i = 0; i < cell.corners.size(); ++i) {
        const std::size_t next = (i + 1) % cell.corners.size();
        DrawLockedLine(place.Point(cell.corners[i]), place.Point(cell.corners[next]));
    }
}

void RenderRooms(const DungeonRecord& dungeon, const CellProjection& place) {
    const DrawColorScope scope(GFX_GraphicsManager::GetInstance()->renderer, kYellow);
    for (const DungeonRoom& room : dungeon.rooms) {
        OutlineLocked(place.Corner({room.x, room.y}), place.Size(room.w, room.h));
    }
}

void RenderSpanningTree(const DungeonRecord& dungeon, const CellProjection& place) {
    const DrawColorScope scope(GFX_GraphicsManager::GetInstance()->renderer, kGreen);
    for (const DungeonEdge& edge : dungeon.hallwayEdges) {
        DrawLockedLine(place.Corner(dungeon.rooms[static_cast<std::size_t>(edge.a)].center),
                       place.Corner(dungeon.rooms[static_cast<std::size_t>(edge.b)].center));
    }
}

void RenderHallways(const DungeonRecord& dungeon, const CellProjection& place) {
    const DrawColorScope scope(GFX_GraphicsManager::GetInstance()->renderer, kRed);
    for (const DungeonRoom& hallway : dungeon.hallways) {
        OutlineLocked(place.Corner(hallway.minCorner + Vec2i{0, hallway.h}),
                      place.Size(hallway.w, hallway.h));
    }
}

} // namespace

bool TerrainCellEntity::Init() {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    tileSprites[kTileEmpty] = graphics.CreateSprite("image.png", 100, 0, 16, 16);
    tileSprites[kTileHallway] = graphics.CreateSprite("image.png", 100, 100, 16, 16);
    tileSprites[kTileRoom] = graphics.CreateSprite("terrain_transition.png", 48, 64, 16, 16);
    return true;
}

bool TerrainCellEntity::Setup(const GridKey& key, std::uint32_t occupied,
                              const std::vector<GridKey>& cellNeighbors,
                              const DungeonRecord* dungeon) {
    const Vec2i origin = CellOrigin({key.x, key.y});
    const MutexLock lock(recordLock);
    // Under the lock, so that no reader is left with a record that has gone back to its pool.
    if (view.dungeon != nullptr) {
        ASM_AssetManager::GetInstance()->ReleaseDungeon(view.key.id);
    }
    view = {key,
            occupied,
            {origin, origin + Vec2i{0, kCellSize}, origin + Vec2i{kCellSize, kCellSize},
             origin + Vec2i{kCellSize, 0}},
            dungeon};
    neighbors = cellNeighbors;
    return true;
}

TerrainCellEntity::View TerrainCellEntity::GetView() const {
    const MutexLock lock(recordLock);
    return view;
}

std::vector<GridKey> TerrainCellEntity::GetNeighbors() const {
    const MutexLock lock(recordLock);
    return neighbors;
}

std::uint8_t TerrainCellEntity::TileAt(Vec2i world) const {
    const MutexLock lock(recordLock);
    const Vec2i tile = (world - view.corners[0]) / kTileSize;
    if (view.dungeon == nullptr || tile.x < 0 || tile.x >= kCellTiles || tile.y < 0 ||
        tile.y >= kCellTiles) {
        return kTileEmpty;
    }
    return view.dungeon->TileAt(tile.x, tile.y);
}

void TerrainCellEntity::Render() {
    const View cell = GetView();
    RenderTiles(cell);
    RenderOverlays(cell);
}

void TerrainCellEntity::RenderTiles(const View& cell) const {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    const CameraEntity& camera = *WorldManager::GetInstance()->camera;
    const Vec2i origin = cell.corners[0];
    const Extent horizontal(origin.x, camera.position.x, graphics.screenCenter.x);
    const Extent vertical(origin.y, camera.position.y, graphics.screenCenter.y);
    if (horizontal.high < 0) {
        return;
    }
    const TileRange columns = horizontal.Tiles();
    const TileRange rows = vertical.Tiles();
    for (auto y = static_cast<std::int32_t>(rows.first); y <= rows.last; ++y) {
        for (auto x = static_cast<std::int32_t>(columns.first); x <= columns.last; ++x) {
            const std::uint8_t tile =
                cell.dungeon == nullptr ? kTileEmpty : cell.dungeon->TileAt(x, y);
            const Vec2i center =
                origin + Vec2i{x, y} * kTileSize + Vec2i{kTileSize / 2, kTileSize / 2};
            graphics.DrawSpriteSized(tileSprites[tile], center, camera.position, camera.zoom,
                                     kTileSize);
        }
    }
}

void TerrainCellEntity::RenderOverlays(const View& cell) {
    const WorldManager& world = *WorldManager::GetInstance();
    const CellProjection place(cell);
    if (world.renderCellBorder) {
        RenderBorder(cell, place);
    }
    if (cell.dungeon == nullptr) {
        return;
    }
    if (world.renderDungeonRooms) {
        RenderRooms(*cell.dungeon, place);
    }
    if (world.renderMinSpanningTree) {
        RenderSpanningTree(*cell.dungeon, place);
    }
    if (world.renderHallways) {
        RenderHallways(*cell.dungeon, place);
    }
}
