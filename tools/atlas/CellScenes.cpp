// Cells tile by tile: one of them, or nine.
#include "atlas/Parallel.h"
#include "atlas/Records.h"
#include "atlas/Scenes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

namespace {

constexpr std::int32_t kTourSide = 3; // cells

Tone ToneOf(std::uint8_t tile) {
    return tile == kTileRoom ? Tone::Room : tile == kTileHallway ? Tone::Hallway : Tone::Sea;
}

// A cell's place in the picture: turns its tiles (y up) into pixels (y down).
class CellView {
public:
    CellView(Picture& thePicture, Vec2i upperLeft, std::int32_t pixelsPerTile)
        : picture(thePicture), corner(upperLeft), scale(pixelsPerTile) {}

    void DrawTiles(const Cell& cell) const {
        const std::int32_t side = kCellTiles * scale;
        if (cell.dungeon == nullptr) {
            const bool inWorld = IsInWorld({cell.key.x, cell.key.y});
            picture.Fill({corner.x, corner.y, side, side}, inWorld ? Tone::Sea : Tone::Void);
            return;
        }
        for (std::int32_t y = 0; y < kCellTiles; ++y) {
            for (std::int32_t x = 0; x < kCellTiles; ++x) {
                picture.Fill(AreaOf({x, y}, 1, 1), ToneOf(cell.dungeon->TileAt(x, y)));
            }
        }
    }

    void DrawOverlays(const DungeonRecord& dungeon, const Overlays& overlays) const {
        if (overlays.border) {
            picture.Outline(AreaOf({0, 0}, kCellTiles, kCellTiles), Tone::Border);
        }
        if (overlays.rooms) {
            for (const DungeonRoom& room : dungeon.rooms) {
                picture.Outline(AreaOf(room.minCorner, room.w, room.h), Tone::Rooms);
            }
        }
        if (overlays.triangulation) {
            DrawEdges(dungeon, dungeon.edges, Tone::Triangulation);
        }
        if (overlays.tree) {
            DrawEdges(dungeon, dungeon.hallwayEdges, Tone::Tree);
        }
        if (overlays.hallways) {
            for (const DungeonRoom& hallway : dungeon.hallways) {
                picture.Outline(AreaOf(hallway.minCorner, hallway.w, hallway.h), Tone::Hallways);
            }
        }
        if (overlays.spawns) {
            for (const DungeonRoom& room : dungeon.rooms) {
                for (const Vec2i& point : room.spawnPoints) {
                    picture.Fill(AreaOf(point, 1, 1), Tone::Spawns);
                }
            }
        }
        if (overlays.compass) {
            for (const Vec2i& point : dungeon.compassPoints) {
                picture.Fill(AreaOf(point - Vec2i{2, 2}, 5, 5), Tone::Compass);
            }
        }
    }

private:
    // The pixels of w x h tiles, the lower left one given.
    Area AreaOf(Vec2i tile, std::int32_t w, std::int32_t h) const {
        return {corner.x + tile.x * scale, corner.y + (kCellTiles - tile.y - h) * scale, w * scale,
                h * scale};
    }

    void DrawEdges(const DungeonRecord& dungeon, const std::vector<DungeonEdge>& edges,
                   Tone tone) const {
        for (const DungeonEdge& edge : edges) {
            const Area from = AreaOf(dungeon.rooms[static_cast<std::size_t>(edge.a)].center, 0, 0);
            const Area to = AreaOf(dungeon.rooms[static_cast<std::size_t>(edge.b)].center, 0, 0);
            picture.Line({from.x, from.y}, {to.x, to.y}, tone);
        }
    }

    Picture& picture;
    Vec2i corner;
    std::int32_t scale;
};

void DrawOne(const Cell& cell, const CellView& view, const Overlays& overlays) {
    view.DrawTiles(cell);
    if (cell.dungeon != nullptr) {
        view.DrawOverlays(*cell.dungeon, overlays);
    }
}

// Nine cells around one, numbered row by row from the south-west.
class Tour {
public:
    Tour(const Arguments& theArguments, Picture& thePicture)
        : arguments(theArguments), picture(thePicture), side(kCellTiles * arguments.scale) {}

    void DrawCells(std::array<Cell, 9>& cells) {
        const Block block(arguments.first / kClusterCells);
        ForEachIndex(cells.size(), arguments.threads, [&](std::size_t i) {
            cells[i] = GenerateCell(arguments.first + OffsetOf(i), block);
            DrawOne(cells[i], {picture, CornerOf(OffsetOf(i)), arguments.scale},
                    arguments.overlays);
        });
    }

    void DrawOver(const std::array<Cell, 9>& cells) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const Vec2i corner = CornerOf(OffsetOf(i));
            const Cell& cell = cells[i];
            picture.Outline({corner.x, corner.y, side, side}, Tone::Grid);
            if (IsInWorld({cell.key.x, cell.key.y})) {
                const std::string name =
                    std::to_string(cell.key.x) + "," + std::to_string(cell.key.y);
                picture.Text(corner + Vec2i{8, 8}, name, 3);
            }
        }
        for (const Cell& cell : cells) {
            for (const GridKey& neighbor : cell.neighbors) {
                DrawLink(cell.key, neighbor);
            }
        }
    }

private:
    static Vec2i OffsetOf(std::size_t i) {
        const auto number = static_cast<std::int32_t>(i);
        return {number % kTourSide - 1, number / kTourSide - 1};
    }

    // The upper left corner of the cell at this offset from the middle one.
    Vec2i CornerOf(Vec2i offset) const { return {(offset.x + 1) * side, (1 - offset.y) * side}; }

    void DrawLink(const GridKey& from, const GridKey& to) {
        const Vec2i middle{side / 2, side / 2};
        const Vec2i start = Vec2i{from.x, from.y} - arguments.first;
        const Vec2i end = Vec2i{to.x, to.y} - arguments.first;
        if (IsNear(end)) {
            picture.GraphLine(CornerOf(start) + middle, CornerOf(end) + middle, 2.5f);
        }
    }

    // Cells beyond the block bear the coordinates of a wrapped id and lie elsewhere.
    static bool IsNear(Vec2i offset) {
        return std::max(std::abs(offset.x), std::abs(offset.y)) <= 2 * kClusterCells;
    }

    const Arguments& arguments;
    Picture& picture;
    std::int32_t side; // of a cell, in pixels
};

} // namespace

Picture DrawCell(const Arguments& arguments, DataFile& data) {
    const Cell cell = GenerateCell(arguments.first, Block(arguments.first / kClusterCells));
    const std::int32_t side = kCellTiles * arguments.scale;
    Picture picture(side, side);
    DrawOne(cell, {picture, {0, 0}, arguments.scale}, arguments.overlays);
    data.Add(cell);
    return picture;
}

Picture DrawTour(const Arguments& arguments, DataFile& data) {
    const std::int32_t side = kTourSide * kCellTiles * arguments.scale;
    Picture picture(side, side);
    std::array<Cell, 9> cells;
    Tour tour(arguments, picture);
    tour.DrawCells(cells);
    tour.DrawOver(cells);
    for (const Cell& cell : cells) {
        data.Add(cell);
    }
    return picture;
}
