#include "world/WorldManager.h"

#include "app/CMN_TimeManager.h"
#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/HudEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "gfx/GFX_GraphicsManager.h"
#include "support/GameHarness.h"
#include "support/ProbeEntity.h"
#include "support/Signal.h"
#include "ui/DebugMenuEntity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using Log = ProbeEntity::Log;

// Adds a probe that the world owns.
ProbeEntity& AddProbe(WorldManager& world, std::int32_t layer, const std::string& name = "",
                      Log* log = nullptr) {
    auto probe = std::make_unique<ProbeEntity>(name, log);
    ProbeEntity& added = *probe;
    world.AddEntity(probe.release(), layer);
    return added;
}

// Queues a probe that counts its destruction.
ProbeEntity& HandOver(WorldManager& world, std::int32_t layer, int* destroyed = nullptr) {
    auto probe = std::make_unique<ProbeEntity>();
    ProbeEntity& handedOver = *probe;
    if (destroyed != nullptr) {
        handedOver.onDestroy = [destroyed] { ++*destroyed; };
    }
    world.QueueEntity(std::move(probe), layer);
    return handedOver;
}

} // namespace

TEST(WorldManagerTest, StartsWithItsFixedEntitiesInOrder) {
    const GameHarness game;
    const WorldManager& world = game.World();
    ASSERT_EQ(world.entities.size(), 14U);
    std::vector<IEntity*> terrain;
    for (std::size_t i = 0; i < 9; ++i) {
        terrain.push_back(world.entities[i].get());
        EXPECT_NE(dynamic_cast<TerrainCellEntity*>(terrain.back()), nullptr);
        EXPECT_EQ(world.cellGrid.GetEntity(i), terrain.back());
        EXPECT_FALSE(terrain.back()->active);
    }
    IEntity* hud = world.entities[13].get();
    EXPECT_EQ(world.entities[9].get(), world.anchoredBoat);
    EXPECT_EQ(world.entities[10].get(), world.player);
    EXPECT_EQ(world.entities[11].get(), world.map);
    EXPECT_EQ(world.entities[12].get(), world.debugMenu);
    EXPECT_NE(dynamic_cast<HudEntity*>(hud), nullptr);

    EXPECT_EQ(world.layers[0], terrain);
    EXPECT_TRUE(world.layers[1].empty());
    EXPECT_TRUE(world.layers[2].empty());
    EXPECT_EQ(world.layers[3], (std::vector<IEntity*>{world.anchoredBoat, world.player}));
    EXPECT_EQ(world.layers[4], std::vector<IEntity*>{hud});
    EXPECT_EQ(world.layers[5], std::vector<IEntity*>{world.map});
    EXPECT_EQ(world.layers[6], std::vector<IEntity*>{world.debugMenu});

    EXPECT_TRUE(world.player->active && hud->active && world.camera->active);
    EXPECT_FALSE(world.anchoredBoat->active || world.map->active || world.debugMenu->active);
    EXPECT_EQ(world.mapMode, 0);
    EXPECT_FALSE(world.renderCellBorder || world.renderDungeonRooms ||
                 world.renderMinSpanningTree || world.renderHallways || world.showPlayerInfo ||
                 world.showLoadedAssets);
    EXPECT_EQ(world.camera->target, world.player);
    EXPECT_EQ(world.camera->position, (Vec2i{0, 0}));
    EXPECT_EQ(world.player->position, (Vec2i{6156, 6156}));
    EXPECT_EQ(world.player->direction, 3);
    EXPECT_EQ(world.player->speed, 1200.0f);
    EXPECT_TRUE(world.player->idle);
}

TEST(WorldManagerTest, TakesAStartZoomWithinItsBounds) {
    const std::vector<std::pair<const char*, float>> cases{{"0.0099999", 0.0f}, {"0.01", 0.01f},
                                                           {"10", 10.0f},       {"10.0001", 0.0f},
                                                           {"nan", 0.0f},       {"", 0.0f}};
    for (const auto& [text, expected] : cases) {
        const GameHarness game({.zoom = text});
        EXPECT_EQ(game.World().camera->zoom, expected) << text;
    }
}

