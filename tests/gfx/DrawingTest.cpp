// What the drawing calls leave on the screen, read back pixel by pixel.
#include "gfx/GFX_GraphicsManager.h"

#include "entities/CameraEntity.h"
#include "entities/MapEntity.h"
#include "support/GameHarness.h"
#include "support/PaintedFrame.h"
#include "support/QuietStderr.h"
#include "support/Signal.h"
#include "support/SolidTexture.h"
#include "ui/DebugMenuEntity.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <limits>
#include <thread>
#include <vector>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

GFX_GraphicsManager& Graphics() {
    return *GFX_GraphicsManager::GetInstance();
}

// SDL's mutexes let their holder in again, so another thread has to try. It cannot be ended when it
// waits in vain, but the whole process can.
void RequireRenderLockFree() {
    Signal taken;
    std::thread other([&] {
        const MutexLock lock(Graphics().renderLock);
        taken.Raise();
    });
    if (!taken.Wait()) {
        std::cerr << "the render lock is still held" << std::endl;
        std::abort();
    }
    other.join();
}

} // namespace

TEST(DrawingTest, TheCameraLiesAtTheWindowsCentreAndTheWorldsYPointsUp) {
    struct Case {
        Vec2i offset; // from the camera
        float zoom;
        Vec2i expected;
    };
    const std::vector<Case> cases{{{0, 0}, 3.0f, {320, 240}}, // 479 - 239
                                  {{10, 20}, 1.0f, {330, 220}},
                                  {{3, -3}, 0.5f, {321, 241}}, // toward zero on both sides
                                  {{-3, 3}, 0.5f, {319, 239}},
                                  {{1, -1}, 2.9f, {322, 242}},
                                  {{5000, -5000}, 0.0f, {320, 240}},
                                  // What is far to one side stays there.
                                  {{1 << 30, 1 << 30}, 8.0f, {kHighest, 479 - kHighest}},
                                  {{-(1 << 30), -(1 << 30)}, 8.0f, {kLowest + 320, kHighest}}};
    const GameHarness game({.width = 641, .height = 479});
    for (const Case& c : cases) {
        const Vec2i camera{100, 700};
        const Vec2i point = Graphics().WorldToScreen(camera + c.offset, camera, c.zoom);
        EXPECT_EQ(point, c.expected) << point.x << ", " << point.y;
    }
    // The world wraps.
    EXPECT_EQ(Graphics().WorldToScreen({kLowest, kLowest}, {kHighest, kHighest}, 1.0f),
              (Vec2i{321, 239}));
}

TEST(DrawingTest, SpritesAreCentredOnTheirPointAndScaled) {
    struct Case {
        Vec2i source;
        int size; // world units; 0 for the source's own size
        float zoom;
        SDL_Rect expected;
    };
    // Drawn 8 right of and 6 above the camera.
    const std::vector<Case> cases{
        {{32, 32}, 0, 1.0f, {312, 218, 32, 32}},   {{31, 17}, 0, 1.0f, {313, 226, 31, 17}},
        {{31, 17}, 0, 0.5f, {317, 233, 15, 8}},    {{16, 16}, 24, 1.0f, {316, 222, 24, 24}},
        {{128, 64}, 32, 0.5f, {316, 229, 16, 16}}, {{16, 16}, 24, 2.9f, {309, 189, 69, 69}},
        {{32, 32}, 0, 0.0f, {0, 0, 0, 0}},         {{32, 32}, 24, 0.04f, {0, 0, 0, 0}}};
    GameHarness game({.width = 641, .height = 479});
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.source.x << " x " << c.source.y << " as " << c.size
                                        << " at zoom " << c.zoom);
        const SolidTexture image(c.source.x, c.source.y, kTestRed);
        game.Capture([&] {
            if (c.size == 0) {
                Graphics().DrawSprite(&image.sprite, {108, 106}, {100, 100}, c.zoom);
            } else {
                Graphics().DrawSpriteSized(&image.sprite, {108, 106}, {100, 100}, c.zoom, c.size);
            }
        });
        EXPECT_EQ(game.DrawnBounds(), c.expected);
        EXPECT_EQ(game.CountOf(kTestRed), c.expected.w * c.expected.h);
    }
}

TEST(DrawingTest, SpritesShowTheirPartOfTheImage) {
    GameHarness game;
    const SolidTexture image(20, 10, kTestRed, kTestGreen);
    Sprite sprite = image.sprite;
    sprite.source = {8, 2, 4, 4}; // two columns of either colour
    game.Capture([&] {
        Graphics().DrawSprite(&sprite, {0, 0}, {0, 0}, 1.0f);
        Graphics().DrawSpriteSized(&sprite, {100, 0}, {0, 0}, 1.0f, 40);
    });
    EXPECT_EQ(game.BoundsOf(kTestRed), (SDL_Rect{318, 220, 102, 40}));
    EXPECT_EQ(game.CountOf(kTestRed), 2 * 4 + 20 * 40);
    EXPECT_EQ(game.CountOf(kTestGreen), 2 * 4 + 20 * 40);
    EXPECT_TRUE(SameColor(game.Pixel(419, 240), kTestRed));
    EXPECT_TRUE(SameColor(game.Pixel(420, 240), kTestGreen));
}

