// Keys of the world's two grids: terrain cells and clusters of cells.
//
// A key's id is computed in wrapping 32-bit arithmetic; every table orders by the id alone.
// Coordinates come from world positions by division that truncates toward zero, so the cells on
// either side of an axis share coordinate 0. Free of SDL; any thread may call.
#pragma once

#include "common/Arithmetic.h"
#include "gfx/Vec2.h"

#include <cstdint>

inline constexpr std::int32_t kTileSize = 24;                     // world units
inline constexpr std::int32_t kCellTiles = 512;                   // tiles along a cell's side
inline constexpr std::int32_t kCellSize = kTileSize * kCellTiles; // world units
inline constexpr std::int32_t kClusterCells = 16;                 // cells along a cluster's side

inline constexpr std::int32_t kCellIdFactor = 1048560; // 16 * 65535
inline constexpr std::int32_t kClusterIdFactor = 65535;
inline constexpr std::int32_t kUnsetId = -666;

struct GridKey {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t id = kUnsetId;

    /// x and y, in cells or clusters (y up).
    constexpr Vec2i Coords() const { return {x, y}; }

    friend constexpr bool operator<(const GridKey& a, const GridKey& b) { return a.id < b.id; }
};

/// The key of the cell with these cell coordinates.
constexpr GridKey CellKey(Vec2i cell) {
    return {cell.x, cell.y, WrapAdd(WrapMul(cell.y, kCellIdFactor), cell.x)};
}

/// The key of the cluster with these cluster coordinates.
constexpr GridKey ClusterKey(Vec2i cluster) {
    return {cluster.x, cluster.y, WrapAdd(WrapMul(cluster.y, kClusterIdFactor), cluster.x)};
}

/// The key of the cell that holds a world position (world units, y up).
constexpr GridKey CellKeyAt(Vec2i world) {
    return CellKey(world / kCellSize);
}

/// The key of the cluster that holds the cell with these cell coordinates.
constexpr GridKey ClusterKeyOfCell(Vec2i cell) {
    return ClusterKey(cell / kClusterCells);
}

/// Cell coordinates from a cell id. Not the inverse of CellKey where x leaves the packing range.
constexpr Vec2i DecodeCellId(std::int32_t id) {
    const std::int32_t y = id / kCellIdFactor;
    return {id - y * kCellIdFactor, y};
}

/// Cluster coordinates from a cluster id, with the same limit.
constexpr Vec2i DecodeClusterId(std::int32_t id) {
    const std::int32_t y = id / kClusterIdFactor;
    return {id - y * kClusterIdFactor, y};
}

/// World position of a cell's lower left corner (world units, y up, wrapping).
constexpr Vec2i CellOrigin(Vec2i cell) {
    return cell * kCellSize;
}
