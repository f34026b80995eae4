#include "entities/TerrainCellEntity.h"

#include "entities/CameraEntity.h"
#include "gfx/Colors.h"
#include "gfx/GFX_GraphicsManager.h"
#include "world/ASM_AssetManager.h"
#include "world/WorldManager.h"

#include <algorithm>
#include <cstddef>

namespace {

// Tile columns or rows from first to last, none when first exceeds last.
struct TileRange {
    std::int64_t first = 0;
    std::int64_t last = -1;
};

// The extent of the window at zoom 1 along one axis, in units of the cell; the zoom does not change
// what is drawn. 64-bit: the far edge of the outermost cell does not fit 32 bits.
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

// Where things of one cell, given in its tiles, appear in the window.
class CellProjection {
public:
    explicit CellProjection(const TerrainCellEntity::View& shown)
        : origin(shown.corners[0]), camera(*WorldManager::GetInstance()->camera),
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

void DrawOverlayLine(Vec2i from, Vec2i to) {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    const MutexLock lock(graphics.renderLock);
    graphics.DrawScreenLine(from, to);
}

void DrawOverlayRect(Vec2i corner, Vec2i size) {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    const MutexLock lock(graphics.renderLock);
    graphics.OutlineScreenRect({corner.x, corner.y, size.x, size.y});
}

void RenderBorder(const TerrainCellEntity::View& shown, const CellProjection& projection) {
    const DrawColorScope scope(GFX_GraphicsManager::GetInstance()->renderer, kRed);
    for (std::size_t i = 0; i < shown.corners.size(); ++i) {
        const std::size_t next = (i + 1) % shown.corners.size();
        DrawOverlayLine(projection.Point(shown.corners[i]), projection.Point(shown.corners[next]));
    }
}

void RenderRooms(const DungeonRecord& dungeon, const CellProjection& projection) {
    const DrawColorScope scope(GFX_GraphicsManager::GetInstance()->renderer, kYellow);
    for (const DungeonRoom& room : dungeon.rooms) {
        DrawOverlayRect(projection.Corner({room.x, room.y}), projection.Size(room.w, room.h));
    }
}

void RenderSpanningTree(const DungeonRecord& dungeon, const CellProjection& projection) {
    const DrawColorScope scope(GFX_GraphicsManager::GetInstance()->renderer, kGreen);
    for (const DungeonEdge& edge : dungeon.hallwayEdges) {
        DrawOverlayLine(projection.Corner(dungeon.Room(edge.a).center),
                        projection.Corner(dungeon.Room(edge.b).center));
    }
}

void RenderHallways(const DungeonRecord& dungeon, const CellProjection& projection) {
    const DrawColorScope scope(GFX_GraphicsManager::GetInstance()->renderer, kRed);
    for (const DungeonRoom& hallway : dungeon.hallways) {
        DrawOverlayRect(projection.Corner(hallway.minCorner + Vec2i{0, hallway.h}),
                        projection.Size(hallway.w, hallway.h));
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
    const Vec2i origin = CellOrigin(key.Coords());
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
    const View shown = GetView();
    RenderTiles(shown);
    RenderOverlays(shown);
}

void TerrainCellEntity::RenderTiles(const View& shown) const {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    const CameraEntity& camera = *WorldManager::GetInstance()->camera;
    const Vec2i origin = shown.corners[0];
    const Extent horizontal(origin.x, camera.position.x, graphics.screenCenter.x);
    const Extent vertical(origin.y, camera.position.y, graphics.screenCenter.y);
    // No such test vertically: -23 / 24 truncates to row 0, which is drawn.
    if (horizontal.high < 0) {
        return;
    }
    const TileRange columns = horizontal.Tiles();
    const TileRange rows = vertical.Tiles();
    for (auto y = static_cast<std::int32_t>(rows.first); y <= rows.last; ++y) {
        for (auto x = static_cast<std::int32_t>(columns.first); x <= columns.last; ++x) {
            const std::uint8_t tile =
                shown.dungeon == nullptr ? kTileEmpty : shown.dungeon->TileAt(x, y);
            const Vec2i center =
                origin + Vec2i{x, y} * kTileSize + Vec2i{kTileSize / 2, kTileSize / 2};
            graphics.DrawSpriteSized(tileSprites[tile], center, camera.position, camera.zoom,
                                     kTileSize);
        }
    }
}

void TerrainCellEntity::RenderOverlays(const View& shown) {
    const WorldManager& world = *WorldManager::GetInstance();
    const CellProjection projection(shown);
    if (world.renderCellBorder) {
        RenderBorder(shown, projection);
    }
    if (shown.dungeon == nullptr) {
        return;
    }
    if (world.renderDungeonRooms) {
        RenderRooms(*shown.dungeon, projection);
    }
    if (world.renderMinSpanningTree) {
        RenderSpanningTree(*shown.dungeon, projection);
    }
    if (world.renderHallways) {
        RenderHallways(*shown.dungeon, projection);
    }
}
