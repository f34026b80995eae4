// The same input makes the same game, whatever the number of workers and however late the loads
// come; and a difference, if there ever was one, would be seen and named.
#include "support/Replay.h"

#include "entities/CameraEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "input/CMN_InputManager.h"
#include "support/QuietStderr.h"
#include "ui/DebugMenuEntity.h"
#include "ui/UIF_Button.h"
#include "world/ASM_AssetManager.h"
#include "world/WorldManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
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
    int ticksWithPendingLoads = 0;
    int overtakenRequests = 0;
    std::size_t mostSpawned = 0;

    void Look() {
        const bool onFoot = World().player->mode == PlayerEntity::kOnFoot;
        boardings += wasOnFoot && !onFoot ? 1 : 0;
        wasOnFoot = onFoot;
        ticksOnFoot += onFoot ? 1 : 0;
        ticksOnMap += World().mapMode;
        ticksInMenu += World().debugMenu->active ? 1 : 0;
        bool pending = false;
        for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
            const CellSlot slot = World().cellGrid.GetSlot(i);
            pending = pending || slot.busy;
            overtakenRequests += slot.request.number > slot.served + 1 ? 1 : 0;
        }
        ticksWithPendingLoads += pending ? 1 : 0;
        mostSpawned = std::max(mostSpawned, World().layers[kSpawnedLayer].size());
    }

private:
    bool wasOnFoot = false;
};

// A short voyage with a bit of everything, recorded once for all tests of a process.
const Recording& ShortVoyage() {
    static const Recording recording = RecordVoyage(5, 4);
    return recording;
}

void ExpectEqual(const Trace& trace, const Trace& expected) {
    const std::optional<TraceDifference> difference = FirstDifference(trace, expected);
    EXPECT_FALSE(difference.has_value())
        << "first difference at tick " << difference->tick << ": " << difference->parts;
}

// Replays the short voyage with a fault and tells where it is seen first.
TraceDifference FindFault(std::size_t tick, const std::function<void()>& fault) {
    static const Trace sound = Replay(ShortVoyage(), {});
    const Trace faulty = Replay(ShortVoyage(), {.afterTick = [&](std::size_t now) {
                                    if (now == tick) {
                                        fault();
                                    }
                                }});
    return FirstDifference(faulty, sound).value_or(TraceDifference{0, "nothing"});
}

struct Fault {
    std::string part; ///< where it must be seen
    std::function<void()> plant;
};

std::vector<Fault> FaultsOfEveryTick() {
    return {
        {"player", [] { World().player->exactPosition.x += 0.125f; }},
        {"player", [] { World().player->tileType ^= 2; }},
        {"camera", [] { World().camera->zoom = std::nextafter(World().camera->zoom, 0.0f); }},
        {"map", [] { World().map->pan.y += 1.0f; }},
        {"flags", [] { World().showPlayerInfo = !World().showPlayerInfo; }},
        {"input",
         [] { ++CMN_InputManager::GetInstance()->timers[Index(InputAction::Left)].minInterval; }},
        {"menu",
         [] {
             auto& button =
                 dynamic_cast<UIF_Button&>(*World().debugMenu->menuWindow.children.back());
             button.hovered = !button.hovered;
         }},
    };
}

IEntity*& Spawned(std::size_t index) {
    return World().layers[kSpawnedLayer].at(index);
}

std::vector<Fault> FaultsOfTheWorldAtRest() {
    return {
        {"spawned", [] { ++Spawned(0)->position.x; }},
        {"spawned", [] { Spawned(0)->active = false; }},
        {"layers", [] { std::swap(Spawned(0), Spawned(1)); }},
        {"layers", [] { World().layers[kSpawnedLayer].pop_back(); }},
        {"dungeon counts",
         [] {
             ASM_AssetManager::GetInstance()->AcquireDungeon(CellKey({900, 900}), 0);
         }},
        {"terrain",
         [] { World().cellGrid.GetEntity(0)->active = !World().cellGrid.GetEntity(0)->active; }},
    };
}

// The rests of the short voyage with something in layer 2.
std::vector<std::size_t> RestsAmongEnemies() {
    const std::vector<std::size_t>& rests = ShortVoyage().rests;
    std::vector<std::size_t> found;
    Replay(ShortVoyage(), {.afterTick = [&](std::size_t tick) {
               if (std::binary_search(rests.begin(), rests.end(), tick) &&
                   World().layers[kSpawnedLayer].size() > 1) {
                   found.push_back(tick);
               }
           }});
    return found;
}

class ReplayTest : public testing::Test {
    const QuietStderr quiet;
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
    std::cout << "compared 3 replays of " << voyage.ticks << " ticks with " << voyage.rests.size()
              << " rests and " << voyage.events.size() << " events: " << seen.ticksOnFoot
              << " ticks on foot, " << seen.boardings << " boardings, " << seen.ticksOnMap
              << " ticks on the map, " << seen.ticksInMenu << " in the menu, "
              << delayed.ticksWithPendingLoads << " with loads pending in the replays, "
              << delayed.overtakenRequests << " slot-ticks overtaken\n";
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
    const std::size_t last = ShortVoyage().ticks - 1;
    for (const Fault& fault : FaultsOfEveryTick()) {
        for (const std::size_t tick : {std::size_t{0}, last / 2, last}) {
            const TraceDifference found = FindFault(tick, fault.plant);
            EXPECT_EQ(found.tick, tick) << fault.part;
            EXPECT_NE(found.parts.find(fault.part), std::string::npos) << found.parts;
        }
    }
}

TEST_F(ReplayTest, AFaultInTheWorldAtRestIsSeenInThatTick) {
    const std::vector<std::size_t> rests = RestsAmongEnemies();
    ASSERT_GE(rests.size(), 3U);
    for (const Fault& fault : FaultsOfTheWorldAtRest()) {
        for (const std::size_t tick : {rests.front(), rests[rests.size() / 2], rests.back()}) {
            const TraceDifference found = FindFault(tick, fault.plant);
            EXPECT_EQ(found.tick, tick) << fault.part;
            EXPECT_NE(found.parts.find(fault.part), std::string::npos) << found.parts;
        }
    }
}

TEST_F(ReplayTest, AMissingTickIsSeen) {
    const Trace whole = Replay(ShortVoyage().Head(50), {});
    const std::optional<TraceDifference> difference =
        FirstDifference(whole, Replay(ShortVoyage().Head(49), {}));
    ASSERT_TRUE(difference.has_value());
    EXPECT_EQ(difference->tick, 49U);
}