TEST(WorldManagerTest, TheMapOpensOnThePlayerEachTime) {
    GameHarness game;
    WorldManager& world = game.World();
    for (int round = 0; round < 2; ++round) {
        game.Tap(SDLK_BACKSPACE);
        EXPECT_EQ(world.mapMode, 1);
        EXPECT_TRUE(world.map->active);
        const Vec2f place = ToVec2f(world.player->position);
        EXPECT_FLOAT_EQ(world.map->pan.x, place.x * (50.0f / 12288.0f));
        EXPECT_FLOAT_EQ(world.map->pan.y, place.y * (50.0f / 12288.0f));
        world.map->pan = {-1000.0f, 1000.0f};
        game.TickOnly(5);
        EXPECT_EQ(world.map->pan, (Vec2f{-1000.0f, 1000.0f})) << "only opening centres the map";
        game.Tap(SDLK_BACKSPACE);
        EXPECT_EQ(world.mapMode, 0);
        EXPECT_FALSE(world.map->active);
        world.player->PlaceAt({30000, 60000});
    }
}

TEST(WorldManagerTest, UpdatesInTheOrderAddedAndDrawsByLayer) {
    GameHarness game;
    WorldManager& world = game.World();
    Log log;
    AddProbe(world, 6, "menu", &log);
    AddProbe(world, 0, "terrain", &log);
    ProbeEntity& hidden = AddProbe(world, 3, "hidden", &log);
    AddProbe(world, 2, "enemy 1", &log);
    AddProbe(world, 5, "map", &log);
    AddProbe(world, 2, "enemy 2", &log);
    AddProbe(world, 1, "one", &log);
    hidden.active = false;
    game.Tick();
    EXPECT_EQ(log, (Log{"update menu", "update terrain", "update enemy 1", "update map",
                        "update enemy 2", "update one", "render terrain", "render one",
                        "render enemy 1", "render enemy 2", "render map", "render menu"}));
    hidden.active = true;
    log.clear();
    game.Tick();
    EXPECT_EQ(std::count(log.begin(), log.end(), "update hidden"), 1);
    EXPECT_EQ(std::count(log.begin(), log.end(), "render hidden"), 1);
}

TEST(WorldManagerTest, ATickEndsWithTheCameraAndThenTheCallbacks) {
    GameHarness game;
    WorldManager& world = game.World();
    game.TickOnly();
    game.Settle();
    ProbeEntity& mover = AddProbe(world, 2);
    mover.onUpdate = [&world] { world.player->position = {700000, 6156}; };
    Vec2i cameraSeen;
    world.QueueCallback([&] { cameraSeen = world.camera->position; });
    game.TickOnly();
    // The window is 640 wide: the dead zone reaches 64 to each side.
    EXPECT_EQ(world.camera->position.x, 700000 - 64) << "the camera sees what entities did";
    EXPECT_EQ(cameraSeen, world.camera->position) << "callbacks see what the camera did";
}

TEST(WorldManagerTest, CallbacksRunOnceInTheOrderQueued) {
    GameHarness game;
    game.Tick();
    std::vector<int> ran;
    const auto token = std::make_shared<int>(0);
    std::thread([&] {
        for (int i = 0; i < 100; ++i) {
            game.World().QueueCallback([&ran, i, token] { ran.push_back(i); });
        }
    }).join();
    game.Pass(1); // a frame alone drains nothing
    EXPECT_TRUE(ran.empty());
    game.Tick(2);
    ASSERT_EQ(ran.size(), 100U);
    EXPECT_TRUE(std::is_sorted(ran.begin(), ran.end()));
    EXPECT_EQ(token.use_count(), 1) << "callbacks are destroyed once they have run";
}

