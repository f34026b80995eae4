// The world manager's orders, its queue, and moments of streaming that the scenes do not show.
#include "world/WorldManager.h"

#include "entities/CameraEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "gen/GEN_DungeonGenerator.h"
#include "support/Game.h"
#include "support/Guarded.h"
#include "support/Probe.h"

#include <gtest/gtest.h>

#include <algorithm>

TEST(WorldTest, UpdatesInTheOrderAddedThenTheCameraThenCallbacksAndDrawsByLayer) {
    Game game;
    WorldManager& world = game.World();
    game.Tick();
    game.Settle();
    std::string events;
    for (const std::int32_t layer : {6, 0, 2, 5, 2, 1}) {
        Probe& probe = AddProbe(layer);
        const std::string name = std::to_string(layer) + (world.layers[2].size() == 2 ? "b " : " ");
        probe.onUpdate = [&events, name] { events += "u" + name; };
        probe.onRender = [&events, name] { events += "r" + name; };
    }
    AddProbe(3).active = false;
    Probe& mover = AddProbe(2);
    mover.onUpdate = [&world] { world.player->position = {700000, 6156}; };
    int cameraSeen = 0;
    world.QueueCallback([&] {
        cameraSeen = world.camera->position.x;
        mover.onUpdate = [] {};
    });
    game.Tick();
    EXPECT_EQ(cameraSeen, 700000 - 64) << "the camera sees what entities did, callbacks the camera";
    world.Render();
    EXPECT_EQ(events, "u6 u0 u2 u5 u2b u1b r0 r1b r2 r2b r5 r6 ");
}

TEST(WorldTest, CallbacksRunInTheOrderQueuedAndLaterOnesWaitForTheNextTick) {
    Game game;
    std::string ran;
    Signal draining;
    std::thread other([&] {
        for (int i = 0; i < 3; ++i) {
            game.World().QueueCallback([&ran, i] { ran += std::to_string(i); });
        }
        ASSERT_TRUE(draining.Wait());
        game.World().QueueCallback([&ran] { ran += "late"; });
    });
    game.World().QueueCallback([&] { draining.Raise(); });
    game.Tick();
    other.join();
    game.Tick(2);
    EXPECT_EQ(ran, "012late");
}

TEST(WorldTest, OwnsWhatItIsGivenWhetherItStaysLeavesOrNeverEnters) {
    int destroyed = 0;
    {
        Game game;
        WorldManager& world = game.World();
        const auto handOver = [&] {
            auto probe = std::make_unique<Probe>();
            Probe* made = probe.get();
            probe->onDestroy = [&destroyed] { ++destroyed; };
            world.QueueEntity(std::move(probe), 4);
            return made;
        };
        Probe* leaving = nullptr;
        world.QueueCallback([&] { world.RemoveEntity(leaving); }); // finds nothing yet
        leaving = handOver();
        Probe* staying = handOver();
        world.QueueCallback([&] {
            EXPECT_EQ(destroyed, 0);
            world.RemoveEntity(leaving);
            EXPECT_EQ(destroyed, 1) << "at once";
        });
        EXPECT_EQ(world.layers[4].size(), 1U) << "added before the tick's end";
        game.Tick();
        EXPECT_EQ(world.layers[4].back(), staying);
        EXPECT_EQ(world.layers[4].size(), 2U);
        EXPECT_EQ(world.entities.size(), 15U);
        handOver();
    }
    EXPECT_EQ(destroyed, 3);
}

TEST(StreamingTest, ARetargetedSlotHidesItsCellAtOnceAndDropsItsEntitiesAfterTheJob) {
    Game game({.start = {6 * 12288 + 6144, 3 * 12288 + 6144}});
    WorldManager& world = game.World();
    game.Tick();
    game.Settle();
    const std::vector<IEntity*> spawned = world.layers[kSpawnedLayer];
    ASSERT_FALSE(spawned.empty());
    EXPECT_EQ(world.cellGrid.lastClusterKey.id, ClusterKeyOfCell({6, 3}).id);
    world.player->position = {};
    EXPECT_NE(world.GetTileAt(spawned[0]->position), kTileEmpty) << "not in the player's cell";
    {
        WorkerHold hold;
        hold.Occupy(1);
        world.player->PlaceAt(CellOrigin({40, 40}));
        game.Tick(3);
        EXPECT_EQ(world.layers[kSpawnedLayer], spawned) << "deleted before the job has run";
        for (const IEntity* entity : spawned) {
            EXPECT_FALSE(entity->active);
        }
        EXPECT_EQ(world.cellGrid.FindLoaded({6, 3}), nullptr);
    }
    game.Settle();
    EXPECT_EQ(world.layers[kSpawnedLayer].size(), world.entities.size() - 14);
    world.cellGrid.LoadCell(0, {CellKey({-1, 4}), 1, {}}); // no such cell
    EXPECT_EQ(SlotAt(0).coords, (Vec2i{-1, -1}));
    EXPECT_FALSE(SlotAt(0).cellEntity->active);
}

TEST(StreamingTest, DungeonsAskedForByKeyAloneAreThoseOfItsNeighbors) {
    Game game({.start = {6 * 12288 + 6144, 3 * 12288 + 6144}});
    game.Tick();
    game.Settle();
    const GridKey home = CellKey({6, 3});
    const DungeonRecord* shown = SlotAt(4).cellEntity->GetView().dungeon;
    ASSERT_EQ(SlotAt(4).coords, home.Coords());
    EXPECT_EQ(ASM_AssetManager::GetInstance()->AcquireDungeon(home), shown);
    ASM_AssetManager::GetInstance()->ReleaseDungeon(home.id);
    const auto again = std::make_unique<DungeonRecord>();
    GEN_DungeonGenerator::GetInstance()->Generate(home, *again);
    EXPECT_GT(shown->compassPoints.size(), 0U);
    EXPECT_EQ(again->compassPoints, shown->compassPoints);
    EXPECT_EQ(again->tiles, shown->tiles);
}

TEST(StreamingTest, WithoutWorkersThereIsWaterAndTheQueueDoesNotGrow) {
    Game game({.workers = 0});
    for (std::int32_t step = 0; step < 100; ++step) {
        game.World().player->PlaceAt(CellOrigin({6 + step % 40, 3 + step % 7}));
        game.Tick();
    }
    game.Pass();
    CMN_TaskManager& pool = *CMN_TaskManager::GetInstance();
    const MutexLock lock(pool.mutex);
    EXPECT_EQ(pool.tasks.size(), 9U);
}
