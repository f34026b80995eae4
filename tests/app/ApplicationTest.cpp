#include "app/Application.h"
#include "app/CMN_TimeManager.h"
#include "app/SDLManager.h"
#include "common/CMN_ConfigurationManager.h"
#include "common/CMN_TaskManager.h"
#include "entities/PlayerEntity.h"
#include "gen/GEN_DungeonGenerator.h"
#include "gfx/GFX_GraphicsManager.h"
#include "input/CMN_InputManager.h"
#include "support/GameHarness.h"
#include "support/Guarded.h"
#include "support/ProbeEntity.h"
#include "support/Signal.h"
#include "support/TemporaryFile.h"
#include "world/ASM_AssetManager.h"

#include <SDL.h>
#include <SDL_ttf.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

CMN_TimeManager& Time() {
    return *CMN_TimeManager::GetInstance();
}

CMN_InputManager& Input() {
    return *CMN_InputManager::GetInstance();
}

ProbeEntity& AddProbe(const GameHarness& game) {
    auto probe = std::make_unique<ProbeEntity>();
    ProbeEntity& added = *probe;
    game.World().AddEntity(probe.release(), kSpawnedLayer);
    return added;
}

void PushEvent(std::uint32_t type, SDL_Keycode key = 0) {
    SDL_Event event{};
    event.type = type;
    event.key.keysym.sym = key;
    SDL_PushEvent(&event);
}

std::vector<bool> ManagersThere() {
    return {ASM_AssetManager::HasInstance(), CMN_ConfigurationManager::HasInstance(),
            CMN_InputManager::HasInstance(), GFX_GraphicsManager::HasInstance(),
            WorldManager::HasInstance(),     CMN_TimeManager::HasInstance(),
            CMN_TaskManager::HasInstance(),  GEN_DungeonGenerator::HasInstance(),
            SDLManager::HasInstance()};
}

const std::vector<bool> kAll(9, true);
const std::vector<bool> kNone(9, false);

// Something that a callable can hold and that tells when it is destroyed.
std::shared_ptr<int> OnDestroy(std::function<void()> action) {
    return {new int, [action = std::move(action)](const int* value) {
                delete value;
                action();
            }};
}

StartOptions Options(const TemporaryFile& configuration) {
    UseHeadlessDrivers();
    return {2, configuration.Path()};
}

} // namespace

TEST(MainLoopTest, RunsATickOnlyWhenOneIsDueAndAFrameAlways) {
    struct Pass {
        std::uint32_t time;
        bool tick;
    };
    struct Script {
        std::uint32_t lastTick;
        std::vector<Pass> passes;
    };
    const std::vector<Script> scripts{
        {0, {{0, false}, {15, false}, {16, true}, {16, false}, {31, false}, {32, true}}},
        // A late pass does not catch up.
        {1000, {{1040, true}, {1041, false}, {1055, false}, {1056, true}, {9000, true}}},
        // The clock wraps: until it has, every pass after the sum's wrap is due.
        {0xFFFFFFE0U,
         {{0xFFFFFFEFU, false},
          {0xFFFFFFF0U, true},
          {0xFFFFFFFFU, true},
          {14, false},
          {15, true}}}};
    for (const Script& script : scripts) {
        SCOPED_TRACE(testing::Message() << "from " << script.lastTick);
        const GameHarness game;
        const ProbeEntity& probe = AddProbe(game);
        Time().lastTickTime = script.lastTick;
        int passes = 0;
        int ticks = 0;
        for (const Pass& pass : script.passes) {
            RunPass(pass.time);
            ticks += pass.tick ? 1 : 0;
            EXPECT_EQ(probe.updates, ticks) << "pass at " << pass.time;
            EXPECT_EQ(probe.renders, ++passes);
            EXPECT_EQ(Time().currentTime, pass.time);
        }
    }
}

TEST(MainLoopTest, EndsAfterTheFrameOfTheTickThatSeesTheQuit) {
    for (const auto& [type, key] :
         {std::pair<std::uint32_t, SDL_Keycode>{SDL_KEYDOWN, SDLK_ESCAPE}, {SDL_QUIT, 0}}) {
        const GameHarness game;
        const ProbeEntity& probe = AddProbe(game);
        Time().lastTickTime = 1000;
        const std::vector<std::uint32_t> times{1016, 1020, 1025, 1032, 1048};
        std::size_t pass = 0;
        RunLoop([&, type = type, key = key] {
            if (pass == 1) {
                PushEvent(type, key); // seen no earlier than in the next tick, at 1032
            }
            return times[pass++];
        });
        EXPECT_EQ(pass, 4U);
        EXPECT_EQ(probe.updates, 2) << "the world is still updated in that tick";
        EXPECT_EQ(probe.renders, 4) << "and drawn";
    }
}

