// What a terrain cell draws, tile by tile against its record, and its overlays.
#include "entities/TerrainCellEntity.h"

#include "entities/CameraEntity.h"
#include "entities/PlayerEntity.h"
#include "gfx/GFX_GraphicsManager.h"
#include "support/GameHarness.h"
#include "support/QuietStderr.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace {

constexpr Vec2i kLand{6, 3};
constexpr SDL_Color kRed{255, 0, 0, 255};
constexpr SDL_Color kYellow{255, 255, 0, 255};
constexpr SDL_Color kBlack{0, 0, 0, 255};

// A game with the camera alone on a tile of the land cell: nothing but terrain is drawn.
class TerrainTest : public testing::Test {
protected:
    TerrainTest()
        : game({.width = 481, .height = 361, .start = CellOrigin(kLand) + Vec2i{12, 12}}) {
        game.TickOnly();
        game.Settle();
        for (std::size_t layer = 1; layer < kLayerCount; ++layer) {
            for (IEntity* entity : game.World().layers[layer]) {
                entity->active = false;
            }
        }
    }

    TerrainCellEntity::View View() const {
        return game.World().cellGrid.FindLoaded(kLand)->GetView();
    }

    // The world point of a tile's centre.
    static Vec2i Center(Vec2i tile) { return CellOrigin(kLand) + tile * kTileSize + Vec2i{12, 12}; }

    void LookAt(Vec2i world, float zoom) {
        game.World().camera->position = world;
        game.World().camera->zoom = zoom;
    }

    // The colour at the centre of a tile of each value, read from the first tile that has it.
    std::array<SDL_Color, 3> FindPalette(const DungeonRecord& dungeon) {
        std::array<SDL_Color, 3> palette{};
        for (std::uint8_t value = 0; value < 3; ++value) {
            const auto found = std::find(dungeon.tiles.begin(), dungeon.tiles.end(), value);
            const auto index = static_cast<std::int32_t>(found - dungeon.tiles.begin());
            const Vec2i tile{index % kCellTiles, index / kCellTiles};
            LookAt(Center(tile), 1.0f);
            game.Capture();
            palette[value] = PixelOf(Center(tile));
        }
        return palette;
    }

    SDL_Color PixelOf(Vec2i world) const {
        const CameraEntity& camera = *game.World().camera;
        const Vec2i point =
            GFX_GraphicsManager::GetInstance()->WorldToScreen(world, camera.position, camera.zoom);
        return game.Pixel(point.x, point.y);
    }

    const QuietStderr quiet;
    GameHarness game;
};

} // namespace

TEST_F(TerrainTest, DrawsEveryTileInViewAsTheRecordHasIt) {
    const DungeonRecord& dungeon = *View().dungeon;
    const std::array<SDL_Color, 3> palette = FindPalette(dungeon);
    ASSERT_FALSE(SameColor(palette[0], palette[1]) || SameColor(palette[1], palette[2]) ||
                 SameColor(palette[0], palette[2]));

    for (const float zoom : {1.0f, 2.0f}) {
        for (const std::int32_t room : dungeon.mainRooms) {
            const Vec2i center = dungeon.rooms[static_cast<std::size_t>(room)].center;
            if (center.x < 20 || center.x > 490 || center.y < 20 || center.y > 490) {
                continue;
            }
            LookAt(Center(center), zoom);
            game.Capture();
            const std::int32_t reachX = zoom > 1.0f ? 4 : 9;
            const std::int32_t reachY = zoom > 1.0f ? 3 : 7;
            for (std::int32_t dy = -reachY; dy <= reachY; ++dy) {
                for (std::int32_t dx = -reachX; dx <= reachX; ++dx) {
                    const Vec2i tile = center + Vec2i{dx, dy};
                    ASSERT_TRUE(
                        SameColor(PixelOf(Center(tile)), palette[dungeon.TileAt(tile.x, tile.y)]))
                        << "tile " << tile.x << ", " << tile.y << " at zoom " << zoom;
                }
            }
        }
    }
}

TEST_F(TerrainTest, DrawsTheTilesOfTheWindowOfZoomOneWhateverTheZoom) {
    for (std::size_t slot = 0; slot < CellGrid::kSlotCount; ++slot) {
        TerrainCellEntity* cell = game.World().cellGrid.GetEntity(slot);
        cell->active = cell == game.World().cellGrid.FindLoaded(kLand);
    }
    // The window is 481 x 361: at zoom 1 it reaches 240 units to each side and 180 up and down.
    struct Case {
        Vec2i camera; // from the cell's origin, world units
        Vec2i first;  // tile
        Vec2i last;   // tile
        const char* meaning;
    };
    const Case cases[] = {
        {{6156, 6156}, {246, 249}, {266, 264}, "the middle of the cell"},
        {{0, 0}, {0, 0}, {10, 7}, "its lower left corner"},
        {{12288, 12288}, {502, 504}, {511, 511}, "its upper right corner"},
        {{12288 + 239, 6156}, {511, 249}, {511, 264}, "the last column"},
        {{12288 + 240, 6156}, {512, 0}, {511, 0}, "the left edge exactly on the cell's right edge"},
        {{6156, 12288 + 179}, {246, 511}, {266, 511}, "the last row"},
        {{6156, 12288 + 240}, {0, 512}, {0, 511}, "above the cell"},
        {{-241, 6156}, {0, 0}, {-1, 0}, "left of the cell"},
        {{-240, 6156}, {0, 249}, {0, 264}, "its left edge exactly on the window's right edge"},
        {{6156, -203},
         {246, 0},
         {266, 0},
         "the first row is drawn while it is less than a tile off"},
        {{6156, -204}, {0, 0}, {0, -1}, "a whole tile below the cell"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.meaning);
        LookAt(CellOrigin(kLand) + c.camera, 0.5f);
        game.Capture();
        // At zoom 0.5 a tile is 12 pixels wide, centred on its truncated place.
        const auto place = [&](Vec2i tile) {
            const Vec2i offset = (tile * 24 + Vec2i{12, 12} - c.camera) * 0.5f;
            return Vec2i{240 + offset.x - 6, 361 - (180 + offset.y) - 6};
        };
        const Vec2i corner = place({c.first.x, c.last.y});
        const Vec2i end = place({c.last.x, c.first.y}) + Vec2i{12, 12};
        const bool nothing = c.first.x > c.last.x || c.first.y > c.last.y;
        EXPECT_EQ(game.DrawnBounds(),
                  nothing ? SDL_Rect{}
                          : (SDL_Rect{corner.x, corner.y, end.x - corner.x, end.y - corner.y}));
    }
}

