// The debug menu in the running game, driven by keys and compared with painted pictures.
#include "ui/DebugMenuEntity.h"

#include "entities/CameraEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "gfx/GFX_GraphicsManager.h"
#include "support/GameHarness.h"
#include "support/PaintedFrame.h"
#include "support/QuietStderr.h"
#include "support/WorldInvariants.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

namespace {

// Cell (5, 4), which holds land as two of its neighbours do.
constexpr Vec2i kAmongIslands{5 * 12288 + 6156, 4 * 12288 + 6156};
constexpr int kWidth = 1280;
constexpr int kHeight = 720;
constexpr std::size_t kRows = 9;

using Labels = std::array<std::string, kRows>;

const Labels kFirstLabels{
    "Render cell border : false",
    "Render dungeon rooms : false",
    "Render min spanning tree : false",
    "Render hallways : false",
    "Reset zoom",
    "Show player info",
    "Go to map location",
    "Show loaded assets",
    "Show compasses on map",
};

const Labels kSwitchedLabels{
    "Render cell border : true",
    "Render dungeon rooms : true",
    "Render min spanning tree : true",
    "Render hallways : true",
    "Reset zoom",
    "Hide player info",
    "Go to map location",
    "Show loaded assets",
    "Hide compasses on map",
};

GameOptions Options() {
    GameOptions options;
    options.width = kWidth;
    options.height = kHeight;
    options.start = kAmongIslands;
    options.zoom = "0.05"; // a whole cell in view
    return options;
}

class DebugMenuTest : public testing::Test {
protected:
    DebugMenuTest() : game(Options()) {
        game.TickOnly();
        game.Settle();
        game.TickOnly(600); // the camera comes to rest
    }

    WorldManager& World() const { return game.World(); }
    DebugMenuEntity& Menu() const { return *World().debugMenu; }
    MapEntity& Map() const { return *World().map; }
    PlayerEntity& Player() const { return *World().player; }

    void Show() { game.Tap(SDLK_BACKQUOTE); }

    /// Walks the selection from the first row to this one, counted from 1. The key moves the player
    /// as well, who then comes to rest.
    void WalkTo(std::size_t row) {
        for (std::size_t i = 1; i < row; ++i) {
            game.Tap(SDLK_s);
        }
        game.TickOnly(20);
    }

    void Press() { game.Tap(SDLK_RETURN); }

    /// Lets the cells around the player load after a jump.
    void Arrive() {
        game.TickOnly();
        game.Settle();
    }

    /// Compares the whole window with the scene as it is without the menu and the menu painted
    /// over.
    void CompareWithPainted(std::size_t selectedRow, const Labels& labels) {
        Menu().active = false;
        game.Capture();
        PaintedFrame expected(game);
        Menu().active = true;
        game.Capture();
        PaintMenu(expected, selectedRow, labels);
        EXPECT_EQ(expected.Difference(game), "") << "row " << selectedRow;
    }

    static void PaintMenu(PaintedFrame& frame, std::size_t selectedRow, const Labels& labels) {
        frame.Fill({30, 20, 270, 680}, {255, 255, 255, 255});
        frame.Outline({30, 20, 270, 680}, {0, 0, 255, 255});
        for (std::size_t row = 1; row <= kRows; ++row) {
            const SDL_Rect button{32, 22 * static_cast<int>(row), 260, 20};
            const bool selected = row == selectedRow;
            frame.Fill(button,
                       selected ? SDL_Color{200, 200, 200, 255} : SDL_Color{128, 128, 128, 255});
            frame.Outline(button, selected ? SDL_Color{255, 0, 0, 255} : SDL_Color{0, 0, 255, 255});
            frame.Text(labels[row - 1], button.x, button.y, {0, 0, 0, 255});
        }
    }

    /// The number of pixels of a colour to the right of the menu, where the overlays show.
    int CountPixels(SDL_Color color) {
        game.Capture();
        int count = 0;
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 301; x < kWidth; ++x) {
                count += SameColor(game.Pixel(x, y), color) ? 1 : 0;
            }
        }
        return count;
    }

    /// Presses a switch on and off again and checks flag, label and picture each time. Switched on,
    /// the scene must show at least so many more pixels of a colour.
    void CheckSwitch(std::size_t row, const bool& flag, SDL_Color color, int least) {
        WalkTo(row);
        EXPECT_FALSE(flag);
        const int before = CountPixels(color);
        const PaintedFrame off(game);

        Press();
        EXPECT_TRUE(flag);
        EXPECT_GE(CountPixels(color), before + least);
        Labels labels = kFirstLabels;
        labels[row - 1] = kSwitchedLabels[row - 1];
        CompareWithPainted(row, labels);

        Press();
        EXPECT_FALSE(flag);
        game.Capture();
        EXPECT_EQ(off.Difference(game), "");
    }

    QuietStderr quiet;
    GameHarness game;
};

} // namespace

