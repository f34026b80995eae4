// The world map, compared pixel by pixel with pictures that the tests paint from the generated
// records, and driven by keys.
#include "entities/MapEntity.h"

#include "entities/CameraEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "gfx/GFX_GraphicsManager.h"
#include "support/GameHarness.h"
#include "support/PaintedFrame.h"
#include "support/QuietStderr.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>

namespace {

// Cell (5, 4) and its neighbours (6, 3) and (4, 5) hold land.
constexpr Vec2i kAmongIslands{5 * 12288 + 6156, 4 * 12288 + 6156};

constexpr SDL_Color kBlack{0, 0, 0, 255};
constexpr SDL_Color kBlue{0, 0, 255, 255};
constexpr SDL_Color kGreen{0, 255, 0, 255};
constexpr SDL_Color kOrange{255, 128, 0, 255};
constexpr SDL_Color kRed{255, 0, 0, 255};
constexpr SDL_Color kWhite{255, 255, 255, 255};
constexpr SDL_Color kYellow{255, 255, 0, 255};

GameOptions Options(Vec2i start, int width = 1280, int height = 720) {
    GameOptions options;
    options.start = start;
    options.width = width;
    options.height = height;
    return options;
}

float Factor() {
    return 50.0f / 12288.0f;
}

// Paints what the map has to look like, by the map's rules alone.
class MapPainter {
public:
    MapPainter(PaintedFrame& target, const MapEntity& shown, int width, int height)
        : frame(target), map(shown), windowHeight(height), panelWidth(width * 4 / 5),
          panelHeight(height * 4 / 5), left((width - panelWidth) / 2),
          bottom((height - panelHeight) / 2) {}

    void Paint(const WorldManager& world) {
        const SDL_Rect panel{left, windowHeight - (bottom + panelHeight), panelWidth, panelHeight};
        frame.Fill(panel, kBlue);
        frame.Outline(panel, kBlack);
        if (map.zoom < 4.0f) {
            PaintOverview(world);
        } else {
            PaintDungeons(world);
        }
        PaintCross({CenterX(), CenterY()}, 2, kYellow);
        const Vec2i player = Place(world.player->position.x, world.player->position.y);
        if (InPanel(player)) {
            PaintCross(player, 3, kRed);
        }
    }

    int squares = 0;  ///< land cells painted
    int farCells = 0; ///< land cells met whose coordinates do not fit the world
    int areas = 0;    ///< hallways and rooms of at least one pixel
    int points = 0;   ///< compass points

private:
    int CenterX() const { return left + panelWidth / 2; }
    int CenterY() const { return bottom + panelHeight / 2; }

    Vec2i Place(std::int64_t worldX, std::int64_t worldY) const {
        const float x = (static_cast<float>(worldX) * Factor() - map.pan.x) * map.zoom;
        const float y = (static_cast<float>(worldY) * Factor() - map.pan.y) * map.zoom;
        return {static_cast<std::int32_t>(x) + CenterX(), static_cast<std::int32_t>(y) + CenterY()};
    }

    bool InPanel(Vec2i p) const {
        return p.x >= left && p.x <= left + panelWidth && p.y >= bottom &&
               p.y <= bottom + panelHeight;
    }

    void PaintCross(Vec2i at, int reach, SDL_Color color) {
        frame.Fill({at.x - reach, windowHeight - at.y, 2 * reach + 1, 1}, color);
        frame.Fill({at.x, windowHeight - at.y - reach, 1, 2 * reach + 1}, color);
    }

    void PaintOverview(const WorldManager& world) {
        for (const ClusterRecord* cluster : world.cellGrid.GetClusters()) {
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
        if (!InPanel(p)) {
            return;
        }
        ++squares;
        frame.Fill({p.x - 5, windowHeight - p.y - 5, 10, 10}, kGreen);
        frame.Text("(" + std::to_string(x) + "," + std::to_string(y) + ")", p.x,
                   windowHeight - p.y - 50, kWhite);
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
                frame.Fill({p.x - 2, windowHeight - p.y - 2, 4, 4}, kOrange);
                ++points;
            }
        }
    }

