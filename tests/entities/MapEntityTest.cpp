// The world map, compared pixel by pixel with pictures that the tests paint from the generated
// records, and driven by keys.
#include "entities/MapEntity.h"

#include "entities/CameraEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "support/GameHarness.h"
#include "support/PaintedFrame.h"
#include "support/QuietStderr.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace {

// Cell (5, 4) and its neighbours (6, 3) and (4, 5) hold land.
constexpr Vec2i kAmongIslands{5 * 12288 + 6156, 4 * 12288 + 6156};
constexpr Vec2i kWindow{1283, 721}; // odd, so that halves are truncated
constexpr float kFactor = 50.0f / 12288.0f;

constexpr SDL_Color kGreen{0, 255, 0, 255};
constexpr SDL_Color kRed{255, 0, 0, 255};
constexpr SDL_Color kYellow{255, 255, 0, 255};

// Paints what the map has to look like, by the map's rules alone. Window points have y up.
class MapPainter {
public:
    MapPainter(PaintedFrame& target, const MapEntity& shown) : frame(target), map(shown) {}

    void Paint(const WorldManager& world) {
        const SDL_Rect panel{corner.x, kWindow.y - (corner.y + size.y), size.x, size.y};
        frame.Fill(panel, {0, 0, 255, 255});
        frame.Outline(panel, {0, 0, 0, 255});
        if (map.zoom < 4.0f) {
            PaintOverview(world);
        } else {
            PaintDungeons(world);
        }
        PaintCross(center, 2, kYellow);
        const Vec2i player = Place(world.player->position.x, world.player->position.y);
        if (InPanel(player)) {
            PaintCross(player, 3, kRed);
        }
    }

    int cells = 0;    ///< land cells painted
    int farCells = 0; ///< land cells met whose coordinates do not fit the world
    int areas = 0;    ///< hallways and rooms of at least one pixel
    int points = 0;   ///< compass points

private:
    Vec2i Place(std::int64_t worldX, std::int64_t worldY) const {
        const float x = (static_cast<float>(worldX) * kFactor - map.pan.x) * map.zoom;
        const float y = (static_cast<float>(worldY) * kFactor - map.pan.y) * map.zoom;
        return Vec2i{static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)} + center;
    }

    bool InPanel(Vec2i p) const {
        const Vec2i inside = p - corner;
        return inside.x >= 0 && inside.x <= size.x && inside.y >= 0 && inside.y <= size.y;
    }

    void Fill(Vec2i upperLeft, Vec2i extent, SDL_Color color) {
        frame.Fill({upperLeft.x, kWindow.y - upperLeft.y, extent.x, extent.y}, color);
    }

    void PaintCross(Vec2i at, int reach, SDL_Color color) {
        Fill(at - Vec2i{reach, 0}, {2 * reach + 1, 1}, color);
        Fill(at + Vec2i{0, reach}, {1, 2 * reach + 1}, color);
    }

    void PaintOverview(const WorldManager& world) {
        for (const ClusterRecord* cluster : world.cellGrid.clusters) {
            for (const auto& [id, land] : cluster->cells) {
                if (land == 1) {
                    PaintLandCell(id % 1048560, id / 1048560);
                }
            }
        }
    }

    void PaintLandCell(std::int64_t x, std::int64_t y) {
        farCells += std::abs(x) > 200000 ? 1 : 0;
        const Vec2i p = Place(x * 12288 + 6144, y * 12288 + 6144);
        if (InPanel(p)) {
            ++cells;
            Fill(p + Vec2i{-5, 5}, {10, 10}, kGreen);
            frame.Text("(" + std::to_string(x) + "," + std::to_string(y) + ")", p.x,
                       kWindow.y - p.y - 50, {255, 255, 255, 255});
        }
    }

    void PaintDungeons(const WorldManager& world) {
        for (std::size_t slot = 0; slot < CellGrid::kSlotCount; ++slot) {
            const TerrainCellEntity::View cell = world.cellGrid.GetEntity(slot)->GetView();
            if (cell.occupied == 1) {
                PaintDungeon({cell.key.x * 12288, cell.key.y * 12288}, *cell.dungeon);
            }
        }
    }

    void PaintDungeon(Vec2i origin, const DungeonRecord& dungeon) {
        for (const DungeonRoom& hallway : dungeon.hallways) {
            PaintArea(origin, hallway, kYellow);
        }
        for (const std::int32_t room : dungeon.mainRooms) {
            PaintArea(origin, dungeon.rooms[static_cast<std::size_t>(room)], kGreen);
        }
        for (const Vec2i tile : dungeon.compassPoints) {
            if (map.showCompasses) {
                const Vec2i p = Place(origin.x + 24 * tile.x, origin.y + 24 * tile.y);
                Fill(p + Vec2i{-2, 2}, {4, 4}, {255, 128, 0, 255});
                ++points;
            }
        }
    }

    void PaintArea(Vec2i origin, const DungeonRoom& area, SDL_Color color) {
        const Vec2i p = Place(origin.x + 24 * area.minCorner.x, origin.y + 24 * area.minCorner.y);
        const auto w = static_cast<int>(static_cast<float>(24 * area.w) * (map.zoom * kFactor));
        const auto h = static_cast<int>(static_cast<float>(24 * area.h) * (map.zoom * kFactor));
        Fill(p + Vec2i{0, h}, {w, h}, color);
        areas += w > 0 && h > 0 ? 1 : 0;
    }

    PaintedFrame& frame;
    const MapEntity& map;
    const Vec2i size{kWindow.x * 4 / 5, kWindow.y * 4 / 5};
    const Vec2i corner = (kWindow - size) / 2; // the lower left
    const Vec2i center = corner + size / 2;
};