TEST_F(DebugMenuTest, EveryLabelFitsItsButton) {
    const GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    for (const Labels& labels : {kFirstLabels, kSwitchedLabels}) {
        for (const std::string& label : labels) {
            int width = 0;
            int height = 0;
            ASSERT_EQ(TTF_SizeText(graphics.font->handle, label.c_str(), &width, &height), 0);
            EXPECT_GT(width, 0);
            EXPECT_LE(width, 260) << label;
            EXPECT_LE(height, 20) << label;
        }
    }
}

TEST_F(DebugMenuTest, IsHiddenUntilItsKeyIsReleased) {
    EXPECT_FALSE(Menu().active);
    game.Tap(SDLK_s); // a hidden menu does not move
    game.Tap(SDLK_RETURN);
    EXPECT_FALSE(World().renderCellBorder);
    EXPECT_FALSE(World().renderDungeonRooms);
    game.KeyDown(SDLK_BACKQUOTE);
    game.TickOnly(3);
    EXPECT_FALSE(Menu().active);
    game.KeyUp(SDLK_BACKQUOTE);
    game.TickOnly();
    EXPECT_TRUE(Menu().active);
    EXPECT_EQ(Menu().menuWindow.fillColor.a, 128); // does not show in the picture
    CompareWithPainted(1, kFirstLabels);

    game.Tap(SDLK_s);
    Show(); // hides it
    EXPECT_FALSE(Menu().active);
    game.Tap(SDLK_s);
    Show();
    CompareWithPainted(2, kFirstLabels);
}

TEST_F(DebugMenuTest, SelectionWalksDownAndUpAndStopsAtTheEnds) {
    Show();
    game.Tap(SDLK_w);
    CompareWithPainted(1, kFirstLabels);
    for (std::size_t row = 2; row <= kRows; ++row) {
        game.Tap(SDLK_s);
        CompareWithPainted(row, kFirstLabels);
    }
    for (const SDL_Keycode key : {SDLK_s, SDLK_a, SDLK_d}) {
        game.Tap(key);
        CompareWithPainted(kRows, kFirstLabels);
    }
    for (std::size_t row = kRows - 1; row >= 1; --row) {
        game.Tap(SDLK_w);
        CompareWithPainted(row, kFirstLabels);
    }
}

TEST_F(DebugMenuTest, SwitchesTheCellBorder) {
    Show();
    CheckSwitch(1, World().renderCellBorder, {255, 0, 0, 255}, 600);
}

TEST_F(DebugMenuTest, SwitchesTheDungeonRooms) {
    Show();
    CheckSwitch(2, World().renderDungeonRooms, {255, 255, 0, 255}, 100);
}

TEST_F(DebugMenuTest, SwitchesTheSpanningTree) {
    Show();
    CheckSwitch(3, World().renderMinSpanningTree, {0, 255, 0, 255}, 100);
}

TEST_F(DebugMenuTest, SwitchesTheHallways) {
    Show();
    CheckSwitch(4, World().renderHallways, {255, 0, 0, 255}, 100);
}

TEST_F(DebugMenuTest, SwitchesThePlayerInformation) {
    Show();
    CheckSwitch(6, World().showPlayerInfo, {255, 255, 255, 255}, 100);
}

TEST_F(DebugMenuTest, SwitchesTheListOfLoadedData) {
    Show();
    CheckSwitch(8, World().showLoadedAssets, {255, 255, 255, 255}, 100);
}

TEST_F(DebugMenuTest, SwitchesTheCompassPointsOfTheMap) {
    Show();
    game.Tap(SDLK_BACKSPACE);
    Map().zoom = 4.0f;
    CheckSwitch(9, Map().showCompasses, {255, 128, 0, 255}, 16);
}

