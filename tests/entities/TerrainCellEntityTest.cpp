// What a terrain cell draws, tile by tile against its record, and its overlays.
#include "entities/TerrainCellEntity.h"

#include "entities/CameraEntity.h"
#include "gfx/GFX_GraphicsManager.h"
#include "support/GameHarness.h"
#include "support/PaintedFrame.h"
#include "support/QuietStderr.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace {

constexpr Vec2i kLand{6, 3};
constexpr Vec2i kOrigin{6 * 12288, 3 * 12288};
constexpr float kFarZoom = 0.025f; // the whole cell is in the window

// A game that shows nothing but the terrain of one land cell.
class TerrainTest : public testing::Test {
protected:
    TerrainTest() {
        game.TickOnly();
        game.Settle();
        // Sea would look like water tiles; on black it shows which pixels are drawn.
        SDL_SetRenderDrawColor(GFX_GraphicsManager::GetInstance()->renderer, 0, 0, 0, 255);
        for (const std::vector<IEntity*>& layer : game.World().layers) {
            for (IEntity* entity : layer) {
                entity->active = entity == game.World().cellGrid.FindLoaded(kLand);
            }
        }
    }

    const DungeonRecord& Dungeon() const {
        return *game.World().cellGrid.FindLoaded(kLand)->GetView().dungeon;
    }

    // The world point of a tile's centre.
    static Vec2i Center(Vec2i tile) { return kOrigin + tile * kTileSize + Vec2i{12, 12}; }

    void LookAt(Vec2i world, float zoom) {
        game.World().camera->position = world;
        game.World().camera->zoom = zoom;
        game.Capture();
    }

    // The colour of a pixel of an image file.
    SDL_Color ImagePixel(const char* image, Vec2i pixel) {
        GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
        const PixelRect source{static_cast<std::int16_t>(pixel.x),
                               static_cast<std::int16_t>(pixel.y), 1, 1};
        const Sprite sprite{graphics.GetTexture(image), source};
        game.Capture([&] { graphics.DrawSpriteSized(&sprite, {0, 0}, {0, 0}, 1.0f, 24); });
        return game.Pixel(240, 180);
    }

    SDL_Color PixelOf(Vec2i world) const {
        const CameraEntity& camera = *game.World().camera;
        const Vec2i point =
            GFX_GraphicsManager::GetInstance()->WorldToScreen(world, camera.position, camera.zoom);
        return game.Pixel(point.x, point.y);
    }

    bool Shows(Vec2i world, SDL_Color color) const { return SameColor(PixelOf(world), color); }

    // Shows the whole cell with an overlay and expects the scene without it, painted over.
    template <typename Paint>
    void CompareOverlay(bool WorldManager::*overlay, Paint paint) {
        LookAt(kOrigin + Vec2i{6144, 6144}, kFarZoom);
        PaintedFrame expected(game);
        paint(expected);
        game.World().*overlay = true;
        game.Capture();
        game.World().*overlay = false;
        EXPECT_EQ(expected.Difference(game), "");
    }

    // Where a tile's lower left corner shows in that view, in SDL coordinates.
    static Vec2i FarPlace(Vec2i tile) {
        const Vec2i offset = (tile * kTileSize - Vec2i{6144, 6144}) * kFarZoom;
        return {240 + offset.x, 361 - (180 + offset.y)};
    }

    // An outline hangs from its upper left corner.
    static void PaintOutline(PaintedFrame& frame, Vec2i corner, const DungeonRoom& area,
                             SDL_Color color) {
        const Vec2i place = FarPlace(corner);
        const Vec2i size = Vec2i{area.w, area.h} * kTileSize * kFarZoom;
        frame.Outline({place.x, place.y, size.x, size.y}, color);
    }

    const QuietStderr quiet;
    GameHarness game{{.width = 481, .height = 361, .start = kOrigin}};
};

} // namespace

