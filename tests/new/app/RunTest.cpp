// Start, main loop and shutdown.
#include "app/Application.h"
#include "app/CMN_TimeManager.h"
#include "app/SDLManager.h"
#include "common/CMN_ConfigurationManager.h"
#include "common/CMN_TaskManager.h"
#include "entities/PlayerEntity.h"
#include "gen/GEN_DungeonGenerator.h"
#include "gfx/GFX_GraphicsManager.h"
#include "input/CMN_InputManager.h"
#include "support/Game.h"
#include "support/Guarded.h"
#include "support/Probe.h"
#include "world/ASM_AssetManager.h"

#include <SDL.h>
#include <SDL_ttf.h>
#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr std::int32_t kLow = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHigh = std::numeric_limits<std::int32_t>::max();

// A letter for every manager that is there, in the order of destruction.
std::string Managers() {
    std::string there;
    there += ASM_AssetManager::HasInstance() ? "store " : "";
    there += CMN_ConfigurationManager::HasInstance() ? "configuration " : "";
    there += CMN_InputManager::HasInstance() ? "input " : "";
    there += GFX_GraphicsManager::HasInstance() ? "graphics " : "";
    there += WorldManager::HasInstance() ? "world " : "";
    there += CMN_TimeManager::HasInstance() ? "time " : "";
    there += CMN_TaskManager::HasInstance() ? "pool " : "";
    there += GEN_DungeonGenerator::HasInstance() ? "generator " : "";
    return there + (SDLManager::HasInstance() ? "SDL" : "");
}

// Something that a callable can hold and that tells when it is destroyed.
std::shared_ptr<int> OnDestroy(std::function<void()> action) {
    return {new int, [action = std::move(action)](const int* value) {
                delete value;
                action();
            }};
}

} // namespace

TEST(RunTest, ATickRunsWhenOneIsDueAndAFrameAlways) {
    struct Script {
        std::uint32_t lastTick;
        std::vector<std::pair<std::uint32_t, bool>> passes; // time, and whether a tick runs
    };
    const Script scripts[] = {
        {0, {{0, false}, {15, false}, {16, true}, {16, false}, {31, false}, {32, true}}},
        {1000, {{1040, true}, {1041, false}, {1055, false}, {1056, true}, {9000, true}}},
        // The clock wraps: until it has, every pass after the sum's wrap is due.
        {0xFFFFFFE0U,
         {{0xFFFFFFEFU, false},
          {0xFFFFFFF0U, true},
          {0xFFFFFFFFU, true},
          {14, false},
          {15, true}}}};
    for (const Script& script : scripts) {
        const Game game;
        std::string events;
        Probe& probe = AddProbe(2);
        probe.onUpdate = [&] { events += "tick "; };
        probe.onRender = [&] { events += "frame "; };
        CMN_TimeManager::GetInstance()->lastTickTime = script.lastTick;
        for (const auto& [time, tick] : script.passes) {
            events.clear();
            RunPass(time);
            EXPECT_EQ(events, tick ? "tick frame " : "frame ") << time;
        }
    }
}

TEST(RunTest, EndsAfterTheFrameOfTheTickThatSeesTheQuit) {
    for (const auto& [type, key] : {std::pair{SDL_KEYDOWN, SDLK_ESCAPE}, {SDL_QUIT, SDLK_a}}) {
        const Game game;
        int frames = 0;
        AddProbe(2).onRender = [&frames] { ++frames; };
        CMN_TimeManager::GetInstance()->lastTickTime = 1000;
        const std::vector<std::uint32_t> times{1016, 1020, 1025, 1032, 1048};
        std::size_t pass = 0;
        RunLoop([&, type = type, key = key] {
            if (pass == 1) { // seen no earlier than in the tick at 1032
                PushEvent(type, [key](SDL_Event& event) { event.key.keysym.sym = key; });
            }
            return times.at(pass++);
        });
        EXPECT_EQ(pass, 4U);
        EXPECT_EQ(frames, 4);
    }
}

TEST(RunTest, OnlyAQuitValueOfExactlyOneEndsIt) {
    const Game game;
    const std::vector<float> values{0.5f, 2.0f, -1.0f, 0.99999994f, 1.0f};
    std::size_t pass = 0;
    const auto clock = [&] {
        CMN_InputManager::GetInstance()->actions[Index(InputAction::Quit)] = values.at(pass++);
        return 0U;
    };
    RunLoop(clock);
    RunLoop(clock); // no pass once the value is 1
    EXPECT_EQ(pass, values.size());
}