class MapEntityTest : public testing::Test {
protected:
    MapEntityTest() {
        game.TickOnly();
        game.Settle();
        game.Tap(SDLK_BACKSPACE);
        onPlayer = map.pan;
    }

    /// Compares the open map with a painted one over the same scene.
    MapPainter CompareWithPainted() {
        map.active = false;
        game.Capture();
        PaintedFrame expected(game);
        map.active = true;
        game.Capture();
        MapPainter painter(expected, map);
        painter.Paint(game.World());
        EXPECT_EQ(expected.Difference(game), "")
            << "zoom " << map.zoom << ", pan " << map.pan.x << ", " << map.pan.y;
        return painter;
    }

    void Hold(SDL_Keycode key, int ticks) {
        game.KeyDown(key);
        game.TickOnly(ticks);
        game.KeyUp(key);
        game.TickOnly();
    }

    QuietStderr quiet;
    GameHarness game{
        {.width = kWindow.x, .height = kWindow.y, .start = kAmongIslands, .hardwareThreads = 4}};
    MapEntity& map = *game.World().map;
    Vec2f onPlayer; ///< the pan that the map opens with
};

} // namespace

TEST_F(MapEntityTest, ShowsTheLandCellsOfTheClustersInTheOverview) {
    EXPECT_EQ(map.WorldToMap(kAmongIslands), map.center);
    for (const float zoom : {0.17f, 1.0f, 3.9f}) {
        for (const Vec2f moved : {Vec2f{0.0f, 0.0f}, Vec2f{-37.6f, 80.3f}, Vec2f{600.0f, 13.0f}}) {
            map.zoom = zoom;
            map.pan = onPlayer + moved;
            EXPECT_GT(CompareWithPainted().cells, 0);
        }
    }
}

TEST_F(MapEntityTest, CountsThePanelsEdgeAsInside) {
    // The player's cell, at map units (275, 225), and the player on every edge and a pixel beyond.
    for (const float beyond : {0.25f, 1.25f}) {
        const float x = 513.0f + beyond;
        const float y = 288.0f + beyond;
        for (const Vec2f offset :
             {Vec2f{x, 0.0f}, Vec2f{-x, 0.0f}, Vec2f{0.0f, y}, Vec2f{0.0f, -y}}) {
            map.pan = Vec2f{275.0f, 225.0f} - offset;
            CompareWithPainted();
        }
    }
}

TEST_F(MapEntityTest, KeepsFarDecodedCellsInTheFarEast) {
    // Wrapped positions of these cells would show beyond the western edge of the world.
    map.zoom = 0.3f;
    map.pan = {-1000.0f, 500.0f};
    EXPECT_GT(CompareWithPainted().farCells, 0);
    // Here they come into view: a million cells are 420 pixels.
    map.zoom = 0.000008f;
    map.pan = {0.0f, 0.0f};
    const MapPainter painter = CompareWithPainted();
    EXPECT_GE(painter.cells, painter.farCells);
}

TEST_F(MapEntityTest, ShowsDungeonsWhenZoomedIn) {
    for (const float zoom : {4.0f, 4.37f, 5.0f}) {
        for (const bool compasses : {false, true}) {
            map.zoom = zoom;
            map.showCompasses = compasses;
            const MapPainter painter = CompareWithPainted();
            EXPECT_GT(painter.areas, 30);
            EXPECT_EQ(painter.points > 0, compasses);
        }
    }
    // A dungeon moved over the panel's edge is not cut off there.
    map.pan = onPlayer + Vec2f{115.4f, -62.7f};
    CompareWithPainted();
    // Nor is it left out when its cell is hidden.
    map.pan = onPlayer;
    for (std::size_t slot = 0; slot < CellGrid::kSlotCount; ++slot) {
        game.World().cellGrid.GetEntity(slot)->active = false;
    }
    EXPECT_GT(CompareWithPainted().areas, 30);
}