TEST_F(TerrainTest, DrawsEveryTileInViewAsTheRecordHasIt) {
    const DungeonRecord& dungeon = Dungeon();
    // The middle of the image of each tile value: empty, hallway, room.
    const std::array<SDL_Color, 3> palette{ImagePixel("image.png", {108, 8}),
                                           ImagePixel("image.png", {108, 108}),
                                           ImagePixel("terrain_transition.png", {56, 72})};
    ASSERT_FALSE(SameColor(palette[0], palette[1]) || SameColor(palette[1], palette[2]) ||
                 SameColor(palette[0], palette[2]));
    for (const std::int32_t room : dungeon.mainRooms) {
        const Vec2i center = dungeon.rooms[static_cast<std::size_t>(room)].center;
        if (center.x < 20 || center.x > 490 || center.y < 20 || center.y > 490) {
            continue;
        }
        LookAt(Center(center), 1.0f);
        for (std::int32_t dy = -7; dy <= 7; ++dy) {
            for (std::int32_t dx = -9; dx <= 9; ++dx) {
                const Vec2i tile = center + Vec2i{dx, dy};
                ASSERT_TRUE(Shows(Center(tile), palette[dungeon.TileAt(tile.x, tile.y)]))
                    << "tile " << tile.x << ", " << tile.y;
            }
        }
    }
}

TEST_F(TerrainTest, DrawsTheTilesOfTheWindowOfZoomOneWhateverTheZoom) {
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
        {{6156, -203}, {246, 0}, {266, 0}, "the first row, less than a tile off"},
        {{6156, -204}, {0, 0}, {0, -1}, "a whole tile below the cell"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.meaning);
        LookAt(kOrigin + c.camera, 0.5f);
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

TEST_F(TerrainTest, OverlaysShowWhereTheyBelong) {
    const DungeonRecord& dungeon = Dungeon();
    CompareOverlay(&WorldManager::renderDungeonRooms, [&](PaintedFrame& frame) {
        for (const DungeonRoom& room : dungeon.rooms) {
            PaintOutline(frame, {room.x, room.y}, room, {255, 255, 0, 255});
        }
    });
    CompareOverlay(&WorldManager::renderHallways, [&](PaintedFrame& frame) {
        for (const DungeonRoom& hallway : dungeon.hallways) {
            PaintOutline(frame, hallway.minCorner + Vec2i{0, hallway.h}, hallway, kTestRed);
        }
    });
    CompareOverlay(&WorldManager::renderCellBorder, [&](PaintedFrame& frame) {
        const Vec2i low = FarPlace({0, 0});
        const Vec2i high = FarPlace({512, 512});
        frame.Outline({low.x, high.y, high.x - low.x + 1, low.y - high.y + 1}, kTestRed);
    });
    game.World().renderMinSpanningTree = true;
    game.Capture();
    for (const DungeonEdge& edge : dungeon.hallwayEdges) {
        for (const std::int32_t end : {edge.a, edge.b}) {
            const Vec2i place = FarPlace(dungeon.rooms[static_cast<std::size_t>(end)].center);
            ASSERT_TRUE(SameColor(game.Pixel(place.x, place.y), kTestGreen)) << "room " << end;
        }
    }
}

TEST_F(TerrainTest, TilesAreLookedUpInLoadedCellsOnly) {
    WorldManager& world = game.World();
    const DungeonRecord& dungeon = Dungeon();
    const DungeonRoom& room = dungeon.rooms[static_cast<std::size_t>(dungeon.mainRooms[0])];
    const Vec2i corner = Center(room.center) - Vec2i{12, 12};
    EXPECT_EQ(world.GetTileAt(corner), kTileRoom);
    EXPECT_EQ(world.GetTileAt(corner + Vec2i{23, 23}), kTileRoom);
    EXPECT_EQ(world.GetTileAt(corner + Vec2i{3 * kCellSize, 0}), kTileEmpty) << "not loaded";
    EXPECT_EQ(world.GetTileAt({-1, -1}), kTileEmpty);
    EXPECT_EQ(world.GetTileAt({std::numeric_limits<std::int32_t>::min(), 5}), kTileEmpty);
    const TerrainCellEntity& entity = *world.cellGrid.FindLoaded(kLand);
    EXPECT_EQ(entity.TileAt(kOrigin - Vec2i{25, 0}), kTileEmpty);
    EXPECT_EQ(entity.TileAt(kOrigin + Vec2i{12288, 0}), kTileEmpty);
    // A cell that is asked for anew reads as water until it is there.
    world.cellGrid.Update({100 * kCellSize, 100 * kCellSize});
    EXPECT_EQ(world.GetTileAt(corner), kTileEmpty);
}
