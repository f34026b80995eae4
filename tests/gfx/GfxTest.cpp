// The drawing calls and what reaches the renderer of them.
#include "gfx/GFX_GraphicsManager.h"

#include "gfx/Clipping.h"
#include "support/DrawLog.h"
#include "support/Game.h"
#include "support/Limits.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <thread>

namespace {

constexpr SDL_Color kRed{255, 0, 0, 255};

GFX_GraphicsManager& Graphics() {
    return *GFX_GraphicsManager::GetInstance();
}

template <typename Draw>
std::string Drawn(Draw draw) {
    TakeDrawLog();
    draw();
    EXPECT_EQ(LocksHeld(), 0);
    return TakeDrawLog();
}

} // namespace

TEST(GfxTest, TheCameraLiesAtTheWindowsCentreAndTheWorldsYPointsUp) {
    struct Case {
        Vec2i offset; // from the camera
        float zoom;
        Vec2i expected;
    };
    const Game game({.width = 641, .height = 479});
    for (const Case& c : {Case{{0, 0}, 1.0f, {320, 240}},
                          {{10, 20}, 1.0f, {330, 220}},
                          {{-3, 3}, 0.5f, {319, 239}}, // truncated toward zero
                          {{5000, -5000}, 0.0f, {320, 240}},
                          // What is far to one side stays there.
                          {{1 << 30, 1 << 30}, 8.0f, {kHigh, 479 - kHigh}},
                          {{-(1 << 30), -(1 << 30)}, 8.0f, {kLow + 320, kHigh}}}) {
        EXPECT_EQ(Graphics().WorldToScreen(Vec2i{100, 700} + c.offset, {100, 700}, c.zoom),
                  c.expected)
            << c.offset.x << " " << c.zoom;
    }
    EXPECT_EQ(Graphics().WorldToScreen({kLow, kLow}, {kHigh, kHigh}, 1.0f), (Vec2i{321, 239}));
}

TEST(GfxTest, EachCallDrawsWhereItsRuleSaysUnderTheLockAndLeavesTheColour) {
    const Game game;
    const Sprite ship = *Graphics().CreateSprite("ships.png", 0, 64, 31, 17);
    SDL_SetRenderDrawColor(Graphics().renderer, 1, 2, 3, 4);
    const Rect place{0, 10, 100, 0, 40, 30}; // the stored size counts, not the edges
    const std::string found = Drawn([&] {
        Graphics().DrawSprite(&ship, {108, 106}, {100, 100}, 0.5f);
        Graphics().DrawSpriteSized(&ship, {108, 106}, {100, 100}, 2.9f, 24);
        Graphics().DrawSprite(&ship, {108, 106}, {100, 100}, 0.04f); // no pixel
        Graphics().DrawSprite(nullptr, {108, 106}, {100, 100}, 1.0f);
        Graphics().FillRect(place, kRed);
        Graphics().DrawRect(place, kRed);
        Graphics().DrawLine({100, 80}, {110, 100}, kRed);
        Graphics().DrawTextAt("", 5, 5); // cannot be rendered
        Graphics().DrawTextureCentered(nullptr, {5, 5});
        const MutexLock lock(Graphics().renderLock);
        Graphics().Clear();
    });
    EXPECT_EQ(found, "1 copy ships.png 0,64,31,17 -> 317,233,15,8\n"
                     "1 copy ships.png 0,64,31,17 -> 309,189,69,69\n"
                     "1 fill 10,380,40,30 in 255,0,0,255\n"
                     "1 rect 10,380,40,30 in 255,0,0,255\n"
                     "1 line 100,400 -> 110,380 in 255,0,0,255\n"
                     "1 text \"\" in 255,255,255,255\n"
                     "1 clear\n");
    SDL_Color left{};
    SDL_GetRenderDrawColor(Graphics().renderer, &left.r, &left.g, &left.b, &left.a);
    EXPECT_TRUE(left.r == 1 && left.g == 2 && left.b == 3 && left.a == 4);
    EXPECT_EQ(TTF_FontHeight(Graphics().font->handle), 20);
}