    void PaintArea(Vec2i origin, const DungeonRoom& area, SDL_Color color) {
        const Vec2i p = Place(origin.x + 24 * area.minCorner.x, origin.y + 24 * area.minCorner.y);
        const auto w = static_cast<int>(static_cast<float>(24 * area.w) * (map.zoom * Factor()));
        const auto h = static_cast<int>(static_cast<float>(24 * area.h) * (map.zoom * Factor()));
        frame.Fill({p.x, windowHeight - (p.y + h), w, h}, color);
        areas += w > 0 && h > 0 ? 1 : 0;
    }

    PaintedFrame& frame;
    const MapEntity& map;
    int windowHeight;
    int panelWidth;
    int panelHeight;
    int left;
    int bottom;
};

class MapEntityTest : public testing::Test {
protected:
    void Start(const GameOptions& options) {
        size = {options.width, options.height};
        game = std::make_unique<GameHarness>(options);
        game->TickOnly();
        game->Settle();
    }

    MapEntity& Map() const { return *game->World().map; }

    void Open() { game->Tap(SDLK_BACKSPACE); }

    /// Compares the open map with a painted one over the same scene.
    MapPainter CompareWithPainted() {
        Map().active = false;
        game->Capture();
        PaintedFrame expected(*game);
        Map().active = true;
        game->Capture();
        MapPainter painter(expected, Map(), size.x, size.y);
        painter.Paint(game->World());
        EXPECT_EQ(expected.Difference(*game), "")
            << "zoom " << Map().zoom << ", pan " << Map().pan.x << ", " << Map().pan.y;
        return painter;
    }

    void Hold(SDL_Keycode key, int ticks) {
        game->KeyDown(key);
        game->TickOnly(ticks);
        game->KeyUp(key);
    }

    Vec2i size;
    QuietStderr quiet;
    std::unique_ptr<GameHarness> game;
};

} // namespace

TEST_F(MapEntityTest, TakesTheMiddleOfTheWindow) {
    Start(Options(kAmongIslands));
    const Rect& frame = Map().frame;
    EXPECT_EQ(frame.right, 1152);
    EXPECT_EQ(frame.left, 128);
    EXPECT_EQ(frame.top, 648);
    EXPECT_EQ(frame.bottom, 72);
    EXPECT_EQ(frame.width, 1024);
    EXPECT_EQ(frame.height, 576);
    EXPECT_EQ(Map().center, (Vec2i{640, 360}));
}

TEST_F(MapEntityTest, ShowsTheLandCellsOfTheClustersInTheOverview) {
    Start(Options(kAmongIslands));
    Open();
    EXPECT_EQ(Map().WorldToMap(kAmongIslands), Map().center);
    const Vec2f onPlayer = Map().pan;
    for (const float zoom : {0.17f, 1.0f, 2.3f, 3.9f}) {
        for (const Vec2f moved : {Vec2f{0.0f, 0.0f}, Vec2f{-37.6f, 80.3f}, Vec2f{600.0f, 13.0f}}) {
            Map().zoom = zoom;
            Map().pan = onPlayer + moved;
            EXPECT_GT(CompareWithPainted().squares, 0);
        }
    }
}

TEST_F(MapEntityTest, CountsThePanelsEdgeAsInside) {
    Start(Options(kAmongIslands));
    Open();
    // The player's cell, at map units (275, 225), and the player on every edge and a pixel beyond.
    for (const float beyond : {0.25f, 1.25f}) {
        const float x = 512.0f + beyond;
        const float y = 288.0f + beyond;
        for (const Vec2f offset :
             {Vec2f{x, 0.0f}, Vec2f{-x, 0.0f}, Vec2f{0.0f, y}, Vec2f{0.0f, -y}}) {
            Map().pan = Vec2f{275.0f, 225.0f} - offset;
            CompareWithPainted();
        }
    }
}

TEST_F(MapEntityTest, KeepsFarDecodedCellsInTheFarEast) {
    Start(Options(kAmongIslands));
    Open();
    // Wrapped positions of these cells would show beyond the western edge of the world.
    Map().zoom = 0.3f;
    Map().pan = {-1000.0f, 500.0f};
    EXPECT_GT(CompareWithPainted().farCells, 0);
    // Here they come into view: a million cells are 420 pixels.
    Map().zoom = 0.000008f;
    Map().pan = {0.0f, 0.0f};
    const MapPainter painter = CompareWithPainted();
    EXPECT_GE(painter.squares, painter.farCells);
}

