// What the drawing calls leave on the screen, read back pixel by pixel.
#include "gfx/GFX_GraphicsManager.h"

#include "entities/CameraEntity.h"
#include "entities/MapEntity.h"
#include "support/GameHarness.h"
#include "support/PaintedFrame.h"
#include "support/SolidTexture.h"
#include "ui/DebugMenuEntity.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

GFX_GraphicsManager& Graphics() {
    return *GFX_GraphicsManager::GetInstance();
}

GameOptions Window(int width, int height, const char* mode = "dev") {
    GameOptions options;
    options.width = width;
    options.height = height;
    options.mode = mode;
    return options;
}

} // namespace

TEST(DrawingTest, TheCameraLiesAtTheWindowsCentreAndTheWorldsYPointsUp) {
    struct Case {
        Vec2i window;
        Vec2i world;
        Vec2i camera;
        float zoom;
        Vec2i expected;
    };
    const std::vector<Case> cases{
        {{640, 480}, {500, 700}, {500, 700}, 3.0f, {320, 240}},
        {{641, 479}, {500, 700}, {500, 700}, 1.0f, {320, 240}}, // 479 - 239
        {{640, 480}, {110, 120}, {100, 100}, 1.0f, {330, 220}},
        {{640, 480}, {103, 97}, {100, 100}, 0.5f, {321, 241}}, // toward zero on both sides
        {{640, 480}, {97, 103}, {100, 100}, 0.5f, {319, 239}},
        {{640, 480}, {101, 99}, {100, 100}, 2.9f, {322, 242}},
        {{640, 480}, {5000, -5000}, {100, 100}, 0.0f, {320, 240}},
        // The world wraps, the window does not: what is far to one side stays there.
        {{640, 480}, {kLowest, kLowest}, {kHighest, kHighest}, 1.0f, {321, 239}},
        {{640, 480}, {1 << 30, 1 << 30}, {0, 0}, 8.0f, {kHighest, 480 - kHighest}},
        {{640, 480}, {-(1 << 30), -(1 << 30)}, {0, 0}, 8.0f, {kLowest + 320, kHighest}}};
    for (const Case& c : cases) {
        const GameHarness game(Window(c.window.x, c.window.y));
        EXPECT_EQ(Graphics().screenCenter, (Vec2i{c.window.x / 2, c.window.y / 2}));
        const Vec2i point = Graphics().WorldToScreen(c.world, c.camera, c.zoom);
        EXPECT_EQ(point, c.expected) << point.x << ", " << point.y;
    }
}

