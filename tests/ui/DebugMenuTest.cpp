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

class DebugMenuTest : public testing::Test {
protected:
    DebugMenuTest() {
        game.TickOnly();
        game.Settle();
        game.TickOnly(600); // the camera comes to rest
        game.Tap(SDLK_BACKQUOTE);
    }

    WorldManager& World() const { return game.World(); }
    DebugMenuEntity& Menu() const { return *World().debugMenu; }
    MapEntity& Map() const { return *World().map; }
    PlayerEntity& Player() const { return *World().player; }

    /// Moves the selection down by so many rows. The key moves the player as well, who then comes
    /// to rest.
    void WalkDown(std::size_t rows) {
        for (std::size_t i = 0; i < rows; ++i) {
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

    /// The flags that the rows switch, by row.
    std::array<bool, kRows> Flags() const {
        return {World().renderCellBorder,
                World().renderDungeonRooms,
                World().renderMinSpanningTree,
                World().renderHallways,
                false,
                World().showPlayerInfo,
                false,
                World().showLoadedAssets,
                Map().showCompasses};
    }

    /// Compares the whole window with the scene as it is without the menu and the menu painted
    /// over.
    void CompareWithPainted(std::size_t selectedRow, const Labels& labels = kFirstLabels) {
        Menu().active = false;
        game.Capture();
        PaintedFrame expected(game);
        Menu().active = true;
        game.Capture();
        PaintMenu(expected, selectedRow, labels);
        EXPECT_EQ(expected.Difference(game), "") << "row " << selectedRow;
    }

    /// Rows are counted from 1.
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

    /// Presses the selected row, a switch, on and off again and checks flags, labels and picture
    /// each time. Switched on, the scene must show at least so many more pixels of a colour.
    void CheckSwitch(std::size_t row, SDL_Color color, int least) {
        SCOPED_TRACE(kFirstLabels[row - 1]);
        const int before = CountPixels(color);
        const PaintedFrame off(game);

        Press();
        std::array<bool, kRows> flags{};
        flags[row - 1] = true;
        EXPECT_EQ(Flags(), flags);
        EXPECT_GE(CountPixels(color), before + least);
        Labels labels = kFirstLabels;
        labels[row - 1] = kSwitchedLabels[row - 1];
        CompareWithPainted(row, labels);

        Press();
        EXPECT_EQ(Flags(), (std::array<bool, kRows>{}));
        game.Capture();
        EXPECT_EQ(off.Difference(game), "");
    }

    QuietStderr quiet;
    GameHarness game{{.width = kWidth,
                      .height = kHeight,
                      .start = kAmongIslands,
                      .zoom = "0.05"}}; // a whole cell in view
};

} // namespace

TEST_F(DebugMenuTest, EveryLabelFitsItsButton) {
    const GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    for (const Labels& labels : {kFirstLabels, kSwitchedLabels}) {
        for (const std::string& label : labels) {
            int width = 0;
            int height = 0;
            ASSERT_EQ(TTF_SizeText(graphics.font->handle, label.c_str(), &width, &height), 0);
            EXPECT_LE(width, 260) << label;
            EXPECT_LE(height, 20) << label;
        }
    }
}

TEST_F(DebugMenuTest, KeepsItsSelectionWhileHidden) {
    EXPECT_EQ(Menu().menuWindow.fillColor.a, 128); // does not show in the picture
    game.Tap(SDLK_s);
    game.Tap(SDLK_BACKQUOTE);
    EXPECT_FALSE(Menu().active);
    game.Tap(SDLK_s);
    Press();
    EXPECT_EQ(Flags(), (std::array<bool, kRows>{}));
    game.Tap(SDLK_BACKQUOTE);
    CompareWithPainted(2);
}

TEST_F(DebugMenuTest, SelectionWalksDownAndUpAndStopsAtTheEnds) {
    game.Tap(SDLK_w);
    CompareWithPainted(1);
    for (std::size_t row = 2; row <= kRows; ++row) {
        game.Tap(SDLK_s);
        CompareWithPainted(row);
    }
    for (const SDL_Keycode key : {SDLK_s, SDLK_a, SDLK_d}) {
        game.Tap(key);
        CompareWithPainted(kRows);
    }
    for (std::size_t row = kRows - 1; row >= 1; --row) {
        game.Tap(SDLK_w);
        CompareWithPainted(row);
    }
}

TEST_F(DebugMenuTest, SwitchesShowTheirOverlaysAndLabels) {
    CheckSwitch(1, {255, 0, 0, 255}, 600);
    WalkDown(1);
    CheckSwitch(2, {255, 255, 0, 255}, 100);
    WalkDown(1);
    CheckSwitch(3, {0, 255, 0, 255}, 100);
    WalkDown(1);
    CheckSwitch(4, {255, 0, 0, 255}, 100);
    WalkDown(2);
    CheckSwitch(6, {255, 255, 255, 255}, 100);
    WalkDown(2);
    CheckSwitch(8, {255, 255, 255, 255}, 100);
    WalkDown(1);
    game.Tap(SDLK_BACKSPACE);
    Map().zoom = 4.0f;
    CheckSwitch(9, {255, 128, 0, 255}, 16);
}

TEST_F(DebugMenuTest, ResetsTheZoom) {
    WalkDown(4);
    for (const float zoom : {0.0f, 0.013f, 9.7f}) {
        World().camera->zoom = zoom;
        Press();
        EXPECT_EQ(World().camera->zoom, 1.0f);
    }
    CompareWithPainted(5);
}

TEST_F(DebugMenuTest, GoesToTheMapsCenter) {
    WalkDown(6);
    Press(); // the map was never opened and shows the world's origin
    EXPECT_EQ(Player().position, (Vec2i{12, 12}));
    const float factor = 50.0f / 12288.0f;
    EXPECT_EQ(Map().pan, (Vec2f{12.0f * factor, 12.0f * factor}));
    EXPECT_EQ(Player().exactPosition, (Vec2f{12.0f, 12.0f})) << "a move would start elsewhere";

    game.Tap(SDLK_BACKSPACE);
    Map().pan = {433.3f, 415.9f};
    const Vec2i shown = Map().GetCenterWorldPosition();
    Press();
    const Vec2i tileCenter{shown.x - shown.x % 24 + 12, shown.y - shown.y % 24 + 12};
    EXPECT_EQ(Player().position, tileCenter);
    EXPECT_EQ(Map().WorldToMap(Player().position), Map().center);
    Arrive();
    EXPECT_NE(World().cellGrid.FindLoaded(tileCenter / 12288), nullptr);
    CompareWithPainted(7);

    // Beyond the world's edge it begins anew.
    Map().pan = {2e8f, -2e8f};
    Press();
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    EXPECT_LT(Player().position.x, least + 24);
    EXPECT_LT(Player().position.y, least + 24);
    Arrive();
    game.Tick(3);
}

TEST_F(DebugMenuTest, ManyJumpsLeaveTheWorldInOrder) {
    SlotModel model;
    model.MoveTo(Player().position / 12288);
    WalkDown(6);
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