TEST(MainLoopTest, OnlyAQuitValueOfExactlyOneEndsIt) {
    const GameHarness game;
    const std::vector<float> values{0.5f, 2.0f, -1.0f, 0.99999994f, 1.0f};
    std::size_t pass = 0;
    const auto clock = [&] {
        Input().actions[Index(InputAction::Quit)] = values.at(pass++);
        return Time().currentTime;
    };
    RunLoop(clock);
    EXPECT_EQ(pass, values.size());
    RunLoop(clock); // no pass once the quit value is 1
    EXPECT_EQ(pass, values.size());
}

TEST(MainLoopTest, HandlesInputBeforeTheWorldInTheSameTick) {
    GameHarness game;
    const Vec2i start = game.World().player->position;
    game.KeyDown(SDLK_d);
    game.Pass(16);
    EXPECT_EQ(game.World().player->position, (Vec2i{start.x + 19, start.y}));
}

TEST(StartUpTest, CreatesEverythingAndLeavesTheClockAtZero) {
    const TemporaryFile configuration(ConfigurationText({}));
    EXPECT_EQ(ManagersThere(), kNone);
    ASSERT_TRUE(StartUp(Options(configuration)));
    EXPECT_EQ(ManagersThere(), kAll);
    EXPECT_EQ(Time().tickInterval, 16U);
    EXPECT_EQ(Time().lastTickTime, 0U);
    EXPECT_EQ(CMN_TaskManager::GetInstance()->workerCount, 1);
    for (const CMN_InputManager::Timer& timer : Input().timers) {
        EXPECT_EQ(timer.minInterval, 30U);
        EXPECT_EQ(timer.lastTime, 0U);
    }
    EXPECT_EQ(PoolSize(ASM_AssetManager::GetInstance()->dungeons), 12U);
    EXPECT_EQ(PoolSize(ASM_AssetManager::GetInstance()->clusters), 18U);
    EXPECT_FALSE(QuitRequested());
    ShutDown();
}

TEST(StartUpTest, TheWorldIsBuiltWithoutInputAndStore) {
    const TemporaryFile configuration(ConfigurationText({}));
    UseHeadlessDrivers();
    SDLManager::GetInstance();
    SDL_Init(SDL_INIT_VIDEO);
    CMN_ConfigurationManager::GetInstance()->Load(configuration.Path());
    ASSERT_TRUE(GFX_GraphicsManager::GetInstance()->Init());
    EXPECT_TRUE(WorldManager::GetInstance()->Init());
    EXPECT_FALSE(CMN_InputManager::HasInstance());
    EXPECT_FALSE(ASM_AssetManager::HasInstance());
    ShutDown();
}

// A start that fails says so in one line and leaves what is there to the end of the process.
TEST(StartUpTest, AFailurePrintsOneLineAndTearsNothingDown) {
    for (const char* driver : {"dummy", "no-such-driver"}) {
        SCOPED_TRACE(driver);
        const TemporaryFile configuration(ConfigurationText({.height = kHighest}));
        const StartOptions options = Options(configuration);
        SDL_SetHintWithPriority(SDL_HINT_VIDEODRIVER, driver, SDL_HINT_OVERRIDE);
        const OutputCapture output;
        EXPECT_FALSE(StartUp(options));

        ASSERT_EQ(output.Lines().size(), 1U) << output.Text();
        const std::string start = "SDL_CreateWindow error: ";
        EXPECT_EQ(output.Text().substr(0, start.size()), start);
        EXPECT_GT(output.Text().size(), start.size() + 1) << "the line does not tell why";
        EXPECT_EQ(output.Text().back(), '\n');
        EXPECT_EQ(ManagersThere(),
                  (std::vector<bool>{false, true, false, true, false, false, true, true, true}));
        // Without SDL its companions do not come up either.
        EXPECT_EQ(TTF_WasInit() != 0, SDL_WasInit(SDL_INIT_VIDEO) != 0);
        EXPECT_EQ(TTF_WasInit() != 0, std::string(driver) == "dummy");
        Signal done;
        CMN_TaskManager::GetInstance()->AddTask([&done] { done.Raise(); });
        EXPECT_TRUE(done.Wait()) << "the workers are gone";
        ShutDown();
        EXPECT_EQ(ManagersThere(), kNone);
    }
}

