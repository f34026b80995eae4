// The same input makes the same game, whatever the number of workers and however late the loads
// come; and a difference, if there ever was one, would be seen and named.
#include "support/Replay.h"

#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/HudEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "input/CMN_InputManager.h"
#include "support/Guarded.h"
#include "support/QuietStderr.h"
#include "ui/DebugMenuEntity.h"
#include "ui/UIF_Button.h"
#include "world/ASM_AssetManager.h"
#include "world/WorldManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <tuple>
#include <utility>

namespace {

WorldManager& World() {
    return *WorldManager::GetInstance();
}

// What a voyage has been through, so that no replay passes for want of anything happening.
struct Experience {
    int ticksOnFoot = 0;
    int boardings = 0;
    int ticksOnMap = 0;
    int ticksInMenu = 0;
    int overtakenRequests = 0;
    std::array<std::optional<Vec2i>, CellGrid::kSlotCount> waiting; // by slot, the cell asked for
    std::size_t mostSpawned = 0;
    bool wasOnFoot = false;

    void Look() {
        const bool onFoot = World().player->mode == PlayerEntity::kOnFoot;
        ticksOnFoot += onFoot ? 1 : 0;
        boardings += wasOnFoot && !onFoot ? 1 : 0;
        wasOnFoot = onFoot;
        ticksOnMap += World().mapMode;
        ticksInMenu += World().debugMenu->active ? 1 : 0;
        for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
            const CellSlot slot = SlotAt(i);
            overtakenRequests += slot.pending && waiting[i] && *waiting[i] != slot.target ? 1 : 0;
            waiting[i] = slot.pending ? std::optional(slot.target) : std::nullopt;
        }
        mostSpawned = std::max(mostSpawned, World().layers[kSpawnedLayer].size());
    }
};

void ExpectEqual(const Trace& trace, const Trace& expected) {
    const std::optional<TraceDifference> difference = FirstDifference(trace, expected);
    EXPECT_FALSE(difference.has_value())
        << "first difference at tick " << difference->tick << ": " << difference->parts;
}

IEntity*& Spawned(std::size_t index) {
    return World().layers[kSpawnedLayer].at(index);
}

struct Fault {
    std::string part; ///< where it must be seen
    std::function<void()> plant;
};

std::vector<Fault> FaultsOfEveryTick() {
    return {
        {"player", [] { World().player->exactPosition.x += 0.125f; }},
        {"player", [] { World().player->tileType ^= 2; }},
        {"player", [] { World().player->mode ^= 1; }},
        {"boat", [] { World().anchoredBoat->active = !World().anchoredBoat->active; }},
        {"camera", [] { World().camera->zoom = std::nextafter(World().camera->zoom, 0.0f); }},
        {"map", [] { World().map->pan.y += 1.0f; }},
        {"flags", [] { World().showPlayerInfo = !World().showPlayerInfo; }},
        {"input",
         [] { ++CMN_InputManager::GetInstance()->timers[Index(InputAction::Left)].minInterval; }},
        {"menu",
         [] {
             auto& button = dynamic_cast<UIF_Button&>(*World().debugMenu->menuWindow.children[8]);
             button.hovered = !button.hovered;
         }},
        {"radar",
         [] {
             dynamic_cast<HudEntity&>(*World().layers[kHudLayer][0]).icons.push_back({1, 2});
         }},
        {"clusters",
         [] {
             ASM_AssetManager::GetInstance()->AcquireCluster(ClusterKey({77, 7}));
         }},
    };
}

std::vector<Fault> FaultsOfTheWorldAtRest() {
    return {
        {"spawned", [] { ++Spawned(0)->position.x; }},
        {"spawned", [] { Spawned(0)->active = false; }},
        {"layers", [] { std::swap(Spawned(0), Spawned(1)); }},
        {"layers", [] { World().layers[kSpawnedLayer].pop_back(); }},
        {"counts",
         [] {
             ASM_AssetManager::GetInstance()->AcquireDungeon(CellKey({900, 900}), 0);
         }},
        {"terrain",
         [] { World().cellGrid.GetEntity(0)->active = !World().cellGrid.GetEntity(0)->active; }},
    };
}

