// Start, main loop and shutdown.
#include "app/Application.h"
#include "app/CMN_TimeManager.h"
#include "app/SDLManager.h"
#include "common/CMN_ConfigurationManager.h"
#include "gen/GEN_DungeonGenerator.h"
#include "gfx/GFX_GraphicsManager.h"
#include "input/CMN_InputManager.h"
#include "support/Game.h"
#include "support/Guarded.h"
#include "support/Probe.h"

#include <SDL.h>
#include <gtest/gtest.h>

namespace {

// The managers that are there, in the order of destruction.
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
    return there + (SDL_WasInit(SDL_INIT_VIDEO) != 0 ? "SDL" : "");
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
    const Game game;
    const std::vector<float> quitValues{0.5f, 2.0f, -1.0f, 0.99999994f, 1.0f};
    std::size_t pass = 0;
    RunLoop([&] {
        CMN_InputManager::GetInstance()->actions[Index(InputAction::Quit)] = quitValues.at(pass++);
        return 0U;
    });
    EXPECT_EQ(pass, quitValues.size()) << "only exactly 1 ends it";
}

TEST(RunTest, StartsAndShutsDownInOrder) {
    const std::string all = "store configuration input graphics world time pool generator SDL";
    std::string seenByJob;
    std::string seenByEntity;
    std::string seenByCallback;
    bool ran = false;
    {
        const Game game({.width = 801, .height = 603, .workers = 1});
        EXPECT_EQ(Managers(), all);
        EXPECT_EQ(PoolSize(ASM_AssetManager::GetInstance()->dungeons), 12U);
        EXPECT_EQ(PoolSize(ASM_AssetManager::GetInstance()->clusters), 18U);
        SDL_Window* window = SDL_GetWindowFromID(1);
        SDL_Rect place{};
        SDL_GetWindowPosition(window, &place.x, &place.y);
        SDL_GetWindowSize(window, &place.w, &place.h);
        EXPECT_STREQ(SDL_GetWindowTitle(window), "Vesk");
        EXPECT_TRUE(place.x == 100 && place.y == 100 && place.w == 801 && place.h == 603);
        Signal running;
        Signal dropped;
        CMN_TaskManager& pool = *CMN_TaskManager::GetInstance();
        EXPECT_EQ(pool.workerCount, 1);
        pool.AddTask([&] {
            running.Raise();
            EXPECT_TRUE(dropped.Wait()) << "pending jobs are dropped while a job still runs";
            seenByJob = Managers();
        });
        pool.AddTask([&ran, token = OnDestroy([&dropped] { dropped.Raise(); })] { ran = true; });
        AddProbe(2).onDestroy = [&] { seenByEntity = Managers(); };
        game.World().QueueCallback(
            [&ran, held = OnDestroy([&] { seenByCallback = Managers(); })] { ran = true; });
        EXPECT_TRUE(running.Wait());
        ShutDown();
    }
    EXPECT_EQ(seenByJob, all);
    EXPECT_EQ(seenByEntity, "world time pool generator SDL");
    EXPECT_EQ(seenByCallback, seenByEntity);
    EXPECT_FALSE(ran);
    EXPECT_EQ(Managers(), "");
    EXPECT_EQ(SDL_WasInit(0), 0U);
}

TEST(RunTest, AFailedStartPrintsOneLineAndTearsNothingDown) {
    OutputLines output;
    const Game game({.height = 2147483647});
    EXPECT_FALSE(game.started);
    EXPECT_EQ(output.Take(), std::vector<std::string>{"SDL_CreateWindow error: "});
    EXPECT_EQ(Managers(), "configuration graphics pool generator SDL");
    Signal done;
    CMN_TaskManager::GetInstance()->AddTask([&done] { done.Raise(); });
    EXPECT_TRUE(done.Wait()) << "the workers are gone";
}