TEST(GfxTest, WhatLiesFarOutsideIsCutOrLeftOut) {
    using Line = std::pair<Vec2i, Vec2i>;
    constexpr Line cut{};
    for (const auto& [line, expected] :
         {std::pair<Line, Line>{{{100, 50}, {100, kLow}}, {{100, 50}, {100, -32000}}},
          {{{kLow, 7}, {kHigh, 7}}, {{-32000, 7}, {32640, 7}}},
          {{{kHigh, kHigh}, {kLow, kLow}}, {{32480, 32480}, {-32000, -32000}}},
          {{{-2999680, -999760}, {3000320, 1000240}}, {{-32000, -10533}, {32640, 11013}}},
          {{{-32000, -32000}, {32640, 32480}}, {{-32000, -32000}, {32640, 32480}}},
          {{{0, 900000}, {900000, 0}}, cut},
          {{{kLow, kLow}, {kHigh, kLow}}, cut}}) {
        Line found = line;
        EXPECT_EQ(ClipLine(found.first, found.second, {640, 480}), expected != cut);
        EXPECT_TRUE(found == expected || expected == cut) << line.first.x << ',' << line.first.y;
    }
    Line wide{{100, 50}, {100, kLow}}; // a wider window leaves less room around it
    EXPECT_TRUE(ClipLine(wide.first, wide.second, {3840, 2160}));
    EXPECT_EQ(wide.second, (Vec2i{100, -31821}));
    const Game game;
    EXPECT_EQ(
        Drawn([] {
            Graphics().FillRect({0, kLow, kHigh, 0, kHigh, kHigh}, kRed);
            Graphics().FillRect({0, 639, 1, 0, kHigh - 686, 9}, kRed); // too far as a float
            Graphics().FillRect({0, 639, 1, 0, 9, 9}, kRed);
            Graphics().FillRect({0, 640, 9, 0, 9, 9}, kRed);
            Graphics().DrawRect({0, kHigh, kHigh, 0, kHigh, kHigh}, kRed);
            Graphics().DrawTextureCentered(Graphics().GetTexture("compass.png"), {kLow, kHigh});
            Graphics().DrawSprite(Graphics().CreateSprite("ships.png", 0, 0, 32, 32), {kHigh, 0},
                                  {0, 0}, 10.0f);
        }),
        "1 fill 639,479,9,9 in 255,0,0,255\n");
}

TEST(GfxTest, ImagesAreLoadedOnceByTheMainThreadAndMissingOnesReportedEachTime) {
    OutputLines output;
    const Game game;
    const std::string start = TakeDrawLog();
    EXPECT_EQ(start, "0 load enemies.png\n0 load image.png\n0 load ships.png\n0 load link_raw.png\n"
                     "0 load compass.png\n0 load hud_compass.png\n0 load island_icon.png\n"
                     "1 load terrain_transition.png\n");
    EXPECT_EQ(Drawn([] {
                  EXPECT_NE(Graphics().GetTexture("ships.png"), nullptr);
                  EXPECT_EQ(Graphics().GetTexture("no-such.png"), nullptr);
                  EXPECT_EQ(Graphics().CreateSprite("Ships.png", 0, 0, 1, 1), nullptr);
              }),
              "0 load no-such.png\n0 load Ships.png\n");
    EXPECT_EQ(output.Take(), std::vector<std::string>(2, "CreateTextureFromSurface error: "));
    std::thread([] {
        EXPECT_EQ(Graphics().GetTexture("no-such.png"), nullptr);
        EXPECT_NE(Graphics().CreateSprite("compass.png", 0, 0, 1, 1), nullptr);
    }).join();
    EXPECT_TRUE(output.Take().empty() && TakeDrawLog().empty()) << "another thread tried a file";
}