TEST(WorldManagerTest, ACallbackQueuedDuringADrainWaitsForTheNextTick) {
    GameHarness game;
    Signal draining;
    Signal queued;
    bool ran = false;
    std::thread other([&] {
        ASSERT_TRUE(draining.Wait());
        game.World().QueueCallback([&ran] { ran = true; });
        queued.Raise();
    });
    game.World().QueueCallback([&] {
        draining.Raise();
        EXPECT_FALSE(queued.Wait(50)) << "the queue is open to others while it is drained";
    });
    game.TickOnly();
    other.join();
    EXPECT_FALSE(ran);
    game.TickOnly();
    EXPECT_TRUE(ran);
}

TEST(WorldManagerTest, RemovesEntitiesAndKeepsTheOrderOfTheRest) {
    int destroyed = 0; // outlives the world
    GameHarness game;
    WorldManager& world = game.World();
    Log log;
    std::vector<ProbeEntity*> probes;
    for (const char* name : {"a", "b", "c", "d"}) {
        probes.push_back(&AddProbe(world, 2, name, &log));
        probes.back()->onDestroy = [&destroyed] { ++destroyed; };
    }
    const std::size_t before = world.entities.size();
    world.RemoveEntity(probes[1]);
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(world.entities.size(), before - 1);
    world.QueueCallback([&] {
        world.RemoveEntity(probes[2]);
        EXPECT_EQ(destroyed, 2) << "at once within a drain as well";
    });
    game.Tick();
    EXPECT_EQ(destroyed, 2);
    EXPECT_EQ(log, (Log{"update a", "update c", "update d", "render a", "render d"}));
    EXPECT_EQ(world.layers[2], (std::vector<IEntity*>{probes[0], probes[3]}));

    // One that the world does not own only leaves the first layer that holds it.
    auto stranger = std::make_unique<ProbeEntity>();
    stranger->onDestroy = [&destroyed] { ++destroyed; };
    world.layers[1].push_back(stranger.get());
    world.layers[4].push_back(stranger.get());
    world.RemoveEntity(stranger.get());
    EXPECT_TRUE(world.layers[1].empty());
    EXPECT_EQ(world.layers[4].size(), 2U);
    world.layers[4].pop_back();
    EXPECT_EQ(destroyed, 2);
    EXPECT_EQ(world.entities.size(), before - 2);
}

TEST(WorldManagerTest, EntitiesHandedOverEnterAtTheEndOfTheTick) {
    GameHarness game;
    WorldManager& world = game.World();
    ProbeEntity* probe = nullptr;
    std::thread([&] { probe = &HandOver(world, 4); }).join();
    EXPECT_NE(world.entities.back().get(), probe);
    game.TickOnly();
    EXPECT_EQ(world.entities.back().get(), probe);
    EXPECT_EQ(world.layers[4].back(), probe);
    EXPECT_EQ(probe->updates, 0);
    game.Tick();
    EXPECT_EQ(probe->updates, 1);
    EXPECT_EQ(probe->renders, 1);
}

TEST(WorldManagerTest, OwnsWhatIsHandedOverWhetherItStaysLeavesOrNeverEnters) {
    int destroyed = 0;
    {
        GameHarness game;
        WorldManager& world = game.World();
        const std::size_t before = world.entities.size();
        ProbeEntity& leaving = HandOver(world, 2, &destroyed);
        ProbeEntity& staying = HandOver(world, 2, &destroyed);
        world.QueueCallback([&] { world.RemoveEntity(&leaving); });
        game.Tick();
        EXPECT_EQ(destroyed, 1);
        EXPECT_EQ(world.entities.size(), before + 1);
        EXPECT_EQ(world.layers[2], std::vector<IEntity*>{&staying});
        ProbeEntity* late = nullptr;
        world.QueueCallback([&] { world.RemoveEntity(late); });
        late = &HandOver(world, 2, &destroyed);
        game.Tick();
        EXPECT_EQ(world.layers[2], (std::vector<IEntity*>{&staying, late}))
            << "a removal queued before the addition finds nothing";
        HandOver(world, 2, &destroyed);
        EXPECT_EQ(destroyed, 1);
    }
    EXPECT_EQ(destroyed, 4);
}
