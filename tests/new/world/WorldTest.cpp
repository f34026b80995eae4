// The world manager with its queue and the streaming of cells: orders, and moments that the scenes
// do not show.
#include "world/WorldManager.h"

#include "entities/CameraEntity.h"
#include "entities/HudEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "support/Game.h"
#include "support/Guarded.h"
#include "support/Probe.h"
#include "support/WorldModel.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

Vec2i CenterOf(Vec2i cell) {
    return CellOrigin(cell) + Vec2i{6144, 6144};
}

void GoTo(Game& game, Vec2i cell) {
    game.World().player->PlaceAt(CenterOf(cell));
    game.Tick();
}

} // namespace

TEST(WorldTest, StartsWithItsFixedEntitiesInOrder) {
    const Game game;
    const WorldManager& world = game.World();
    ASSERT_EQ(world.entities.size(), 14U);
    std::vector<std::vector<IEntity*>> layers(7);
    for (std::size_t i = 0; i < 14; ++i) {
        layers[std::array{0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 3, 5, 6, 4}[i]].push_back(
            world.entities[i].get());
        EXPECT_EQ(world.entities[i]->active, i == 10 || i == 13) << i;
    }
    for (std::size_t layer = 0; layer < layers.size(); ++layer) {
        EXPECT_EQ(world.layers[layer], layers[layer]) << layer;
    }
    EXPECT_EQ(world.entities[10].get(), world.player);
    EXPECT_NE(dynamic_cast<HudEntity*>(world.entities[13].get()), nullptr);
    EXPECT_EQ(world.cellGrid.GetEntity(8), world.entities[8].get());
    EXPECT_EQ(world.camera->target, world.player);
}

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
    game.Tick();
    game.Tick();
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
        Probe* leaving = handOver();
        Probe* staying = handOver();
        world.QueueCallback([&] { world.RemoveEntity(leaving); });
        EXPECT_EQ(world.layers[4].size(), 1U);
        game.Tick();
        EXPECT_EQ(world.layers[4].back(), staying);
        EXPECT_EQ(destroyed, 1);
        Probe& direct = AddProbe(4);
        direct.onDestroy = [&destroyed] { ++destroyed; };
        world.RemoveEntity(&direct);
        EXPECT_EQ(destroyed, 2) << "at once";
        Probe stranger; // one that the world does not own only leaves its layer
        world.layers[4].push_back(&stranger);
        world.RemoveEntity(&stranger);
        EXPECT_EQ(world.layers[4].size(), 2U);
        EXPECT_EQ(world.entities.size(), 15U);
        handOver();
    }
    EXPECT_EQ(destroyed, 4);
}

TEST(StreamingTest, OnlyCellsThatComeIntoReachAreAskedFor) {
    Game game;
    const auto cells = [&game] {
        game.Settle();
        std::string text;
        for (std::size_t i = 0; i < 9; ++i) {
            const Vec2i cell = SlotAt(i).coords;
            text += std::to_string(cell.x) + "," + std::to_string(cell.y) + " ";
        }
        return text;
    };
    GoTo(game, {0, 0});
    EXPECT_EQ(cells(), "-1,-1 0,0 0,1 1,0 1,1 -1,-1 -1,-1 -1,-1 -1,-1 ");
    GoTo(game, {6, 3});
    EXPECT_EQ(cells(), "5,2 5,3 5,4 6,2 6,3 6,4 7,2 7,3 7,4 ");
    {
        WorkerHold hold;
        hold.Occupy(1);
        game.World().player->PlaceAt(CenterOf({6, 3}) + Vec2i{2400, -2400});
        game.Tick(5);
        EXPECT_FALSE(SlotAt(0).busy) << "asked for anew";
    }
    GoTo(game, {7, 3});
    EXPECT_EQ(cells(), "8,2 8,3 8,4 6,2 6,3 6,4 7,2 7,3 7,4 ");
    const auto before = game.World().cellGrid.clusters;
    GoTo(game, {16, 3});
    EXPECT_EQ(game.World().cellGrid.clusters[3], before[4]) << "still in use, so not made anew";
    cells();
}

TEST(StreamingTest, ARetargetedSlotHidesItsCellAtOnceAndDropsItsEntitiesAfterTheJob) {
    Game game;
    WorldManager& world = game.World();
    WorldModel model;
    GoTo(game, {6, 3});
    model.Follow();
    game.Settle();
    const std::vector<IEntity*> spawned = world.layers[kSpawnedLayer];
    ASSERT_FALSE(spawned.empty());
    {
        WorkerHold hold;
        hold.Occupy(1);
        GoTo(game, {40, 40});
        model.Follow();
        game.Tick(2);
        EXPECT_EQ(world.layers[kSpawnedLayer], spawned) << "deleted before the job has run";
        EXPECT_TRUE(
            std::ranges::none_of(spawned, [](IEntity* entity) { return entity->active.load(); }));
        for (std::size_t i = 0; i < 9; ++i) {
            EXPECT_FALSE(world.cellGrid.GetEntity(i)->active);
        }
        EXPECT_EQ(world.cellGrid.FindLoaded({6, 3}), nullptr);
    }
    game.Settle();
    EXPECT_EQ(model.Faults(), "");
}

TEST(StreamingTest, WithoutWorkersThereIsWaterAndTheQueueDoesNotGrow) {
    Game game({.workers = 0});
    for (std::int32_t step = 0; step < 100; ++step) {
        GoTo(game, {6 + step % 40, 3 + step % 7});
    }
    EXPECT_EQ(CMN_TaskManager::GetInstance()->PendingTasks(), 9U);
    EXPECT_EQ(game.World().GetTileAt(CenterOf({6, 3})), 0);
    game.Pass();
}