TEST_F(MapEntityTest, ShowsDungeonsWhenZoomedIn) {
    Start(Options(kAmongIslands));
    Open();
    const Vec2f onPlayer = Map().pan;
    for (const float zoom : {4.0f, 4.37f, 5.0f}) {
        for (const bool compasses : {false, true}) {
            Map().zoom = zoom;
            Map().showCompasses = compasses;
            const MapPainter painter = CompareWithPainted();
            EXPECT_GT(painter.areas, 30);
            EXPECT_EQ(painter.points > 0, compasses);
        }
    }
    // A dungeon moved over the panel's edge is not cut off there.
    Map().pan = onPlayer + Vec2f{115.4f, -62.7f};
    CompareWithPainted();
}

TEST_F(MapEntityTest, ShowsTheDungeonOfAHiddenCell) {
    Start(Options(kAmongIslands));
    Open();
    Map().zoom = 4.0f;
    for (std::size_t slot = 0; slot < CellGrid::kSlotCount; ++slot) {
        game->World().cellGrid.GetEntity(slot)->active = false;
    }
    EXPECT_GT(CompareWithPainted().areas, 30);
}

TEST_F(MapEntityTest, FitsAWindowOfOddSize) {
    Start(Options(kAmongIslands, 643, 481));
    Open();
    CompareWithPainted();
    Map().zoom = 5.0f;
    CompareWithPainted();
}

TEST_F(MapEntityTest, OpensOnThePlayerAndKeepsItsZoom) {
    Start(Options(kAmongIslands));
    WorldManager& world = game->World();
    EXPECT_FALSE(Map().active);
    Open();
    EXPECT_TRUE(Map().active);
    EXPECT_EQ(world.mapMode, 1);
    const Vec2f onPlayer{static_cast<float>(kAmongIslands.x) * Factor(),
                         static_cast<float>(kAmongIslands.y) * Factor()};
    EXPECT_EQ(Map().pan, onPlayer);

    Hold(SDLK_RIGHT, 5);
    Hold(SDLK_q, 3);
    game->TickOnly();
    EXPECT_NE(Map().pan, onPlayer);
    const float zoom = Map().zoom;
    Open(); // the same key closes it
    EXPECT_FALSE(Map().active);
    EXPECT_EQ(world.mapMode, 0);
    Hold(SDLK_RIGHT, 5); // a closed map does not move
    Open();
    EXPECT_EQ(Map().pan, onPlayer);
    EXPECT_EQ(Map().zoom, zoom);
}

TEST_F(MapEntityTest, PansFastInTheOverviewAndSlowlyInDetail) {
    Start(Options(kAmongIslands));
    Open();
    const auto step = [this](SDL_Keycode key) {
        const Vec2f before = Map().pan = {100.0f, 100.0f};
        Hold(key, 3);
        game->TickOnly();
        return Vec2f{Map().pan.x - before.x, Map().pan.y - before.y};
    };
    Map().zoom = 3.9f;
    EXPECT_EQ(step(SDLK_RIGHT), (Vec2f{30.0f, 0.0f}));
    EXPECT_EQ(step(SDLK_LEFT), (Vec2f{-30.0f, 0.0f}));
    EXPECT_EQ(step(SDLK_UP), (Vec2f{0.0f, 30.0f}));
    EXPECT_EQ(step(SDLK_DOWN), (Vec2f{0.0f, -30.0f}));
    Map().zoom = 4.0f;
    EXPECT_EQ(step(SDLK_RIGHT), (Vec2f{6.0f, 0.0f}));
    EXPECT_EQ(step(SDLK_DOWN), (Vec2f{0.0f, -6.0f}));

    // The speed is taken before the zoom changes in the same tick.
    Map().zoom = 3.9f;
    game->KeyDown(SDLK_e);
    const Vec2f before = Map().pan;
    Hold(SDLK_RIGHT, 2);
    EXPECT_EQ(Map().pan.x - before.x, 12.0f);
}