TEST_F(TerrainTest, OverlaysShowWhereTheyBelongAndLeaveTheColourAlone) {
    WorldManager& world = game.World();
    const DungeonRecord& dungeon = *View().dungeon;
    const Vec2i origin = CellOrigin(kLand);
    const auto look = [&](Vec2i place, float zoom) {
        LookAt(place, zoom);
        game.Capture();
    };
    // An outline hangs from its upper left corner; (x, y) of a room is above its rows.
    const auto expectOutline = [&](Vec2i corner, Vec2i size, SDL_Color color) {
        for (const float zoom : {1.0f, 0.5f}) {
            look(corner, zoom);
            EXPECT_TRUE(SameColor(PixelOf(corner), color));
            EXPECT_TRUE(SameColor(PixelOf(corner + Vec2i{20, 0}), color));
            EXPECT_TRUE(SameColor(PixelOf(corner - Vec2i{0, 20}), color));
            EXPECT_FALSE(SameColor(PixelOf(corner + Vec2i{20, -6}), color));
            const Vec2i far = corner + Vec2i{size.x, -size.y};
            look(far, zoom);
            // SDL draws the last column and row one pixel inside the size.
            const Vec2i point = GFX_GraphicsManager::GetInstance()->WorldToScreen(far, far, zoom);
            EXPECT_TRUE(SameColor(game.Pixel(point.x - 1, point.y - 1), color));
            EXPECT_FALSE(SameColor(game.Pixel(point.x + 1, point.y + 1), color));
        }
    };
    world.renderDungeonRooms = true;
    for (const std::size_t index : {std::size_t{0}, dungeon.rooms.size() - 1}) {
        const DungeonRoom& room = dungeon.rooms[index];
        expectOutline(origin + Vec2i{room.x, room.y} * 24, Vec2i{room.w, room.h} * 24, kYellow);
    }
    world.renderDungeonRooms = false;

    world.renderHallways = true;
    const DungeonRoom& hallway = dungeon.hallways[0];
    expectOutline(origin + Vec2i{hallway.minCorner.x, hallway.minCorner.y + hallway.h} * 24,
                  Vec2i{hallway.w, hallway.h} * 24, kRed);
    world.renderHallways = false;

    world.renderMinSpanningTree = true;
    for (const DungeonEdge& edge : dungeon.hallwayEdges) {
        for (const std::int32_t end : {edge.a, edge.b}) {
            const Vec2i place = origin + dungeon.rooms[static_cast<std::size_t>(end)].center * 24;
            look(place, 1.0f);
            ASSERT_TRUE(SameColor(PixelOf(place), kTestGreen)) << "room " << end;
        }
    }
    world.renderMinSpanningTree = false;

    world.renderCellBorder = true;
    for (const Vec2i middle :
         {Vec2i{0, 6000}, Vec2i{6000, 12288}, Vec2i{12288, 6000}, Vec2i{6000, 0}}) {
        look(origin + middle, 1.0f);
        const Vec2i along = middle.x % 12288 == 0 ? Vec2i{0, 100} : Vec2i{100, 0};
        EXPECT_TRUE(SameColor(PixelOf(origin + middle + along), kRed));
        EXPECT_TRUE(SameColor(PixelOf(origin + middle - along), kRed));
        EXPECT_FALSE(SameColor(PixelOf(origin + middle + along + Vec2i{3, 3}), kRed));
    }

    SDL_Color color{1, 1, 1, 1};
    SDL_GetRenderDrawColor(GFX_GraphicsManager::GetInstance()->renderer, &color.r, &color.g,
                           &color.b, &color.a);
    EXPECT_TRUE(SameColor(color, kBlack));
}

TEST_F(TerrainTest, TileLookUpsStopAtTheCellsEdges) {
    const TerrainCellEntity& entity = *game.World().cellGrid.FindLoaded(kLand);
    const DungeonRecord& dungeon = *View().dungeon;
    const DungeonRoom& room = dungeon.rooms[static_cast<std::size_t>(dungeon.mainRooms[0])];
    EXPECT_EQ(entity.TileAt(Center(room.center)), kTileRoom);
    EXPECT_EQ(game.World().GetTileAt(Center(room.center)), kTileRoom);
    EXPECT_EQ(entity.TileAt(CellOrigin(kLand) - Vec2i{25, 0}), kTileEmpty);
    EXPECT_EQ(entity.TileAt(CellOrigin(kLand) + Vec2i{12288, 0}), kTileEmpty);
}