TEST(StartUpTest, RunsWhateverTheSettings) {
    const std::vector<GameOptions> cases{
        {0, 0, {0, 0}, "0"},
        {-5, -7, {-1, -1}, "0.01"},
        {kLowest, kLowest, {12, 12}, "1"},
        {1, 1, {-12288, 12287}, "10"},
        {641, 479, {kLowest, kLowest}, "10"},
        {320, 240, {kHighest, kHighest}, "1e-30"},
        {320, 240, {kLowest, kHighest}, "1e30"},
        {320, 240, {kHighest, 0}, "0.01"},
        {320, 240, {-13, kLowest + 1}, "nan"},
    };
    for (const GameOptions& options : cases) {
        SCOPED_TRACE(ConfigurationText(options));
        GameHarness game(options);
        WorldManager& world = game.World();
        world.showPlayerInfo = world.showLoadedAssets = world.renderCellBorder = true;
        world.renderDungeonRooms = world.renderHallways = world.renderMinSpanningTree = true;
        game.TickOnly();
        game.Settle();
        for (const SDL_Keycode key : {SDLK_a, SDLK_d, SDLK_w, SDLK_s, SDLK_e}) {
            game.KeyDown(key);
            game.Tick(3);
            game.KeyUp(key);
        }
        game.Tap(SDLK_BACKSPACE);
        game.Tap(SDLK_BACKQUOTE);
        ProbeEntity& probe = AddProbe(game);
        game.Tick(2);
        EXPECT_EQ(probe.updates, 2);
        EXPECT_EQ(probe.renders, 2);
        EXPECT_FALSE(QuitRequested());
    }
}

TEST(ShutDownTest, StopsThePoolBeforeTheManagersGo) {
    const TemporaryFile configuration(ConfigurationText({}));
    ASSERT_TRUE(StartUp(Options(configuration)));
    CMN_TaskManager& pool = *CMN_TaskManager::GetInstance();
    Signal running;
    Signal dropped;
    bool lateJobRan = false;
    std::vector<bool> seenByJob;
    pool.AddTask([&] {
        running.Raise();
        EXPECT_TRUE(dropped.Wait()) << "pending jobs are dropped while a job still runs";
        WorldManager::GetInstance()->QueueCallback([] {});
        seenByJob = ManagersThere();
    });
    pool.AddTask(
        [&lateJobRan, token = OnDestroy([&dropped] { dropped.Raise(); })] { lateJobRan = true; });
    ASSERT_TRUE(running.Wait());
    ShutDown();
    EXPECT_EQ(seenByJob, kAll) << "the running job has ended before any manager went";
    EXPECT_FALSE(lateJobRan);
    EXPECT_EQ(ManagersThere(), kNone);
}

TEST(ShutDownTest, DestroysTheManagersInOrder) {
    const TemporaryFile configuration(ConfigurationText({}));
    ASSERT_TRUE(StartUp(Options(configuration)));
    std::vector<bool> seenByEntity;
    std::vector<bool> seenByCallback;
    auto probe = std::make_unique<ProbeEntity>();
    probe->onDestroy = [&] { seenByEntity = ManagersThere(); };
    WorldManager::GetInstance()->AddEntity(probe.release(), kSpawnedLayer);
    bool callbackRan = false;
    std::uint32_t subsystems = 0;
    WorldManager::GetInstance()->QueueCallback([&callbackRan, token = OnDestroy([&] {
                                                                  seenByCallback = ManagersThere();
                                                                  subsystems = SDL_WasInit(0);
                                                              })] { callbackRan = true; });
    ShutDown();
    // The world goes after store, configuration, input and graphics, and before the others.
    const std::vector<bool> expected{false, false, false, false, true, true, true, true, true};
    EXPECT_EQ(seenByEntity, expected);
    EXPECT_EQ(seenByCallback, expected);
    EXPECT_NE(subsystems & SDL_INIT_VIDEO, 0U) << "SDL is shut down last";
    EXPECT_FALSE(callbackRan);
    EXPECT_EQ(ManagersThere(), kNone);
    EXPECT_EQ(SDL_WasInit(0), 0U);
    EXPECT_EQ(TTF_WasInit(), 0);
}
