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

    const TerrainCellEntity::View View() const {
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

TEST_F(TerrainTest, DrawsTheWindowOfZoomOneWhateverTheZoom) {
    // At zoom 0.5 the tiles cover the middle half of the window, rounded up to whole tiles.
    LookAt(Center({256, 256}), 0.5f);
    game.Capture();
    EXPECT_FALSE(SameColor(game.Pixel(240, 180), kBlack));
    EXPECT_FALSE(SameColor(game.Pixel(240 - 110, 180), kBlack));
    EXPECT_TRUE(SameColor(game.Pixel(240 - 140, 180), kBlack));
    EXPECT_TRUE(SameColor(game.Pixel(240, 180 - 110), kBlack));
    EXPECT_FALSE(SameColor(game.Pixel(240, 180 + 80), kBlack));
}

TEST_F(TerrainTest, OverlaysShowWhereTheyBelongAndLeaveTheColourAlone) {
    WorldManager& world = game.World();
    const DungeonRoom& room = View().dungeon->rooms[0];
    // The outline hangs from (x, y), the point above the room's rows, which is its upper edge.
    const Vec2i corner = CellOrigin(kLand) + Vec2i{room.x, room.y} * kTileSize;
    LookAt(corner, 1.0f);
    game.Capture();
    const SDL_Color before = PixelOf(corner);
    world.renderDungeonRooms = true;
    game.Capture();
    EXPECT_FALSE(SameColor(before, kYellow));
    EXPECT_TRUE(SameColor(PixelOf(corner), kYellow));
    EXPECT_TRUE(SameColor(PixelOf(corner + Vec2i{20, 0}), kYellow));
    EXPECT_TRUE(SameColor(PixelOf(corner - Vec2i{0, 20}), kYellow));
    EXPECT_FALSE(SameColor(PixelOf(corner + Vec2i{0, 5}), kYellow));

    world.renderDungeonRooms = false;
    world.renderCellBorder = true;
    const Vec2i edge = CellOrigin(kLand) + Vec2i{0, 6000};
    LookAt(edge, 1.0f);
    game.Capture();
    EXPECT_TRUE(SameColor(PixelOf(edge + Vec2i{0, 100}), kRed));
    EXPECT_FALSE(SameColor(PixelOf(edge + Vec2i{1, 100}), kRed));

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
    EXPECT_EQ(game.World().GetTileAt({-5, -5}), kTileEmpty);
}