TEST(DrawingTest, RectanglesTextAndLinesCountFromTheBottom) {
    GameHarness game;
    game.Capture([] {});
    PaintedFrame expected(game);
    // The stored width and height count, not the edges; of a text's place the left and the top.
    constexpr Rect place{0, 10, 100, 0, 40, 30};
    expected.Fill({10, 380, 40, 30}, kTestRed);
    expected.Outline({10, 380, 40, 30}, kTestGreen);
    expected.Text("beyond its place", 10, 380, kTestPink);
    expected.Text("half outside", -30, 470, {255, 255, 255, 255});
    expected.Fill({100, 380, 1, 21}, kTestRed);
    game.Capture([&] {
        Graphics().FillRect(place, kTestRed);
        Graphics().DrawRect(place, kTestGreen);
        Graphics().DrawText("beyond its place", place, kTestPink);
        Graphics().DrawTextAt("half outside", -30, 470);
        Graphics().DrawLine({100, 80}, {100, 100}, kTestRed);
    });
    EXPECT_EQ(expected.Difference(game), "");
}

TEST(DrawingTest, WhatReachesFarOutsideShowsInTheWindow) {
    GameHarness game;
    game.Capture([] {
        Graphics().DrawLine({0, 0}, {kHighest, kHighest}, kTestGreen);
        Graphics().DrawLine({100, 100}, {100, kLowest}, kTestRed); // down from y 380
        Graphics().DrawLine({kLowest, 50}, {kHighest, 50}, kTestPink);
        Graphics().DrawLine({kHighest, kHighest}, {kHighest, kLowest}, kTestRed);
    });
    EXPECT_EQ(game.BoundsOf(kTestRed), (SDL_Rect{100, 380, 1, 100}));
    EXPECT_EQ(game.BoundsOf(kTestGreen), (SDL_Rect{1, 0, 480, 480}));
    EXPECT_EQ(game.BoundsOf(kTestPink), (SDL_Rect{0, 430, 640, 1}));
    game.Capture([] {
        Graphics().FillRect({0, kLowest, kHighest, 0, kHighest, kHighest}, kTestRed);
        Graphics().FillRect({0, -50, 1000, 0, 1000000, 600}, kTestGreen);
        Graphics().DrawRect({0, 10, 470, 0, 1000000, 1000000}, kTestPink);
    });
    EXPECT_EQ(game.CountOf(kTestRed), 0);
    EXPECT_EQ(game.BoundsOf(kTestGreen), (SDL_Rect{0, 0, 640, 80}));
    EXPECT_EQ(game.BoundsOf(kTestPink), (SDL_Rect{10, 10, 630, 470}));
    const SolidTexture image(32, 32, kTestRed);
    game.Capture([&] {
        for (const std::int32_t far : {kLowest, kHighest, 1 << 30, -(1 << 30)}) {
            Graphics().DrawSprite(&image.sprite, {far, 0}, {0, 0}, 10.0f);
            Graphics().DrawSprite(&image.sprite, {0, far}, {0, 0}, 10.0f);
            Graphics().DrawTextureCentered(&image.info, {far, far});
            Graphics().DrawTextAt("far", far, far);
        }
    });
    EXPECT_EQ(game.DrawnBounds(), SDL_Rect{});
}

TEST(DrawingTest, CallsLeaveTheColourAndTheLockAsTheyWere) {
    const QuietStderr quiet;
    GameHarness game({.start = {6 * 12288, 3 * 12288}}); // on land
    game.TickOnly();
    game.Settle();
    WorldManager& world = game.World();
    for (bool WorldManager::*flag :
         {&WorldManager::renderCellBorder, &WorldManager::renderDungeonRooms,
          &WorldManager::renderMinSpanningTree, &WorldManager::renderHallways,
          &WorldManager::showPlayerInfo, &WorldManager::showLoadedAssets}) {
        world.*flag = true;
    }
    world.debugMenu->active = world.map->active = true;
    SDL_Renderer* renderer = Graphics().renderer;
    SDL_SetRenderDrawColor(renderer, 1, 2, 3, 4);
    const Rect rect{60, 10, 60, 10, 50, 50};
    const std::vector<std::function<void()>> calls{
        [&] { Graphics().DrawRect(rect, kTestRed); },
        [&] { Graphics().FillRect(rect, kTestRed); },
        [&] {
            Graphics().DrawLine({0, 0}, {9, 9}, kTestRed);
        },
        [&] { Graphics().DrawText("text", rect, kTestRed); },
        [&] { Graphics().DrawTextAt("text", 5, 5); },
        [&] { world.Render(); },
        [&] {
            world.map->zoom = 4.5f; // dungeons
            world.Render();
        }};
    for (std::size_t i = 0; i < calls.size(); ++i) {
        calls[i]();
        std::array<Uint8, 4> color{};
        SDL_GetRenderDrawColor(renderer, &color[0], &color[1], &color[2], &color[3]);
        EXPECT_EQ(color, (std::array<Uint8, 4>{1, 2, 3, 4})) << "call " << i;
        RequireRenderLockFree();
    }
}

TEST(DrawingTest, TextThatCannotBeRenderedPrintsALineOnEachCall) {
    for (const bool hasFont : {true, false}) {
        GameHarness game({.mode = hasFont ? "dev" : "no-font"});
        const char* text = hasFont ? "" : "text";
        for (int call = 0; call < 3; ++call) {
            const OutputCapture output;
            game.Capture([&] {
                Graphics().DrawTextAt(text, 50, 60);
                Graphics().DrawText(text, {100, 0, 100, 0, 100, 100}, kTestRed);
            });
            ASSERT_EQ(output.Lines().size(), 2U) << output.Text();
            for (const std::string& line : output.Lines()) {
                EXPECT_TRUE(line.starts_with("TTF_RenderText error: ")) << line;
            }
            EXPECT_EQ(game.DrawnBounds(), SDL_Rect{});
            RequireRenderLockFree();
        }
    }
}
