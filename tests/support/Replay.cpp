#include "support/Replay.h"

#include "support/GameHarness.h"
#include "support/GenerationHold.h"
#include "support/Pilot.h"
#include "support/WorkerHold.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>

namespace {

constexpr std::uint32_t kDeadline = 120000; // ms

void WaitForLoads() {
    ASSERT_TRUE(WorldManager::GetInstance()->cellGrid.WaitForLoads(kDeadline))
        << "a load does not end";
}

void ExpectRest(std::size_t tick) {
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        EXPECT_FALSE(WorldManager::GetInstance()->cellGrid.GetSlot(i).busy)
            << "a cell came into reach in tick " << tick << ", which was to be at rest";
    }
}

// Plays and writes down.
class RecordingControls : public Controls {
public:
    RecordingControls(GameHarness& target, Recording& list) : game(target), recording(list) {}

    void Push(const SDL_Event& event) override {
        recording.events.push_back({recording.ticks, event});
        SDL_Event copy = event;
        SDL_PushEvent(&copy);
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
    Delays(std::uint32_t count, unsigned seed) : workers(count), random(seed), enabled(seed != 0) {}

    void BeforeTick() {
        if (!enabled) {
            return;
        }
        switch (static_cast<std::uint32_t>(random()) % 48) {
        case 0:
            hold.Occupy(1 + static_cast<std::uint32_t>(random()) % workers);
            break;
        case 1:
            hold.Release();
            break;
        case 2:
        case 3:
            generation.Close();
            break;
        case 4:
            generation.Open();
            break;
        default:
            break;
        }
    }

    void End() {
        hold.Release();
        generation.Open();
    }

private:
    std::uint32_t workers;
    std::mt19937 random;
    bool enabled;
    WorkerHold hold;
    GenerationHold generation;
};

} // namespace

Recording Recording::Head(std::size_t end) const {
    Recording head{start, {}, {}, std::min(end, ticks)};
    std::copy_if(events.begin(), events.end(), std::back_inserter(head.events),
                 [end](const RecordedEvent& recorded) { return recorded.tick < end; });
    std::copy_if(rests.begin(), rests.end(), std::back_inserter(head.rests),
                 [end](std::size_t rest) { return rest < end; });
    return head;
}

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
    auto rest = recording.rests.begin();
    for (std::size_t tick = 0; tick < recording.ticks; ++tick) {
        for (; event != recording.events.end() && event->tick == tick; ++event) {
            SDL_Event copy = event->event;
            SDL_PushEvent(&copy);
        }
        const bool atRest = rest != recording.rests.end() && *rest == tick;
        if (atRest) {
            delays.End();
            WaitForLoads();
            ++rest;
        } else {
            delays.BeforeTick();
        }
        game.TickOnly();
        if (options.afterTick) {
            options.afterTick(tick);
        }
        trace.push_back(DigestTick());
        if (atRest) {
            ExpectRest(tick);
            const StateDigest more = DigestRest();
            trace.back().insert(trace.back().end(), more.begin(), more.end());
        }
    }
    return trace;
}

std::optional<TraceDifference> FirstDifference(const Trace& a, const Trace& b) {
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (inA == a.end() && inB == b.end()) {
        return std::nullopt;
    }
    const auto tick = static_cast<std::size_t>(std::distance(a.begin(), inA));
    if (inA == a.end() || inB == b.end()) {
        return TraceDifference{tick, "one trace ends"};
    }
    return TraceDifference{tick, DifferingParts(*inA, *inB)};
}
