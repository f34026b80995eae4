// A land cell's generated content: rooms, hallways, tiles, enemy and compass points.
//
// Plain data in tile units (x right, y up, the cell's lower left tile is (0, 0)). The world data
// store owns every record; the generator rewrites one completely.
#pragma once

#include "gen/GridKey.h"
#include "gfx/Vec2.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

struct DungeonRoom {
    std::int32_t x = 0; ///< left edge
    std::int32_t y = 0; ///< upper edge: the room covers the tile rows y - h to y - 1
    std::int32_t w = 0;
    std::int32_t h = 0;
    Vec2i center;
    Vec2i minCorner;
    Vec2i maxCorner;
    std::vector<Vec2i> spawnPoints; ///< enemies, main rooms only
};

struct DungeonEdge {
    std::int32_t a = 0;             ///< room id
    std::int32_t b = 0;             ///< room id
    std::int32_t lengthSquared = 0; ///< between the room centres, in tiles

    bool operator==(const DungeonEdge&) const = default;
};

/// Tile values.
inline constexpr std::uint8_t kTileEmpty = 0;
inline constexpr std::uint8_t kTileHallway = 1;
inline constexpr std::uint8_t kTileRoom = 2;

struct DungeonRecord {
    std::vector<DungeonRoom> rooms; ///< every placed room; a room's id is its index
    std::vector<DungeonEdge> edges; ///< three per triangle over the main rooms' centres
    std::vector<std::int32_t> mainRooms;
    std::vector<DungeonEdge> hallwayEdges; ///< the spanning tree, then the extra edges
    std::vector<DungeonRoom> hallways;     ///< only w, h and the corners are set
    std::map<std::uint32_t, std::vector<std::int32_t>> adjacency;
    std::vector<Vec2i> compassPoints;
    std::array<std::uint8_t, std::size_t{kCellTiles} * kCellTiles> tiles{}; ///< row-major

    /// The room with this id, which must be one of `rooms`.
    DungeonRoom& Room(std::int32_t id) { return rooms[static_cast<std::size_t>(id)]; }
    const DungeonRoom& Room(std::int32_t id) const { return rooms[static_cast<std::size_t>(id)]; }

    /// The value of the tile in column x and row y, both 0 to 511.
    std::uint8_t TileAt(std::int32_t x, std::int32_t y) const {
        return tiles[static_cast<std::size_t>(y) * kCellTiles + static_cast<std::size_t>(x)];
    }
};