TEST(DrawingTest, SpritesAreCentredOnTheirPointAndScaled) {
    struct Case {
        Vec2i window;
        Vec2i source;
        int size; // world units; 0 for the source's own size
        float zoom;
        SDL_Rect expected;
    };
    // Drawn 8 right of and 6 above the camera.
    const std::vector<Case> cases{{{640, 480}, {32, 32}, 0, 1.0f, {312, 218, 32, 32}},
                                  {{640, 480}, {32, 32}, 0, 0.5f, {316, 229, 16, 16}},
                                  {{641, 479}, {31, 17}, 0, 1.0f, {313, 226, 31, 17}},
                                  {{641, 479}, {31, 17}, 0, 0.5f, {317, 233, 15, 8}},
                                  {{640, 480}, {16, 16}, 24, 1.0f, {316, 222, 24, 24}},
                                  {{640, 480}, {128, 64}, 32, 0.5f, {316, 229, 16, 16}},
                                  {{640, 480}, {16, 16}, 24, 2.9f, {309, 189, 69, 69}},
                                  {{640, 480}, {32, 32}, 0, 0.0f, {0, 0, 0, 0}},
                                  {{640, 480}, {32, 32}, 24, 0.04f, {0, 0, 0, 0}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.source.x << " x " << c.source.y << " as " << c.size
                                        << " at zoom " << c.zoom);
        GameHarness game(Window(c.window.x, c.window.y));
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

TEST(DrawingTest, NothingIsDrawnOfNothing) {
    GameHarness game;
    game.Capture([] {
        Graphics().DrawSprite(nullptr, {0, 0}, {0, 0}, 1.0f);
        Graphics().DrawSpriteSized(nullptr, {0, 0}, {0, 0}, 1.0f, 24);
        Graphics().DrawTextureCentered(nullptr, {320, 240});
    });
    EXPECT_EQ(game.DrawnBounds(), SDL_Rect{});
}

TEST(DrawingTest, CentredImagesIgnoreTheWorld) {
    for (const Vec2i size : {Vec2i{32, 16}, {33, 17}, {1, 1}}) {
        GameHarness game;
        const SolidTexture image(size.x, size.y, kTestRed);
        game.Capture([&] { Graphics().DrawTextureCentered(&image.info, {100, 60}); });
        EXPECT_EQ(game.DrawnBounds(),
                  (SDL_Rect{100 - size.x / 2, 60 - size.y / 2, size.x, size.y}));
    }
}

TEST(DrawingTest, RectanglesCountFromTheBottomAndKeepTheirStoredSize) {
    struct Case {
        Rect rect;
        SDL_Rect expected;
    };
    const std::vector<Case> cases{{{300, 30, 700, 20, 270, 680}, {30, 20, 270, 680}},
                                  {{0, 10, 100, 0, 40, 30}, {10, 620, 40, 30}},
                                  {{640, 0, 720, 0, 1280, 720}, {0, 0, 1280, 720}},
                                  {{50, 40, 5, 0, 10, 50}, {40, 715, 10, 5}}};
    for (const Case& c : cases) {
        GameHarness game(Window(1280, 720));
        game.Capture([&] { Graphics().FillRect(c.rect, kTestRed); });
        EXPECT_EQ(game.DrawnBounds(), c.expected);
        EXPECT_EQ(game.CountOf(kTestRed), c.expected.w * c.expected.h);
    }
    GameHarness game(Window(1280, 720));
    game.Capture([&] { Graphics().DrawRect(cases[0].rect, kTestRed); });
    EXPECT_EQ(game.DrawnBounds(), cases[0].expected);
    EXPECT_EQ(game.CountOf(kTestRed), 2 * (270 + 680) - 4);
}

TEST(DrawingTest, LinesCountFromTheBottom) {
    GameHarness game;
    game.Capture([] { Graphics().DrawLine({10, 20}, {30, 20}, kTestRed); });
    EXPECT_EQ(game.DrawnBounds(), (SDL_Rect{10, 460, 21, 1}));
    game.Capture([] { Graphics().DrawLine({10, 20}, {14, 24}, kTestRed); });
    EXPECT_EQ(game.CountOf(kTestRed), 5);
    EXPECT_TRUE(SameColor(game.Pixel(10, 460), kTestRed));
    EXPECT_TRUE(SameColor(game.Pixel(14, 456), kTestRed));
}

TEST(DrawingTest, WhatReachesFarOutsideShowsInTheWindow) {
    GameHarness game;
    game.Capture([] {
        Graphics().DrawLine({100, 100}, {100, kLowest}, kTestRed);    // down from y 380
        Graphics().DrawLine({200, 100}, {200, kHighest}, kTestGreen); // up from y 380
        Graphics().DrawLine({kLowest, 50}, {kHighest, 50}, kTestPink);
    });
    EXPECT_EQ(game.BoundsOf(kTestRed), (SDL_Rect{100, 380, 1, 100}));
    EXPECT_EQ(game.BoundsOf(kTestGreen), (SDL_Rect{200, 0, 1, 381}));
    EXPECT_EQ(game.BoundsOf(kTestPink), (SDL_Rect{0, 430, 640, 1}));
    // A line to the far corner goes there and nowhere else.
    game.Capture([] {
        Graphics().DrawLine({0, 0}, {kHighest, kHighest}, kTestRed);
        Graphics().DrawLine({kHighest, kHighest}, {kHighest, kLowest}, kTestRed);
    });
    EXPECT_EQ(game.CountOf(kTestRed), 480);
    EXPECT_TRUE(SameColor(game.Pixel(479, 1), kTestRed));
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

TEST(DrawingTest, TheRenderersColourIsWhatItWasBefore) {
    const GameHarness game;
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
        [&] {
            game.World().showPlayerInfo = game.World().renderCellBorder = true;
            game.World().debugMenu->Render();
            game.World().map->Render();
            game.World().Render();
        }};
    for (std::size_t i = 0; i < calls.size(); ++i) {
        calls[i]();
        SDL_Color color{};
        SDL_GetRenderDrawColor(renderer, &color.r, &color.g, &color.b, &color.a);
        EXPECT_TRUE(SameColor(color, {1, 2, 3, 4}) && color.a == 4) << "call " << i;
    }
}

TEST(DrawingTest, TextStandsAtItsCornerInItsColourAndNaturalSize) {
    GameHarness game;
    game.World().camera->zoom = 0.25f; // text does not care
    game.Capture([] {});
    PaintedFrame expected(game);
    expected.Text("Neighbours 12 (y)", 50, 60, {255, 255, 255, 255});
    expected.Text("Go!", 300, 480 - 100, kTestRed);
    expected.Text("half outside", -30, 470, {255, 255, 255, 255});
    game.Capture([] {
        Graphics().DrawTextAt("Neighbours 12 (y)", 50, 60);
        Graphics().DrawText("Go!", {1, 300, 100, 77, 3, -5}, kTestRed); // left and top count
        Graphics().DrawTextAt("half outside", -30, 470);
    });
    EXPECT_EQ(expected.Difference(game), "");
    EXPECT_GT(game.CountOf(kTestRed), 20);
}

TEST(DrawingTest, TextThatCannotBeRenderedPrintsALineOnEachCall) {
    for (const char* mode : {"dev", "no-font"}) {
        SCOPED_TRACE(mode);
        GameHarness game(Window(640, 480, mode));
        const std::string text = std::string(mode) == "dev" ? "" : "text";
        for (int call = 0; call < 3; ++call) {
            const OutputCapture output;
            game.Capture([&] {
                Graphics().DrawTextAt(text.c_str(), 50, 60);
                Graphics().DrawText(text.c_str(), {100, 0, 100, 0, 100, 100}, kTestRed);
            });
            ASSERT_EQ(output.Lines().size(), 2U) << output.Text();
            for (const std::string& line : output.Lines()) {
                EXPECT_EQ(line.rfind("TTF_RenderText error: ", 0), 0U) << line;
            }
            EXPECT_EQ(game.DrawnBounds(), SDL_Rect{});
        }
        game.Capture([] { Graphics().FillRect({9, 0, 9, 0, 9, 9}, kTestRed); });
        EXPECT_EQ(game.CountOf(kTestRed), 81) << "the lock is free and drawing goes on";
    }
}
