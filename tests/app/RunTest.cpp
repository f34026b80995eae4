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
std::shared_ptr<void> OnDestroy(std::function<void()> action) {
    return {nullptr, [action = std::move(action)](void*) { action(); }};
}

} // namespace

TEST(RunTest, ATickRunsWhenOneIsDueAndAFrameAlways) {
    struct Script {
        std::uint32_t lastTick;
        std::vector<std::uint32_t> times;
        std::string expected; // of each pass, t for a tick and f for a frame
    };
    for (const Script& script :
         {Script{0, {0, 15, 16, 16, 31, 32}, "f f tf f f tf "},
          {1000, {1040, 1041, 1055, 1056, 9000}, "tf f f tf tf "},
          // The clock wraps: until it has, every pass after the sum's wrap is due.
          {0xFFFFFFE0U, {0xFFFFFFEFU, 0xFFFFFFF0U, 0xFFFFFFFFU, 14, 15}, "f tf tf f tf "}}) {
        const Game game;
        std::string events;
        Probe& probe = AddProbe(2);
        probe.onUpdate = [&] { events += "t"; };
        probe.onRender = [&] { events += "f "; };
        CMN_TimeManager::GetInstance()->lastTickTime = script.lastTick;
        for (const std::uint32_t time : script.times) {
            RunPass(time);
        }
        EXPECT_EQ(events, script.expected);
    }
}

TEST(RunTest, EndsAfterTheFrameOfTheTickThatSeesTheQuit) {
    const Game game;
    std::size_t frames = 0;
    AddProbe(2).onRender = [&frames] { ++frames; };
    CMN_TimeManager::GetInstance()->lastTickTime = 1000;
    const std::vector<float> quitValues{0.5f, 2.0f, -1.0f, 0.99999994f, 0.0f, 0.0f};
    RunLoop([&] {
        CMN_InputManager::GetInstance()->actions[Index(InputAction::Quit)] = quitValues.at(frames);
        if (frames == 4) { // seen no earlier than in the next pass, which runs a tick
            PushEvent(SDL_QUIT, [](SDL_Event&) {});
        }
        return 1011 + static_cast<std::uint32_t>(frames);
    });
    EXPECT_EQ(frames, 6U) << "only exactly 1 ends it";
}

TEST(RunTest, StartsAndShutsDownInOrder) {
    const std::string all = "store configuration input graphics world time pool generator SDL";
    std::string seenByJob;
    std::string seenByEntity;
    std::string seenByCallback;
    {
        const Game game;
        EXPECT_EQ(Managers(), all);
        EXPECT_FALSE(SDL_IsTextInputActive()) << "input methods would take the keys";
        EXPECT_EQ(PoolSize(ASM_AssetManager::GetInstance()->dungeons), 12U);
        EXPECT_EQ(PoolSize(ASM_AssetManager::GetInstance()->clusters), 18U);
        Signal running;
        Signal dropped;
        CMN_TaskManager& pool = *CMN_TaskManager::GetInstance();
        EXPECT_EQ(pool.workerCount, 1);
        pool.AddTask([&] {
            running.Raise();
            EXPECT_TRUE(dropped.Wait()) << "pending jobs are dropped while a job still runs";
            seenByJob = Managers();
        });
        pool.AddTask([token = OnDestroy([&dropped] { dropped.Raise(); })] { ADD_FAILURE(); });
        AddProbe(2).onDestroy = [&] { seenByEntity = Managers(); };
        game.World().QueueCallback(
            [held = OnDestroy([&] { seenByCallback = Managers(); })] { ADD_FAILURE(); });
        EXPECT_TRUE(running.Wait());
        ShutDown();
    }
    EXPECT_EQ(seenByJob, all);
    EXPECT_EQ(seenByEntity, "world time pool generator SDL");
    EXPECT_EQ(seenByCallback, seenByEntity);
    EXPECT_EQ(Managers(), "");
    EXPECT_EQ(SDL_WasInit(0), 0U);
}

TEST(RunTest, AFailedStartPrintsOneLineAndTearsNothingDown) {
    OutputLines output;
    const Game game({.height = 2147483647});
    EXPECT_FALSE(game.started);
    EXPECT_EQ(output.Take(), std::vector<std::string>{"SDL_CreateWindow error: "});
    EXPECT_EQ(Managers(), "configuration graphics pool generator SDL");
}
