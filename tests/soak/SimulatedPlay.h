// Play as fast as the machine allows: a tick and a frame per pass, on a clock that jumps 16 ms each
// time. The world is checked at every rest. Main thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "support/Pilot.h"
#include "support/WorldInvariants.h"

class SimulatedPlay : public Controls {
public:
    void Tick() override;
    void Rest() override;

    /// Brings the player to a place and the world to rest there, so that moments can be compared.
    void RestAt(Vec2i place);

    std::size_t Ticks() const { return ticks; }
    std::size_t Rests() const { return rests; }

    /// Enemies and markers that have entered the world with cells seen at rest.
    std::size_t Arrivals() const { return arrivals; }

private:
    void CountArrivals();

    SlotModel model;
    std::uint32_t now = 0; // ms
    std::size_t ticks = 0;
    std::size_t rests = 0;
    std::size_t arrivals = 0;
    std::array<Vec2i, 9> counted{}; // by slot, the cell whose entities are counted
};
