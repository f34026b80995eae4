#include "atlas/Anchorage.h"

#include "gen/GridKey.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace {

class Water {
public:
    // No room and no hallway reaches the last row and column, so open water begins in their
    // corner.
    explicit Water(const DungeonRecord& theDungeon)
        : dungeon(theDungeon), open(dungeon.tiles.size(), false) {
        std::vector<Vec2i> reached;
        Reach({kCellTiles - 1, kCellTiles - 1}, reached);
        while (!reached.empty()) {
            const Vec2i tile = reached.back();
            reached.pop_back();
            for (const Vec2i step : {Vec2i{1, 0}, Vec2i{-1, 0}, Vec2i{0, 1}, Vec2i{0, -1}}) {
                Reach(tile + step, reached);
            }
        }
    }

    bool IsOpen(Vec2i tile) const { return IsInCell(tile) && open[IndexOf(tile)]; }

private:
    static bool IsInCell(Vec2i tile) {
        return tile.x >= 0 && tile.x < kCellTiles && tile.y >= 0 && tile.y < kCellTiles;
    }
    static std::size_t IndexOf(Vec2i tile) {
        return static_cast<std::size_t>(tile.y) * kCellTiles + static_cast<std::size_t>(tile.x);
    }

    void Reach(Vec2i tile, std::vector<Vec2i>& reached) {
        if (IsInCell(tile) && !IsOpen(tile) && dungeon.TileAt(tile.x, tile.y) == kTileEmpty) {
            open[IndexOf(tile)] = true;
            reached.push_back(tile);
        }
    }

    const DungeonRecord& dungeon;
    std::vector<bool> open;
};

bool IsReachable(std::int32_t cell, std::int32_t tile) {
    const std::int64_t edge = std::int64_t{cell} * kCellSize + (tile + 1) * kTileSize;
    return edge <= std::numeric_limits<std::int32_t>::max();
}

// Whether a tile shares an edge with a room: a corner alone is no shore to step on.
bool Touches(const DungeonRoom& room, Vec2i tile) {
    const bool besideColumns = tile.x >= room.minCorner.x && tile.x < room.maxCorner.x;
    const bool besideRows = tile.y >= room.minCorner.y && tile.y < room.maxCorner.y;
    return besideColumns != besideRows;
}

} // namespace

std::optional<Vec2i> AnchorageOf(Vec2i cell, const DungeonRecord& dungeon) {
    const Water water(dungeon);
    for (const std::int32_t id : dungeon.mainRooms) {
        const DungeonRoom& room = dungeon.Room(id);
        for (std::int32_t y = room.minCorner.y - 1; y <= room.maxCorner.y; ++y) {
            for (std::int32_t x = room.minCorner.x - 1; x <= room.maxCorner.x; ++x) {
                const bool reachable = IsReachable(cell.x, x) && IsReachable(cell.y, y);
                if (reachable && Touches(room, {x, y}) && water.IsOpen({x, y})) {
                    const Vec2i middle{kTileSize / 2, kTileSize / 2};
                    return CellOrigin(cell) + Vec2i{x, y} * kTileSize + middle;
                }
            }
        }
    }
    return std::nullopt;
}