TEST_F(MapEntityTest, ZoomsInsteadOfTheCameraWhileOpen) {
    Start(Options(kAmongIslands));
    Open();
    const float cameraZoom = game->World().camera->zoom;
    Map().zoom = 4.8f;
    game->KeyDown(SDLK_e);
    game->TickOnly();
    EXPECT_EQ(Map().zoom, 5.0f);
    game->TickOnly(3);
    EXPECT_EQ(Map().zoom, 5.0f);
    game->KeyDown(SDLK_q); // both at once: out first, then in
    game->TickOnly();
    EXPECT_FLOAT_EQ(Map().zoom, 4.95f);
    game->KeyUp(SDLK_e);
    game->TickOnly();
    EXPECT_FLOAT_EQ(Map().zoom, 4.455f);
    EXPECT_EQ(game->World().camera->zoom, cameraZoom);

    const float mapZoom = Map().zoom;
    Open();
    game->TickOnly(2);
    EXPECT_LT(game->World().camera->zoom, cameraZoom);
    // The three ticks that the key was held while the map was still open.
    EXPECT_NEAR(Map().zoom, mapZoom * 0.729f, 0.001f);
}

TEST_F(MapEntityTest, StaysDefinedAtVanishingZoom) {
    Start(Options(kAmongIslands));
    Open();
    game->KeyDown(SDLK_q);
    game->TickOnly(200);
    EXPECT_NEAR(Map().zoom / std::pow(0.9f, 200.0f), 1.0f, 1e-3f);
    CompareWithPainted();
    game->TickOnly(1500); // as small as a float gets, where a tenth of it is nothing
    const float least = Map().zoom;
    game->TickOnly(100);
    EXPECT_EQ(Map().zoom, least);
    EXPECT_GE(least, 0.0f);
    EXPECT_LT(least, std::numeric_limits<float>::min());
    EXPECT_GT(CompareWithPainted().squares, 100); // all of them in one place
}

TEST_F(MapEntityTest, PanComesToAStopFarOutside) {
    Start(Options(kAmongIslands));
    Open();
    game->KeyDown(SDLK_RIGHT);
    game->KeyDown(SDLK_DOWN);
    Map().pan = {268435000.0f, -268435000.0f}; // days of panning
    game->TickOnly(100);
    const Vec2f stopped = Map().pan;
    game->TickOnly(100);
    EXPECT_EQ(Map().pan, stopped);
    EXPECT_EQ(Map().GetCenterWorldPosition(), (Vec2i{2147483647, -2147483647 - 1}));
    EXPECT_EQ(CompareWithPainted().squares, 0);
    Map().zoom = 5.0f;
    CompareWithPainted();
}

TEST_F(MapEntityTest, ConvertsBetweenWorldAndMap) {
    Start(Options(kAmongIslands));
    Map().pan = {10.9f, -10.9f};
    EXPECT_EQ(Map().GetCenterWorldPosition(), (Vec2i{2457, -2457})); // 10 and -10 map units
    Map().pan = {0.0f, 0.0f};
    EXPECT_EQ(Map().GetCenterWorldPosition(), (Vec2i{0, 0}));
    Map().zoom = 2.0f;
    EXPECT_EQ(Map().WorldToMap({12288, -12288}), (Vec2i{740, 260}));
    // Truncation is toward the centre on both sides.
    EXPECT_EQ(Map().WorldToMap({200, -200}), (Vec2i{641, 359}));
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    Map().zoom = 1e30f;
    EXPECT_EQ(Map().WorldToMap({most, least}), (Vec2i{most, least + 360}));
}

TEST_F(MapEntityTest, ReadsDungeonsWhileCellsAreReplaced) {
    GameOptions options = Options(kAmongIslands, 640, 480);
    options.hardwareThreads = 4;
    Start(options);
    Open();
    Map().zoom = 4.0f;
    Map().showCompasses = true;
    // Jump between groups of islands faster than their dungeons are made.
    const Vec2i far{7 * 12288 + 12, 7 * 12288 + 12};
    for (int i = 0; i < 60; ++i) {
        game->World().player->PlaceAt(i % 2 == 0 ? far : kAmongIslands);
        game->Tick();
    }
    game->Settle();
    EXPECT_GT(CompareWithPainted().areas, 30);
}