TEST_F(DebugMenuTest, SwitchesAreIndependent) {
    Show();
    WalkTo(1);
    Press();
    for (std::size_t row = 2; row <= kRows; ++row) {
        game.Tap(SDLK_s);
        Press();
    }
    EXPECT_TRUE(World().renderCellBorder);
    EXPECT_TRUE(World().renderDungeonRooms);
    EXPECT_TRUE(World().renderMinSpanningTree);
    EXPECT_TRUE(World().renderHallways);
    EXPECT_TRUE(World().showPlayerInfo);
    EXPECT_TRUE(Map().showCompasses);
    EXPECT_TRUE(World().showLoadedAssets);
    World().showLoadedAssets = false; // the list would cover the menu
    Arrive();                         // row 7 has moved the player
    CompareWithPainted(kRows, kSwitchedLabels);
}

TEST_F(DebugMenuTest, ResetsTheZoom) {
    Show();
    WalkTo(5);
    for (const float zoom : {0.0f, 0.013f, 9.7f}) {
        World().camera->zoom = zoom;
        Press();
        EXPECT_EQ(World().camera->zoom, 1.0f);
    }
    CompareWithPainted(5, kFirstLabels);
}

TEST_F(DebugMenuTest, GoesToTheMapsCenter) {
    Show();
    WalkTo(7);
    Press(); // the map was never opened and shows the world's origin
    EXPECT_EQ(Player().position, (Vec2i{12, 12}));
    const float factor = 50.0f / 12288.0f;
    EXPECT_EQ(Map().pan, (Vec2f{12.0f * factor, 12.0f * factor}));

    game.Tap(SDLK_BACKSPACE);
    game.KeyDown(SDLK_UP);
    game.KeyDown(SDLK_RIGHT);
    game.TickOnly(30);
    game.KeyUp(SDLK_UP);
    game.KeyUp(SDLK_RIGHT);
    game.TickOnly();
    const Vec2i shown = Map().GetCenterWorldPosition();
    EXPECT_GT(shown.x, 12288);
    Press();
    const Vec2i tileCenter{shown.x - shown.x % 24 + 12, shown.y - shown.y % 24 + 12};
    EXPECT_EQ(Player().position, tileCenter);
    EXPECT_EQ(Map().WorldToMap(Player().position), Map().center);
    Arrive();
    EXPECT_NE(World().cellGrid.FindLoaded(tileCenter / 12288), nullptr);
    CompareWithPainted(7, kFirstLabels);
}

TEST_F(DebugMenuTest, GoingToTheMapsCenterEndsAMove) {
    Player().PlaceAt({6156, 6156}); // open water
    Show();
    WalkTo(7);
    Map().pan = {400.0f, 400.0f};
    game.KeyDown(SDLK_RETURN);
    game.TickOnly(3);
    // The player sets out in the tick that presses the button: the player comes before the menu.
    game.KeyDown(SDLK_d);
    game.KeyUp(SDLK_RETURN);
    game.TickOnly();
    game.KeyUp(SDLK_d);
    const Vec2i placed = Player().position;
    EXPECT_EQ(placed, (Vec2i{98304 + 12, 98304 + 12}));
    game.TickOnly(10);
    EXPECT_EQ(Player().position, placed);

    game.KeyDown(SDLK_w); // and a new move starts from there
    game.TickOnly(2);
    EXPECT_EQ(Player().position, (Vec2i{placed.x, placed.y + 24}));
}

TEST_F(DebugMenuTest, ManyJumpsLeaveTheWorldInOrder) {
    SlotModel model;
    model.MoveTo(Player().position / 12288);
    Show();
    WalkTo(7);
    std::mt19937 random(2024);
    // Near the start, far beyond the range that cell ids can tell apart, and beyond the world.
    const std::array<float, 3> ranges{700.0f, 5000000.0f, 20000000.0f};
    for (int jump = 1; jump <= 1000; ++jump) {
        const float range = ranges[static_cast<std::size_t>(jump % 3)];
        std::uniform_real_distribution<float> place(-0.5f * range, range);
        Map().pan = {place(random), place(random)};
        Press();
        model.MoveTo(Player().position / 12288);
        if (jump % 50 == 0) {
            Arrive();
            ASSERT_NO_FATAL_FAILURE(CheckWorldAtRest(model));
        }
    }
}

TEST_F(DebugMenuTest, AMapBeyondTheWorldLeadsWhereTheWorldBeginsAnew) {
    Show();
    WalkTo(7);
    Map().pan = {2e8f, -2e8f};
    Press();
    // The centre of the easternmost tile lies beyond the edge, where the world begins anew.
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    EXPECT_LT(Player().position.x, least + 24);
    EXPECT_LT(Player().position.y, least + 24);
    Arrive();
    game.Tick(3);
}