class ReplayTest : public testing::Test {
protected:
    // Plants each fault in the first, a middle and the last of some ticks.
    void ExpectSeen(const std::vector<Fault>& faults, const std::vector<std::size_t>& ticks) {
        for (const Fault& fault : faults) {
            for (const std::size_t tick : {ticks.front(), ticks[ticks.size() / 2], ticks.back()}) {
                SCOPED_TRACE(testing::Message() << fault.part << " in tick " << tick);
                const Trace faulty = Replay(voyage, {.afterTick = [&](std::size_t now) {
                                                if (now == tick) {
                                                    fault.plant();
                                                }
                                            }});
                const std::optional<TraceDifference> found = FirstDifference(faulty, sound);
                ASSERT_TRUE(found.has_value());
                EXPECT_EQ(found->tick, tick);
                EXPECT_NE(found->parts.find(fault.part), std::string::npos) << found->parts;
            }
        }
    }

    const QuietStderr quiet;
    const Recording voyage = RecordVoyage(5, 4);
    std::vector<std::size_t> restsAmongEnemies;
    const Trace sound =
        Replay(voyage, {.afterTick = [&](std::size_t tick) {
                   if (std::binary_search(voyage.rests.begin(), voyage.rests.end(), tick) &&
                       World().layers[kSpawnedLayer].size() > 1) {
                       restsAmongEnemies.push_back(tick);
                   }
               }});
};

class ReplayWithWorkersTest : public testing::TestWithParam<std::tuple<std::uint32_t, unsigned>> {
    const QuietStderr quiet;
};

} // namespace

TEST_P(ReplayWithWorkersTest, IsTheSameHoweverLateTheLoadsCome) {
    const auto [workers, voyageSeed] = GetParam();
    const Recording voyage = RecordVoyage(voyageSeed, 24);
    Experience seen;
    const Trace expected = Replay(voyage, {.afterTick = [&](std::size_t) { seen.Look(); }});
    ASSERT_EQ(expected.size(), voyage.ticks);
    Experience delayed;
    for (const unsigned delaySeed : {0U, 1U, 2U}) {
        SCOPED_TRACE("delays " + std::to_string(delaySeed));
        ExpectEqual(Replay(voyage, {workers, delaySeed, [&](std::size_t) { delayed.Look(); }}),
                    expected);
    }
    EXPECT_GT(seen.ticksOnFoot, 100);
    EXPECT_GT(seen.boardings, 0);
    EXPECT_GT(seen.ticksOnMap, 100);
    EXPECT_GT(seen.ticksInMenu, 100);
    EXPECT_GT(seen.mostSpawned, 50U);
    EXPECT_GT(delayed.overtakenRequests, 0) << "the delays have delayed nothing";
}

INSTANTIATE_TEST_SUITE_P(WorkersAndVoyages, ReplayWithWorkersTest,
                         testing::Combine(testing::Values(1, 2, 8), testing::Values(3, 21)));

TEST_F(ReplayTest, AFaultInTheFirstAMiddleAndTheLastTickIsSeenInThatTick) {
    ExpectSeen(FaultsOfEveryTick(), {0, voyage.ticks / 2, voyage.ticks - 1});
}

TEST_F(ReplayTest, AFaultInTheWorldAtRestIsSeenInThatTick) {
    ASSERT_GE(restsAmongEnemies.size(), 3U);
    ExpectSeen(FaultsOfTheWorldAtRest(), restsAmongEnemies);
}

TEST_F(ReplayTest, AMissingTickIsSeen) {
    Trace shorter = sound;
    shorter.pop_back();
    const std::optional<TraceDifference> difference = FirstDifference(sound, shorter);
    ASSERT_TRUE(difference.has_value());
    EXPECT_EQ(difference->tick, shorter.size());
}
