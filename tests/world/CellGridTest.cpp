// The streaming of cells: what is targeted, and what holds at rest after any storm of jumps.
#include "world/CellGrid.h"

#include "common/CMN_TaskManager.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "support/GameHarness.h"
#include "support/Guarded.h"
#include "support/QuietStderr.h"
#include "support/WorkerHold.h"
#include "support/WorldInvariants.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

namespace {

constexpr Vec2i kLand{6, 3};

Vec2i CenterOf(Vec2i cell) {
    return cell * kCellSize + Vec2i{kCellSize / 2, kCellSize / 2};
}

// Jumps about between land, sea, negative edges and cluster corners, so that the same cells come
// and go in quick succession.
class Storm {
public:
    Storm(GameHarness& target, unsigned seed) : game(target), random(seed) {}

    void Jump() {
        Vec2i position = CenterOf(centers[Draw(centers.size())]);
        position.x += (static_cast<std::int32_t>(Draw(5)) - 2) * kCellSize;
        position.y += (static_cast<std::int32_t>(Draw(5)) - 2) * kCellSize;
        game.World().player->PlaceAt(position);
        const std::size_t ticks = Draw(3);
        // A jump that no tick sees is overtaken before it starts.
        for (std::size_t tick = 0; tick < ticks; ++tick) {
            Tick();
            WatchForStaleCells();
        }
        if (Draw(8) == 0) {
            Draw(2) == 0 ? ShowEverything() : HideMap();
            game.World().Render();
        }
    }

    void Check() {
        Tick();
        while (!game.World().cellGrid.WaitForLoads(1)) {
            WatchForStaleCells();
        }
        game.Settle();
        CheckWorldAtRest(model);
    }

private:
    void Tick() {
        model.Follow(game.World().player->position);
        game.TickOnly();
        for (std::size_t i = 0; i < before.size(); ++i) {
            before[i] = SlotAt(i).coords;
        }
    }

    // All that reads records while jobs run: overlays, texts, listing and the map's two views.
    void ShowEverything() {
        WorldManager& world = game.World();
        world.renderCellBorder = world.renderDungeonRooms = world.renderMinSpanningTree =
            world.renderHallways = world.showPlayerInfo = world.showLoadedAssets = true;
        world.map->active = true;
        world.map->showCompasses = true;
        world.map->zoom = Draw(2) == 0 ? 1.0f : 4.5f;
        world.map->pan = ToVec2f(world.player->position) * world.map->worldToMap;
    }

    void HideMap() { game.World().map->active = false; }

    // What shows is what was asked for last, and of several requests only the last is carried out.
    // Looks again and again for a while, since what is stale might be there for moments only.
    void WatchForStaleCells() {
        for (int look = 0; look < 20; ++look) {
            for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
                const bool shown = game.World().cellGrid.GetEntity(i)->active;
                const CellSlot slot = SlotAt(i);
                ASSERT_TRUE(!shown || slot.coords == slot.target) << "slot " << i;
                ASSERT_TRUE(slot.coords == before[i] || slot.coords == slot.target)
                    << "slot " << i << " shows an overtaken request";
            }
        }
    }

    std::size_t Draw(std::size_t count) { return random() % count; }

    // Land in the clusters around the origin, a corner of four clusters, both axes' edges, and the
    // negative side.
    inline static const std::array<Vec2i, 9> centers{kLand,         Vec2i{40, 40}, Vec2i{16, 16},
                                                     Vec2i{10, 0},  Vec2i{0, 15},  Vec2i{-3, 2},
                                                     Vec2i{18, 17}, Vec2i{0, 0},   Vec2i{22, 19}};
    GameHarness& game;
    std::mt19937 random;
    SlotModel model;
    std::array<Vec2i, CellGrid::kSlotCount> before{}; // the cells loaded by the last tick's end
};

class CellGridTest : public testing::Test {
protected:
    void GoTo(Vec2i cell) {
        game.World().player->PlaceAt(CenterOf(cell));
        game.TickOnly();
    }

    std::array<Vec2i, 9> HeldCells() {
        game.Settle();
        std::array<Vec2i, 9> cells;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            cells[i] = SlotAt(i).coords;
        }
        return cells;
    }

    const QuietStderr quiet;
    GameHarness game;
};

class StormTest : public testing::TestWithParam<std::uint32_t> {};

} // namespace

TEST_F(CellGridTest, TheStartInTheCornerOfTheWorldFillsTheSecondToFifthSlot) {
    GoTo({0, 0});
    const std::array<Vec2i, 9> expected{Vec2i{-1, -1}, Vec2i{0, 0},   Vec2i{0, 1},
                                        Vec2i{1, 0},   Vec2i{1, 1},   Vec2i{-1, -1},
                                        Vec2i{-1, -1}, Vec2i{-1, -1}, Vec2i{-1, -1}};
    EXPECT_EQ(HeldCells(), expected);
}

