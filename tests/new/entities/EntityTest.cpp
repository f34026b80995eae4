// What the scenes leave of the entities: exact bounds, extremes, and states that keys do not reach.
#include "entities/CameraEntity.h"
#include "entities/HudEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "gfx/GFX_GraphicsManager.h"
#include "input/CMN_InputManager.h"
#include "support/DrawLog.h"
#include "support/Game.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <regex>

namespace {

constexpr std::int32_t kLow = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHigh = std::numeric_limits<std::int32_t>::max();
constexpr Vec2i kLandOrigin{6 * 12288, 3 * 12288};

void Set(InputAction action, float value) {
    CMN_InputManager::GetInstance()->actions[Index(action)] = value;
}

// How many lines of the drawing log match.
std::ptrdiff_t Count(const std::string& log, const char* pattern) {
    const std::regex regex(pattern);
    return std::distance(std::sregex_iterator(log.begin(), log.end(), regex), {});
}

} // namespace

TEST(PlayerTest, MovesOnlyBeyondTheThresholdAndSidewaysFirst) {
    constexpr float threshold = 0.8f;
    const float beyond = std::nextafter(threshold, 1.0f);
    struct Case {
        float horizontal;
        float vertical;
        Vec2i step;
    };
    Game game;
    PlayerEntity& player = *game.World().player;
    for (const Case& c : {Case{threshold, threshold, {}},
                          {-threshold, -threshold, {}},
                          {beyond, beyond, {24, 0}},
                          {-beyond, -beyond, {-24, 0}},
                          {threshold, beyond, {0, 24}},
                          {-threshold, -beyond, {0, -24}}}) {
        player.PlaceAt({6156, 6156});
        Set(InputAction::MoveHorizontal, c.horizontal);
        Set(InputAction::MoveVertical, c.vertical);
        game.Tick(2);
        EXPECT_EQ(player.position, (Vec2i{6156, 6156} + c.step))
            << c.horizontal << " " << c.vertical;
    }
}

TEST(PlayerTest, IsPlacedByTheSignedRemainderAndStopsThere) {
    Game game;
    PlayerEntity& player = *game.World().player;
    for (const auto& [place, expected] : {std::pair{Vec2i{100, -30}, Vec2i{108, -12}},
                                          {{-5, 50}, {12, 60}},
                                          {{24, 47}, {36, 36}},
                                          {{kLow, kHigh - 10}, {kLow + 20, kHigh - 19}}}) {
        Set(InputAction::MoveVertical, 1.0f);
        player.PlaceAt({6156, 6156});
        game.Tick(); // under way
        Set(InputAction::MoveVertical, 0.0f);
        player.PlaceAt(place);
        EXPECT_EQ(player.position, expected);
        EXPECT_EQ(player.exactPosition, ToVec2f(expected));
        game.Tick(3);
        EXPECT_EQ(player.position, expected) << "the move goes on";
        EXPECT_EQ(player.direction, 0);
    }
}

TEST(CameraTest, FollowsWithADeadZoneInWindowPixels) {
    struct Case {
        float zoom;
        Vec2i offset; // of the target, in world units
        Vec2i move;
    };
    const Game game({.width = 1289, .height = 739}); // half 644 x 369, a fifth of it 128 x 73
    CameraEntity& camera = *game.World().camera;
    const Vec2i target = game.World().player->position;
    for (const Case& c : {Case{1.0f, {1000, 0}, {872, 0}},
                          {1.0f, {-129, 74}, {-1, 1}},
                          {1.0f, {128, -73}, {0, 0}},
                          {0.5f, {258, -148}, {1, -1}},
                          {2.0f, {100, 100}, {72, 127}},
                          {0.0f, {1000000, 1000000}, {0, 0}}}) {
        camera.zoom = c.zoom;
        camera.position = target - c.offset;
        camera.Update();
        EXPECT_EQ(camera.position, target - c.offset + c.move) << c.zoom << " " << c.offset.x;
    }
    // The target lies nearer across the end of the world than the other way round.
    camera.zoom = 1.0f;
    camera.position = {kHigh - 100, 0};
    game.World().player->position = {kLow + 99, 0};
    camera.Update();
    EXPECT_EQ(camera.position, (Vec2i{kHigh - 28, 0}));
}

