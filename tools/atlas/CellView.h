// A cell's place in a picture: turns its tiles (y up) into pixels (y down).
#pragma once

#include "atlas/Picture.h"
#include "gen/DungeonRecord.h"
#include "gen/GridKey.h"

#include <vector>

/// What is drawn over the tiles of a cell.
struct Overlays {
    bool border = false;
    bool rooms = false;
    bool tree = false;
    bool hallways = false;
    bool spawns = false;
    bool compass = false;
    bool triangulation = false;
};

/// Draws into the picture, which outlives it; what lies outside the picture is cut off.
class CellView {
public:
    /// The upper left pixel of the cell's square, and the square's side in pixels: a whole number
    /// of pixels per tile, or of tiles per pixel.
    CellView(Picture& thePicture, Vec2i upperLeft, std::int32_t squareSide)
        : picture(thePicture), corner(upperLeft), side(squareSide) {}

    /// The whole square in one tone.
    void Fill(Tone tone) const { picture.Fill({corner.x, corner.y, side, side}, tone); }
    /// Each tile in its tone, sea included. With several tiles per pixel, see DrawShapes.
    void DrawTiles(const DungeonRecord& dungeon) const;
    /// The upper and left edge of each tile in a tone that stands out from the tile's.
    void DrawTileBorders(const DungeonRecord& dungeon) const;
    /// Hallways and main rooms as rectangles, each at least a pixel wide and high, with shallow
    /// water around them that may reach into other cells; no sea.
    void DrawShapes(const DungeonRecord& dungeon) const;
    void DrawOverlays(const DungeonRecord& dungeon, const Overlays& overlays) const;

private:
    template <typename Call>
    void ForEachTile(const Call& call) const;
    std::int32_t Pixels(std::int32_t tiles) const { return tiles * side / kCellTiles; }
    Vec2i PointOf(Vec2i tile) const;
    Area AreaOf(Vec2i tile, std::int32_t w, std::int32_t h) const;
    Area AreaOf(const DungeonRoom& room) const { return AreaOf(room.minCorner, room.w, room.h); }
    Area MarkerAt(Vec2i tile) const;
    void DrawEdges(const DungeonRecord& dungeon, const std::vector<DungeonEdge>& edges,
                   Tone tone) const;

    Picture& picture;
    Vec2i corner;
    std::int32_t side;
};