TEST_F(MapEntityTest, PansFastInTheOverviewAndSlowlyInDetail) {
    const auto step = [this](SDL_Keycode key) {
        map.pan = {100.0f, 100.0f};
        Hold(key, 3);
        return map.pan - Vec2f{100.0f, 100.0f};
    };
    map.zoom = 3.9f;
    EXPECT_EQ(step(SDLK_RIGHT), (Vec2f{30.0f, 0.0f}));
    EXPECT_EQ(step(SDLK_LEFT), (Vec2f{-30.0f, 0.0f}));
    EXPECT_EQ(step(SDLK_UP), (Vec2f{0.0f, 30.0f}));
    EXPECT_EQ(step(SDLK_DOWN), (Vec2f{0.0f, -30.0f}));
    map.zoom = 4.0f;
    EXPECT_EQ(step(SDLK_RIGHT), (Vec2f{6.0f, 0.0f}));
    EXPECT_EQ(step(SDLK_DOWN), (Vec2f{0.0f, -6.0f}));
    // The speed is taken before the zoom changes in the same tick.
    map.zoom = 3.9f;
    game.KeyDown(SDLK_e);
    EXPECT_EQ(step(SDLK_RIGHT), (Vec2f{14.0f, 0.0f}));
}

TEST_F(MapEntityTest, ZoomsWhileOpenAndKeepsItsZoom) {
    map.zoom = 4.8f;
    game.KeyDown(SDLK_e);
    for (int tick = 0; tick < 3; ++tick) {
        game.TickOnly();
        EXPECT_EQ(map.zoom, 5.0f);
    }
    game.KeyDown(SDLK_q); // both at once: out first, then in
    game.TickOnly();
    EXPECT_FLOAT_EQ(map.zoom, 4.95f);
    game.KeyUp(SDLK_e);
    game.TickOnly();
    EXPECT_FLOAT_EQ(map.zoom, 4.455f);

    game.Tap(SDLK_BACKSPACE);
    game.TickOnly(5);
    game.KeyUp(SDLK_q);
    game.Tap(SDLK_BACKSPACE);
    // The three ticks that the key was held while the map was still open.
    EXPECT_NEAR(map.zoom, 4.455f * 0.729f, 0.001f);
}

TEST_F(MapEntityTest, StaysDefinedAtVanishingZoom) {
    game.KeyDown(SDLK_q);
    game.TickOnly(200);
    EXPECT_NEAR(map.zoom / std::pow(0.9f, 200.0f), 1.0f, 1e-3f);
    CompareWithPainted();
    game.TickOnly(1500);
    EXPECT_EQ(map.zoom, std::numeric_limits<float>::min());
    EXPECT_GT(CompareWithPainted().cells, 100); // all of them in one place
    game.KeyUp(SDLK_q);
    game.KeyDown(SDLK_e);
    game.TickOnly(1000);
    EXPECT_EQ(map.zoom, map.maxZoom) << "there is a way back";
}

TEST_F(MapEntityTest, StaysDefinedFarOutside) {
    game.KeyDown(SDLK_RIGHT);
    game.KeyDown(SDLK_DOWN);
    map.pan = {268435000.0f, -268435000.0f}; // days of panning
    game.TickOnly(100);
    const Vec2f stopped = map.pan;
    game.TickOnly(100);
    EXPECT_EQ(map.pan, stopped);
    EXPECT_EQ(map.GetCenterWorldPosition(), (Vec2i{2147483647, -2147483647 - 1}));
    EXPECT_EQ(CompareWithPainted().cells, 0);
    map.zoom = 5.0f;
    CompareWithPainted();
    map.pan = {10.9f, -10.9f};
    EXPECT_EQ(map.GetCenterWorldPosition(), (Vec2i{2457, -2457})); // 10 and -10 map units
    map.zoom = 1e30f;
    EXPECT_EQ(map.WorldToMap({2147483647, -2147483647}),
              (Vec2i{2147483647, -2147483647 - 1 + map.center.y}));
}

TEST_F(MapEntityTest, ReadsDungeonsWhileCellsAreReplaced) {
    map.zoom = 4.0f;
    map.showCompasses = true;
    // Jump between groups of islands faster than their dungeons are made.
    const Vec2i far{7 * 12288 + 12, 7 * 12288 + 12};
    for (int i = 0; i < 60; ++i) {
        game.World().player->PlaceAt(i % 2 == 0 ? far : kAmongIslands);
        game.Tick();
    }
    game.Settle();
    EXPECT_GT(CompareWithPainted().areas, 30);
}
