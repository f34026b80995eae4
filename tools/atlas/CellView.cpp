#include "atlas/CellView.h"

#include "atlas/Records.h"

#include <algorithm>

namespace {

constexpr std::int32_t kShoal = 2; // pixels of shallow water around what would else be hard to see

Tone ToneOf(std::uint8_t tile) {
    return tile == kTileRoom ? Tone::Room : tile == kTileHallway ? Tone::Hallway : Tone::Sea;
}

Tone BorderToneOf(std::uint8_t tile) {
    return tile == kTileRoom ? Tone::Land : tile == kTileHallway ? Tone::Room : Tone::SeaShade;
}

} // namespace

// The tiles that the picture shows.
template <typename Call>
void CellView::ForEachTile(const Call& call) const {
    const auto tileAt = [this](std::int32_t pixel) {
        return std::clamp(pixel * kCellTiles / side, 0, kCellTiles - 1);
    };
    const Vec2i upperLeft{tileAt(-corner.x), tileAt(-corner.y)};
    const Vec2i lowerRight{tileAt(picture.Width() - 1 - corner.x),
                           tileAt(picture.Height() - 1 - corner.y)};
    for (std::int32_t down = upperLeft.y; down <= lowerRight.y; ++down) {
        for (std::int32_t x = upperLeft.x; x <= lowerRight.x; ++x) {
            call(Vec2i{x, kCellTiles - 1 - down});
        }
    }
}

void CellView::DrawTiles(const DungeonRecord& dungeon) const {
    ForEachTile([&](Vec2i tile) {
        picture.Fill(AreaOf(tile, 1, 1), ToneOf(dungeon.TileAt(tile.x, tile.y)));
    });
}

void CellView::DrawTileBorders(const DungeonRecord& dungeon) const {
    ForEachTile([&](Vec2i tile) {
        const Area area = AreaOf(tile, 1, 1);
        const Tone tone = BorderToneOf(dungeon.TileAt(tile.x, tile.y));
        picture.Fill({area.x, area.y, area.w, 1}, tone);
        picture.Fill({area.x, area.y, 1, area.h}, tone);
    });
}

void CellView::DrawShapes(const DungeonRecord& dungeon) const {
    const auto shoal = [this](const DungeonRoom& room) {
        const Area area = AreaOf(room);
        picture.Fill({area.x - kShoal, area.y - kShoal, area.w + 2 * kShoal, area.h + 2 * kShoal},
                     Tone::Grid);
    };
    for (const DungeonRoom& hallway : dungeon.hallways) {
        if (CoversTiles(hallway)) {
            shoal(hallway);
        }
    }
    for (const std::int32_t id : dungeon.mainRooms) {
        shoal(dungeon.Room(id));
    }
    for (const DungeonRoom& hallway : dungeon.hallways) {
        picture.Fill(AreaOf(hallway), Tone::Shore);
    }
    for (const std::int32_t id : dungeon.mainRooms) {
        picture.Fill(AreaOf(dungeon.Room(id)), Tone::Land);
    }
}

void CellView::DrawOverlays(const DungeonRecord& dungeon, const Overlays& overlays) const {
    if (overlays.border) {
        picture.Outline({corner.x, corner.y, side, side}, Tone::Border);
    }
    if (overlays.rooms) {
        for (const DungeonRoom& room : dungeon.rooms) {
            picture.Outline(AreaOf(room), Tone::Rooms);
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
            picture.Outline(AreaOf(hallway), Tone::Hallways);
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
            picture.Fill(MarkerAt(point), Tone::Compass);
        }
    }
}

// The upper left corner of a tile's lower edge.
Vec2i CellView::PointOf(Vec2i tile) const {
    return {corner.x + Pixels(tile.x), corner.y + side - Pixels(tile.y)};
}

// The pixels of w x h tiles, the lower left one given: at least one each way where there is a tile.
Area CellView::AreaOf(Vec2i tile, std::int32_t w, std::int32_t h) const {
    const auto pixels = [this](std::int32_t from, std::int32_t tiles) {
        const std::int32_t count = Pixels(from + tiles) - Pixels(from);
        return tiles > 0 ? std::max(count, 1) : count;
    };
    const Vec2i lowerLeft = PointOf(tile);
    const std::int32_t height = pixels(tile.y, h);
    return {lowerLeft.x, lowerLeft.y - height, pixels(tile.x, w), height};
}

// Five tiles a side, and three pixels where those would be less.
Area CellView::MarkerAt(Vec2i tile) const {
    Area area = AreaOf(tile - Vec2i{2, 2}, 5, 5);
    if (area.w < 3 || area.h < 3) {
        const Vec2i middle = PointOf(tile);
        area = {middle.x - 1, middle.y - 2, 3, 3};
    }
    return area;
}

void CellView::DrawEdges(const DungeonRecord& dungeon, const std::vector<DungeonEdge>& edges,
                         Tone tone) const {
    for (const DungeonEdge& edge : edges) {
        picture.Line(PointOf(dungeon.Room(edge.a).center), PointOf(dungeon.Room(edge.b).center),
                     tone);
    }
}
