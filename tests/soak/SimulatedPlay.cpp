#include "SimulatedPlay.h"

#include "app/Application.h"
#include "entities/PlayerEntity.h"
#include "support/Guarded.h"
#include "world/WorldManager.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint32_t kDeadline = 120000; // ms

} // namespace

void SimulatedPlay::Tick() {
    model.Follow(WorldManager::GetInstance()->player->position);
    now += 16;
    RunPass(now);
    ++ticks;
}

void SimulatedPlay::Rest() {
    ASSERT_TRUE(WorldManager::GetInstance()->cellGrid.WaitForLoads(kDeadline))
        << "a load does not end";
    Tick();
    CheckWorldAtRest(model);
    CountArrivals();
    ++rests;
}

void SimulatedPlay::RestAt(Vec2i place) {
    WorldManager::GetInstance()->player->PlaceAt(place);
    Tick();
    Rest();
}

void SimulatedPlay::CountArrivals() {
    for (std::size_t i = 0; i < counted.size(); ++i) {
        const CellSlot slot = SlotAt(i);
        if (slot.coords != counted[i]) {
            counted[i] = slot.coords;
            arrivals += slot.spawned.size();
        }
    }
}
