#include "support/Replay.h"

#include "support/GameHarness.h"
#include "support/GenerationHold.h"
#include "support/Pilot.h"
#include "support/WorkerHold.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

void WaitForLoads() {
    ASSERT_TRUE(WorldManager::GetInstance()->cellGrid.WaitForLoads(Signal::kDeadline))
        << "a load does not end";
}

// Plays and writes down.
class RecordingControls : public Controls {
public:
    RecordingControls(GameHarness& target, Recording& list) : game(target), recording(list) {}

    void Push(SDL_Event event) override {
        recording.events.push_back({recording.ticks, event});
        Controls::Push(event);
    }

    void Tick() override {
        game.TickOnly();
        ++recording.ticks;
    }

    void Rest() override {
        recording.rests.push_back(recording.ticks);
        WaitForLoads();
        Tick();
    }

private:
    GameHarness& game;
    Recording& recording;
};

// Holds workers back, before their loads and in the middle of them, and lets them go, at moments of
// chance.
class Delays {
public:
    Delays(std::uint32_t count, unsigned seed) : workers(count), random(seed) {}

    void BeforeTick() {
        const std::uint32_t chance = Draw(48);
        if (chance == 0) {
            hold.Occupy(1 + Draw(workers));
        } else if (chance == 1) {
            hold.Release();
        } else if (chance <= 3) {
            generation.Close();
        } else if (chance == 4) {
            generation.Open();
        }
    }

    /// Waits for all that is pending.
    void End() {
        hold.Release();
        generation.Open();
        WaitForLoads();
    }

private:
    std::uint32_t Draw(std::uint32_t count) { return static_cast<std::uint32_t>(random()) % count; }

    std::uint32_t workers;
    std::mt19937 random;
    WorkerHold hold;
    GenerationHold generation;
};

} // namespace

Recording RecordVoyage(unsigned seed, int legs) {
    Recording recording{{81756, 38940}, {}, {}, 0};
    GameHarness game({.start = recording.start});
    RecordingControls controls(game, recording);
    controls.Tick();
    controls.Rest();
    Pilot pilot(controls, seed);
    for (int leg = 0; leg < legs; ++leg) {
        pilot.PlayLeg();
    }
    return recording;
}

Trace Replay(const Recording& recording, const ReplayOptions& options) {
    GameHarness game({.start = recording.start, .hardwareThreads = options.workers + 1});
    Delays delays(options.workers, options.delaySeed);
    Trace trace;
    auto event = recording.events.begin();
    for (std::size_t tick = 0; tick < recording.ticks; ++tick) {
        for (; event != recording.events.end() && event->tick == tick; ++event) {
            SDL_Event copy = event->event;
            SDL_PushEvent(&copy);
        }
        const bool atRest =
            std::binary_search(recording.rests.begin(), recording.rests.end(), tick);
        if (atRest) {
            delays.End();
        } else if (options.delaySeed != 0) {
            delays.BeforeTick();
        }
        game.TickOnly();
        options.afterTick(tick);
        trace.push_back(DigestTick());
        if (atRest) {
            EXPECT_TRUE(game.World().cellGrid.WaitForLoads(0))
                << "a cell came into reach in tick " << tick << ", which was to be at rest";
            const StateDigest more = DigestRest();
            trace.back().insert(trace.back().end(), more.begin(), more.end());
        }
    }
    delays.End();
    return trace;
}

std::optional<TraceDifference> FirstDifference(const Trace& a, const Trace& b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t tick = 0; tick < common; ++tick) {
        if (a[tick] != b[tick]) {
            return TraceDifference{tick, DifferingParts(a[tick], b[tick])};
        }
    }
    if (a.size() != b.size()) {
        return TraceDifference{common, "one trace ends"};
    }
    return std::nullopt;
}
