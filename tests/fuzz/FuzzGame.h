// A running game that a fuzz target steers, with the model that the streamed world must agree with
// at rest. A new one for every input, so that an input alone repeats what it found.
#pragma once

#include <cstdint>

#include "support/GameHarness.h"
#include "support/WorldInvariants.h"

class FuzzGame {
public:
    FuzzGame(Vec2i start, std::uint32_t workers)
        : game({.width = 160, .height = 120, .start = start, .hardwareThreads = workers + 1}) {}

    /// One pass of the main loop so many ms after the last one.
    void Pass(std::uint32_t milliseconds);

    /// Ticks without frames.
    void Tick(std::uint32_t count = 1);

    /// Waits for the loads, runs the ticks that bring the world to rest and checks it.
    void Rest();

private:
    /// Before every tick: true when the tick will stream around another cell.
    bool Follow();

    GameHarness game;
    SlotModel model;
};