TEST(MapTest, ChangesItsViewAndSpeedAtZoomFourAndZoomsWithinFloats) {
    Game game({.width = 1283, .height = 721, .start = {67596, 55308}});
    game.Tick();
    ASSERT_TRUE(game.Settle());
    game.Hold(SDLK_BACKSPACE);
    MapEntity& map = *game.World().map;
    for (const auto& [zoom, step] : {std::pair{3.999f, 10.0f}, {4.0f, 2.0f}}) {
        map.zoom = zoom;
        const float before = map.pan.x;
        Set(InputAction::PanHorizontal, 1.0f);
        game.Tick();
        Set(InputAction::PanHorizontal, 0.0f);
        EXPECT_EQ(map.pan.x, before + step) << zoom;
        const std::string log = game.Frame();
        EXPECT_EQ(Count(log, "text \"\\(6,3\\)\"") == 1, zoom < 4.0f);
        EXPECT_EQ(Count(log, "fill .* in 255,255,0,255") > 30, zoom >= 4.0f);
    }
    Set(InputAction::ZoomIn, 1.0f);
    map.zoom = 4.8f;
    game.Tick(2);
    EXPECT_EQ(map.zoom, 5.0f);
    Set(InputAction::ZoomOut, 1.0f); // both at once: out first, then in
    game.Tick();
    EXPECT_FLOAT_EQ(map.zoom, 4.95f);
    Set(InputAction::ZoomIn, 0.0f);
    game.Tick(1100);
    EXPECT_EQ(map.zoom, std::numeric_limits<float>::min()) << "smaller, a tenth would be nothing";
    EXPECT_GT(Count(game.Frame(), "text \""), 100) << "every land cell in one place";
    map.zoom = 1e30f;
    EXPECT_EQ(map.WorldToMap({kHigh, -kHigh}), (Vec2i{kHigh, kLow + map.center.y}));
    map.pan = {268435000.0f, -10.9f};
    EXPECT_EQ(map.GetCenterWorldPosition(), (Vec2i{kHigh, -2457}));
}

TEST(MapTest, CountsThePanelsEdgesAsInside) {
    Game game({.width = 1283, .height = 721, .start = {67596, 55308}}); // in cell (5, 4), land
    game.Tick();
    game.Hold(SDLK_BACKSPACE);
    MapEntity& map = *game.World().map;
    for (const float beyond : {0.25f, 1.25f}) {
        const float x = 513.0f + beyond;
        const float y = 288.0f + beyond;
        for (const Vec2f offset : {Vec2f{x, 0}, Vec2f{-x, 0}, Vec2f{0, y}, Vec2f{0, -y}}) {
            map.pan = Vec2f{275.0f, 225.0f} - offset;
            const std::string log = game.Frame();
            EXPECT_EQ(Count(log, "text \"\\(5,4\\)\""), beyond < 1.0f)
                << offset.x << " " << offset.y;
            EXPECT_EQ(Count(log, "line .* in 255,0,0,255"), beyond < 1.0f ? 2 : 0);
        }
    }
}

TEST(TerrainTest, DrawsTheTilesOfTheWindowOfZoomOneWithinTheCell) {
    // 481 x 361: at zoom 1 the window reaches 240 units to each side and 180 up and down.
    struct Case {
        Vec2i camera; // from the cell's origin
        std::ptrdiff_t tiles;
    };
    Game game({.width = 481, .height = 361, .start = kLandOrigin});
    game.Tick();
    ASSERT_TRUE(game.Settle());
    TerrainCellEntity& cell = *game.World().cellGrid.FindLoaded({6, 3});
    CameraEntity& camera = *game.World().camera;
    for (const Case& c : {Case{{6156, 6156}, 21 * 16},
                          {{0, 0}, 11 * 8},
                          {{12288, 12288}, 10 * 8},
                          {{12288 + 239, 6156}, 16},
                          {{12288 + 240, 6156}, 0},
                          {{6156, 12288 + 179}, 21},
                          {{6156, 12288 + 240}, 0},
                          {{-240, 6156}, 16},
                          {{-241, 6156}, 0},
                          {{6156, -203}, 21},
                          {{6156, -204}, 0}}) {
        for (const float zoom : {0.5f, 0.03f}) {
            camera.position = kLandOrigin + c.camera;
            camera.zoom = zoom;
            TakeDrawLog();
            cell.Render();
            EXPECT_EQ(Count(TakeDrawLog(), "copy (image|terrain_transition).png"),
                      zoom < 0.04f ? 0 : c.tiles)
                << c.camera.x << " " << c.camera.y;
        }
    }
    EXPECT_EQ(game.World().GetTileAt({-1, -1}), kTileEmpty);
    EXPECT_EQ(cell.TileAt(kLandOrigin - Vec2i{25, 0}), kTileEmpty);
    EXPECT_EQ(cell.TileAt(kLandOrigin + Vec2i{12288, 0}), kTileEmpty);
}

TEST(RadarTest, CutsFarIconsToItsRim) {
    Game game;
    game.Tick(); // the clusters around are held from now on
    HudEntity& hud = dynamic_cast<HudEntity&>(*game.World().layers[kHudLayer][0]);
    for (const auto& [player, icon] : {std::pair{Vec2i{5, 3}, Vec2i{20, 0}}, // land in cell (6, 3)
                                       {{6, 5}, {0, 40}},
                                       {{3, 0}, {35, -35}},
                                       {{9, 3}, {-50, 0}}}) {
        game.World().player->position = CellOrigin(player) + Vec2i{6144, 6144};
        hud.Update();
        EXPECT_EQ(std::ranges::count(hud.icons, hud.position + icon), 1)
            << player.x << " " << player.y;
    }
    game.World().player->position = {kHigh, kHigh};
    hud.Update();
    EXPECT_TRUE(hud.icons.empty());
}