TEST_F(CellGridTest, AStepToTheRightReplacesTheLeftColumnOnly) {
    GoTo(kLand);
    const std::array<Vec2i, 9> before = HeldCells();
    // Within the cell nothing is asked for.
    WorkerHold hold;
    hold.Occupy(1);
    game.World().player->PlaceAt(CenterOf(kLand) + Vec2i{2400, -2400});
    game.TickOnly(5);
    for (std::size_t i = 0; i < before.size(); ++i) {
        EXPECT_FALSE(SlotAt(i).busy);
    }
    hold.Release();
    GoTo(kLand + Vec2i{1, 0});
    const std::array<Vec2i, 9> after = HeldCells();
    std::int32_t row = 2; // the freed slots take the new column upward
    for (std::size_t i = 0; i < before.size(); ++i) {
        const bool left = before[i].x == 5;
        EXPECT_EQ(after[i], left ? (Vec2i{8, row}) : before[i]) << "slot " << i;
        row += left ? 1 : 0;
    }
}

TEST_F(CellGridTest, ARetargetedSlotHidesItsCellAtOnceAndDropsItsEntitiesAfterTheJob) {
    GoTo(kLand);
    game.Settle();
    const std::vector<IEntity*> spawned = game.World().layers[kSpawnedLayer];
    ASSERT_FALSE(spawned.empty());

    WorkerHold hold;
    hold.Occupy(1);
    GoTo({40, 40});
    game.TickOnly(2);
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        EXPECT_FALSE(SlotAt(i).cellEntity->active);
    }
    EXPECT_EQ(game.World().layers[kSpawnedLayer], spawned) << "deleted before the job has run";
    EXPECT_TRUE(std::none_of(spawned.begin(), spawned.end(),
                             [](const IEntity* entity) { return entity->active.load(); }));
    EXPECT_EQ(game.World().cellGrid.FindLoaded(kLand), nullptr);

    hold.Release();
    game.Settle();
    SlotModel model;
    model.MoveTo(kLand);
    model.MoveTo({40, 40});
    CheckWorldAtRest(model);
}

TEST_F(CellGridTest, ALoadOfANegativeCellEmptiesItsSlot) {
    GoTo(kLand);
    game.Settle();
    std::size_t land = 0;
    while (SlotAt(land).spawned.empty()) {
        ++land;
    }
    const std::size_t before = game.World().entities.size();
    const std::size_t spawned = SlotAt(land).spawned.size();
    game.World().cellGrid.LoadCell(land, {CellKey({-1, 4}), 1, {}});
    game.TickOnly();
    EXPECT_EQ(SlotAt(land).coords, (Vec2i{-1, -1}));
    EXPECT_FALSE(SlotAt(land).cellEntity->active);
    EXPECT_EQ(game.World().entities.size(), before - spawned);
}

TEST(CellGridWithoutWorkersTest, ShowsWaterAndTheQueueDoesNotGrow) {
    const QuietStderr quiet;
    GameHarness game({.start = CenterOf(kLand), .hardwareThreads = 1});
    for (std::int32_t step = 0; step < 200; ++step) {
        game.World().player->PlaceAt(CenterOf({6 + step % 40, 3 + step % 7}));
        game.TickOnly();
    }
    EXPECT_EQ(CMN_TaskManager::GetInstance()->PendingTasks(), CellGrid::kSlotCount);
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        EXPECT_EQ(SlotAt(i).coords, (Vec2i{-1, -1}));
    }
    EXPECT_EQ(game.World().GetTileAt(CenterOf(kLand)), 0);
    game.Tick();
}

TEST_F(CellGridTest, AClusterInBothBlocksStaysInUseAcrossACrossing) {
    GoTo({15, 20});
    const auto before = game.World().cellGrid.clusters;
    GoTo({16, 20});
    const auto after = game.World().cellGrid.clusters;
    for (std::size_t row = 0; row < 3; ++row) {
        EXPECT_EQ(after[row * 3], before[row * 3 + 1]);
        EXPECT_EQ(after[row * 3 + 1], before[row * 3 + 2]);
        EXPECT_EQ(after[row * 3 + 2]->key.x, 2);
    }
    game.Settle();
}

TEST_P(StormTest, LeavesTheWorldWholeAtRest) {
    const QuietStderr quiet;
    GameHarness game({.start = CenterOf(kLand), .hardwareThreads = GetParam() + 1});
    Storm storm(game, 7 + GetParam());
    for (int round = 0; round < 60 && !HasFailure(); ++round) {
        for (int jump = 0; jump < 25; ++jump) {
            storm.Jump();
        }
        storm.Check();
    }
}

INSTANTIATE_TEST_SUITE_P(Workers, StormTest, testing::Values(1, 2, 8));

TEST(ShutDownTest, EndsInTheMiddleOfAStorm) {
    const QuietStderr quiet;
    int pendingRounds = 0;
    for (unsigned round = 0; round < 25; ++round) {
        GameHarness game({.start = CenterOf(kLand), .hardwareThreads = 2 + round % 7});
        Storm storm(game, round);
        for (unsigned jump = 0; jump < round % 7; ++jump) {
            storm.Jump();
        }
        game.World().player->PlaceAt(CenterOf({60, 60}));
        game.TickOnly();
        pendingRounds += game.World().cellGrid.WaitForLoads(0) ? 0 : 1;
    }
    EXPECT_GT(pendingRounds, 0) << "every load had ended before the shutdown";
}
