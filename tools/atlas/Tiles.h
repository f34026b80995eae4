// The ocean as square pictures of 256 pixels a side, for maps that are dragged and zoomed.
//
// At zoom z a cell is 2^z pixels wide. Column 0 begins at the world's west edge and row 0 at its
// south edge, so rows go up, like the world's coordinates and unlike the pixels within a picture.
// Up to zoom 5 an island is a square; from zoom 6 on its rooms and hallways show, from zoom 9 on
// tile by tile. A picture depends on nothing but its place and the layers.
#pragma once

#include "atlas/CellView.h"
#include "atlas/Picture.h"
#include "atlas/Recent.h"
#include "gen/Clusters.h"
#include "gen/DungeonRecord.h"

#include <cstdint>
#include <memory>
#include <vector>

inline constexpr std::int32_t kPictureSide = 256; // pixels
inline constexpr std::int32_t kFirstZoom = 2;     // a cell is 4 pixels wide
inline constexpr std::int32_t kLastZoom = 13;     // a tile is 16 pixels wide

struct PicturePlace {
    std::int32_t zoom = 0;   ///< kFirstZoom to kLastZoom
    std::int32_t column = 0; ///< from 0, eastward
    std::int32_t row = 0;    ///< from 0, northward
};

/// Whether any of the picture lies in the world; the others are void.
bool HoldsWorld(const PicturePlace& place);

/// What is drawn beside islands and sea.
struct Layers {
    bool links = false;    ///< lines between neighbouring islands
    bool clusters = false; ///< the clusters' borders, shades and coordinates
    bool grid = false;     ///< the borders of cells, from zoom 5 on, and of tiles, from zoom 12 on
    bool names = false;    ///< the islands' cell coordinates, from zoom 6 on
    Overlays overlays;     ///< from zoom 6 on
};

/// An island, as the game has it for a player who is in the island's own cluster.
struct Island {
    Vec2i cell;
    std::vector<Vec2i> neighbors; ///< the cells of those in the world, in the graph's order
    std::size_t links = 0;        ///< how many cells the graph joins to it, in the world or not
};

/// Draws pictures, and keeps the last clusters and dungeons: at most some 25 MiB. One thread.
class TilePainter {
public:
    Picture Draw(const PicturePlace& place, const Layers& layers);

    /// The islands of a cluster, row by row from the south; none outside the world.
    const std::vector<Island>& IslandsOf(Vec2i cluster);
    /// The island in a cell, null for water. Valid until the next call.
    const Island* IslandAt(Vec2i cell);
    /// Its rooms, hallways and points. Valid until the next call.
    const DungeonRecord& DungeonOf(const Island& island);

private:
    std::vector<Island> MakeIslands(Vec2i cluster);

    Recent<ClusterRecord> land{2048}; // without the sea; a graph needs nine of them
    Recent<std::vector<Island>> clusters{2048};
    Recent<std::unique_ptr<DungeonRecord>> dungeons{64};
};
