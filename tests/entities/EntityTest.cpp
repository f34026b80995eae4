// What no key reaches exactly: bounds of the map's zoom and panel, and a ship placed under way.
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "input/CMN_InputManager.h"
#include "support/Game.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>

namespace {

void Set(InputAction action, float value) {
    CMN_InputManager::GetInstance()->actions[Index(action)] = value;
}

// How many lines of the drawing log have both in them.
int Count(const std::string& log, const std::string& call, const std::string& color = "") {
    std::istringstream lines(log);
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
        count += static_cast<int>(line.find(call) != line.npos && line.find(color) != line.npos);
    }
    return count;
}

// The map, open in a window of an odd size, with the ship in cell (5, 4), which holds land.
class MapTest : public testing::Test {
protected:
    MapTest() {
        game.Tick();
        EXPECT_TRUE(game.Settle());
        game.Hold({SDLK_BACKSPACE});
    }

    Game game{{.width = 1283, .height = 721, .start = {67596, 55308}}};
    MapEntity& map = *game.World().map;
};

} // namespace

TEST(PlayerTest, StopsWhereItIsPlacedUnderWay) {
    Game game;
    PlayerEntity& player = *game.World().player;
    Set(InputAction::MoveVertical, 1.0f);
    game.Tick();
    player.PlaceAt({100, -30}); // where no key moves it on
    game.Tick(3);
    EXPECT_TRUE(player.position == (Vec2i{108, -12}) && player.exactPosition == (Vec2f{108, -12}));
    for (const float threshold : {0.8f, -0.8f}) { // moves nothing yet
        Set(InputAction::MoveVertical, threshold);
        Set(InputAction::MoveHorizontal, threshold);
        player.PlaceAt({100, 30});
        game.Tick();
        EXPECT_TRUE(player.position == (Vec2i{108, 36}) && player.direction == 0);
    }
    player.moveVector = {1.0f, 0.0f};
    player.targetTile = {124, 36}; // one tick away exactly, which does not end the move yet
    player.speed = 1000.0f;
    player.idle = false;
    game.Tick();
    EXPECT_TRUE(player.position == player.targetTile && !player.idle);
}

TEST_F(MapTest, ChangesItsViewAndSpeedAtZoomFourAndZoomsWithinFloats) {
    for (const auto& [zoom, step] : {std::pair{3.999f, 10.0f}, {4.0f, 2.0f}}) {
        map.zoom = zoom;
        const float before = map.pan.x;
        Set(InputAction::PanHorizontal, 1.0f);
        game.Tick();
        Set(InputAction::PanHorizontal, 0.0f);
        EXPECT_EQ(map.pan.x, before + step) << zoom;
        const std::string log = game.Frame();
        EXPECT_EQ(Count(log, "text \"(6,3)\"") == 1, zoom < 4.0f);
        EXPECT_EQ(Count(log, "fill ", " in 255,255,0,255") > 30, zoom >= 4.0f);
    }
    Set(InputAction::ZoomIn, 1.0f);
    Set(InputAction::ZoomOut, 0.5f);
    map.zoom = 4.8f;
    game.Tick(2);
    EXPECT_EQ(map.zoom, 5.0f);
    Set(InputAction::ZoomIn, 0.0f);
    game.Tick(1800);
    EXPECT_EQ(map.zoom, std::numeric_limits<float>::min()) << "smaller, a tenth would be nothing";
    EXPECT_GT(Count(game.Frame(), "text \""), 100) << "every land cell in one place";
    map.pan = {268435000.0f, -10.9f};
    EXPECT_EQ(map.GetCenterWorldPosition(), (Vec2i{2147483647, -2457}));
}

TEST_F(MapTest, CountsThePanelsEdgesAsInside) {
    for (const float beyond : {0.25f, 1.25f}) {
        const float x = 513.0f + beyond;
        const float y = 288.0f + beyond;
        for (const Vec2f offset : {Vec2f{x, 0}, Vec2f{-x, 0}, Vec2f{0, y}, Vec2f{0, -y}}) {
            map.pan = Vec2f{275.0f, 225.0f} - offset;
            const std::string log = game.Frame();
            EXPECT_EQ(Count(log, "text \"(5,4)\""), beyond < 1.0f) << offset.x << " " << offset.y;
            EXPECT_EQ(Count(log, "line ", " in 255,0,0,255"), beyond < 1.0f ? 2 : 0);
        }
    }
}
