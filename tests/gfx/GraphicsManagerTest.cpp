#include "gfx/GFX_GraphicsManager.h"

#include "common/BasePath.h"
#include "gfx/SeaColor.h"
#include "support/GameHarness.h"
#include "support/SolidTexture.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

const std::vector<std::string> kPreloaded{"enemies.png",    "image.png",   "ships.png",
                                          "link_raw.png",   "compass.png", "hud_compass.png",
                                          "island_icon.png"};

GFX_GraphicsManager& Graphics() {
    return *GFX_GraphicsManager::GetInstance();
}

} // namespace

TEST(GraphicsManagerTest, OpensTheWindowAsConfigured) {
    const GameHarness game({.width = 801, .height = 603});
    SDL_Window* window = Graphics().window;
    SDL_Rect place{};
    SDL_GetWindowPosition(window, &place.x, &place.y);
    SDL_GetWindowSize(window, &place.w, &place.h);
    EXPECT_STREQ(SDL_GetWindowTitle(window), "Vesk");
    EXPECT_EQ(place, (SDL_Rect{100, 100, 801, 603}));
    EXPECT_NE(SDL_GetWindowFlags(window) & SDL_WINDOW_SHOWN, 0U);
    EXPECT_EQ(Graphics().screenCenter, (Vec2i{400, 301}));
    SDL_Color clear{};
    SDL_GetRenderDrawColor(Graphics().renderer, &clear.r, &clear.g, &clear.b, &clear.a);
    EXPECT_TRUE(SameColor(clear, kSeaColor) && clear.a == 255) << "frames begin as sea";
}

TEST(GraphicsManagerTest, LoadsEveryImageOnceAtTheStart) {
    const GameHarness game;
    const OutputCapture output;
    std::vector<std::string> names = kPreloaded;
    names.emplace_back("terrain_transition.png"); // asked for by the terrain
    std::set<const TextureInfo*> found;
    for (const std::string& name : names) {
        const TextureInfo* info = Graphics().GetTexture(name);
        ASSERT_NE(info, nullptr) << name;
        EXPECT_EQ(Graphics().GetTexture(name), info);
        int width = 0;
        int height = 0;
        SDL_QueryTexture(info->texture, nullptr, nullptr, &width, &height);
        EXPECT_EQ((Vec2i{info->width, info->height}), (Vec2i{width, height}));
        found.insert(info);
    }
    EXPECT_EQ(found.size(), names.size());
    EXPECT_EQ(output.Text(), "");
}

TEST(GraphicsManagerTest, MissingFilesAreReportedEachTimeTheyAreAskedFor) {
    const GameHarness game;
    for (int i = 0; i < 3; ++i) {
        const OutputCapture output;
        EXPECT_EQ(Graphics().GetTexture("no-such.png"), nullptr);
        EXPECT_EQ(Graphics().CreateSprite("Ships.png", 0, 0, 1, 1), nullptr) << "case counts";
        EXPECT_EQ(Graphics().LoadTexture("sample.ttf"), nullptr) << "no image";
        ASSERT_EQ(output.Lines().size(), 3U) << output.Text();
        for (const std::string& line : output.Lines()) {
            EXPECT_TRUE(line.starts_with("CreateTextureFromSurface error: ")) << line;
        }
        EXPECT_NE(output.Lines()[0].find("no-such.png"), std::string::npos)
            << "the text belongs to this failure";
    }
}

TEST(GraphicsManagerTest, TheGameRunsWithoutAnyOfItsFiles) {
    const OutputCapture output;
    GameHarness game({.mode = "release"});
    EXPECT_EQ(GFX_GraphicsManager::GetDataPath(), GetBasePath() + "data/");
    const std::vector<std::string> lines = output.Lines();
    ASSERT_GE(lines.size(), 1 + kPreloaded.size());
    EXPECT_TRUE(lines[0].starts_with("TTF_OpenFont error: ")) << lines[0];
    for (std::size_t i = 0; i < kPreloaded.size(); ++i) {
        EXPECT_TRUE(lines[i + 1].starts_with("CreateTextureFromSurface error: ")) << lines[i + 1];
        EXPECT_NE(lines[i + 1].find(kPreloaded[i]), std::string::npos) << lines[i + 1];
    }
    game.World().showPlayerInfo = true;
    game.Tap(SDLK_BACKQUOTE);
    game.Tap(SDLK_BACKSPACE);
    game.KeyDown(SDLK_d);
    game.Tick(5);
    EXPECT_GT(output.Lines().size(), lines.size());
}

TEST(GraphicsManagerTest, SpritesAreCutOnManyThreadsWhileTheMainThreadDraws) {
    GameHarness game;
    const SolidTexture image(8, 8, kTestRed);
    constexpr std::size_t threadCount = 8;
    constexpr int spriteCount = 400;
    std::array<std::vector<const Sprite*>, threadCount> made;
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (std::vector<const Sprite*>& own : made) {
        threads.emplace_back([&own] {
            for (int i = 0; i < spriteCount; ++i) {
                own.push_back(Graphics().CreateSprite("enemies.png", 7, i, 16, 16));
            }
        });
    }
    for (int i = 0; i < 50; ++i) {
        Graphics().DrawSprite(&image.sprite, {0, 0}, {0, 0}, 1.0f);
        EXPECT_NE(Graphics().CreateSprite("ships.png", 0, 0, 32, 32), nullptr);
        Graphics().FillRect({9, 0, 9, 0, 9, 9}, kTestRed);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::set<const Sprite*> distinct;
    for (const std::vector<const Sprite*>& own : made) {
        distinct.insert(own.begin(), own.end());
        EXPECT_EQ(own.back()->source, (PixelRect{7, spriteCount - 1, 16, 16}));
        EXPECT_EQ(own.back()->texture, Graphics().GetTexture("enemies.png"));
    }
    EXPECT_EQ(distinct.size(), threadCount * spriteCount) << "never shared";
    EXPECT_FALSE(distinct.contains(nullptr));
}

TEST(GraphicsManagerTest, OtherThreadsNeverLoadAnImage) {
    const GameHarness game;
    const OutputCapture output;
    std::thread([] {
        EXPECT_EQ(Graphics().GetTexture("no-such.png"), nullptr);
        EXPECT_EQ(Graphics().CreateSprite("no-such.png", 0, 0, 1, 1), nullptr);
        EXPECT_NE(Graphics().CreateSprite("compass.png", 0, 0, 1, 1), nullptr);
    }).join();
    EXPECT_EQ(output.Text(), "") << "a file was tried";
}