TEST(RunTest, StartsEverything) {
    const Game game({.width = 801, .height = 603, .workers = 3});
    EXPECT_EQ(Managers(), "store configuration input graphics world time pool generator SDL");
    EXPECT_EQ(CMN_TimeManager::GetInstance()->tickInterval, 16U);
    EXPECT_EQ(CMN_TimeManager::GetInstance()->lastTickTime, 0U);
    EXPECT_EQ(CMN_TaskManager::GetInstance()->workerCount, 3);
    EXPECT_EQ(PoolSize(ASM_AssetManager::GetInstance()->dungeons), 12U);
    EXPECT_EQ(PoolSize(ASM_AssetManager::GetInstance()->clusters), 18U);
    for (const auto& timer : CMN_InputManager::GetInstance()->timers) {
        EXPECT_EQ(timer.minInterval, 30U);
    }
    SDL_Window* window = GFX_GraphicsManager::GetInstance()->window;
    SDL_Rect place{};
    SDL_GetWindowPosition(window, &place.x, &place.y);
    SDL_GetWindowSize(window, &place.w, &place.h);
    EXPECT_STREQ(SDL_GetWindowTitle(window), "Vesk");
    EXPECT_TRUE(place.x == 100 && place.y == 100 && place.w == 801 && place.h == 603);
    EXPECT_NE(SDL_GetWindowFlags(window) & SDL_WINDOW_SHOWN, 0U);
}

TEST(RunTest, TheWorldIsBuiltWithoutInputAndStore) {
    UseHeadlessDrivers();
    SDLManager::GetInstance();
    SDL_Init(SDL_INIT_VIDEO);
    CMN_ConfigurationManager::GetInstance()->Load(TemporaryFile(ConfigurationText({})).path);
    EXPECT_TRUE(GFX_GraphicsManager::GetInstance()->Init());
    EXPECT_TRUE(WorldManager::GetInstance()->Init());
    EXPECT_EQ(Managers(), "configuration graphics world SDL");
    ShutDown();
}

TEST(RunTest, AFailedStartPrintsOneLineAndTearsNothingDown) {
    OutputLines output;
    const Game game({.height = kHigh});
    EXPECT_FALSE(game.started);
    EXPECT_EQ(output.Take(), std::vector<std::string>{"SDL_CreateWindow error: "});
    EXPECT_EQ(Managers(), "configuration graphics pool generator SDL");
    Signal done;
    CMN_TaskManager::GetInstance()->AddTask([&done] { done.Raise(); });
    EXPECT_TRUE(done.Wait()) << "the workers are gone";
}

TEST(RunTest, RunsWhateverTheSettings) {
    const GameSettings cases[] = {{0, 0, {0, 0}, "0"},
                                  {-5, -7, {-1, -1}, "0.01"},
                                  {kLow, kLow, {12, 12}, "1"},
                                  {641, 479, {kLow, kLow}, "10"},
                                  {320, 240, {kHigh, kHigh}, "1e-30"},
                                  {320, 240, {kLow, kHigh}, "inf"},
                                  {320, 240, {-13, kLow + 1}, "nan"}};
    for (const GameSettings& settings : cases) {
        SCOPED_TRACE(ConfigurationText(settings));
        Game game(settings);
        WorldManager& world = game.World();
        world.showPlayerInfo = world.showLoadedAssets = world.renderCellBorder = true;
        world.renderDungeonRooms = world.renderHallways = world.renderMinSpanningTree = true;
        game.Tick();
        EXPECT_TRUE(game.Settle());
        for (const SDL_Keycode key : {SDLK_a, SDLK_d, SDLK_w, SDLK_s, SDLK_e, SDLK_BACKSPACE}) {
            game.Hold(key);
            game.Pass();
        }
        EXPECT_FALSE(QuitRequested());
    }
}

TEST(RunTest, ShutsDownInOrder) {
    std::string seenByJob;
    std::string seenByEntity;
    std::string seenByCallback;
    bool ran = false;
    {
        const Game game;
        Signal running;
        Signal dropped;
        CMN_TaskManager& pool = *CMN_TaskManager::GetInstance();
        pool.AddTask([&] {
            running.Raise();
            EXPECT_TRUE(dropped.Wait()) << "pending jobs are dropped while a job still runs";
            seenByJob = Managers();
        });
        pool.AddTask([&ran, token = OnDestroy([&dropped] { dropped.Raise(); })] { ran = true; });
        AddProbe(2).onDestroy = [&] { seenByEntity = Managers(); };
        const auto note = [&] {
            seenByCallback = SDL_WasInit(SDL_INIT_VIDEO) != 0 ? Managers() : "";
        };
        game.World().QueueCallback([&ran, token = OnDestroy(note)] { ran = true; });
        EXPECT_TRUE(running.Wait());
        ShutDown();
    }
    EXPECT_EQ(seenByJob, "store configuration input graphics world time pool generator SDL");
    EXPECT_EQ(seenByEntity, "world time pool generator SDL");
    EXPECT_EQ(seenByCallback, seenByEntity);
    EXPECT_FALSE(ran);
    EXPECT_EQ(Managers(), "");
    EXPECT_EQ(SDL_WasInit(0), 0U);
    EXPECT_EQ(TTF_WasInit(), 0);
}
