// Records a voyage as a list of events by tick, and plays it again with other numbers of workers
// and other delays of the load jobs. Every replay leaves a trace of digests to compare.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <SDL_events.h>

#include "gfx/Vec2.h"
#include "support/StateDigest.h"

struct RecordedEvent {
    std::size_t tick = 0; ///< the tick that sees it
    SDL_Event event{};
};

/// Ticks are counted from 0.
struct Recording {
    Vec2i start;                       ///< where the ship starts, in world units
    std::vector<RecordedEvent> events; ///< in the order pushed
    std::vector<std::size_t> rests;    ///< ticks that run after every load has ended, ascending
    std::size_t ticks = 0;
};

/// Plays so many legs of chance and records them.
Recording RecordVoyage(unsigned seed, int legs);

struct ReplayOptions {
    std::uint32_t workers = 1;
    unsigned delaySeed = 0; ///< 0 for no delays
    /// Called after a tick has run and before its digest is taken, to plant a fault.
    std::function<void(std::size_t tick)> afterTick = [](std::size_t) {};
};

/// What a replay has seen, one digest per tick; at rests it covers more parts.
using Trace = std::vector<StateDigest>;

Trace Replay(const Recording& recording, const ReplayOptions& options);

struct TraceDifference {
    std::size_t tick = 0;
    std::string parts;
};

/// The first tick in which two traces differ, and in what; nothing when they are equal.
std::optional<TraceDifference> FirstDifference(const Trace& a, const Trace& b);
