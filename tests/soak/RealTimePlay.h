// Play in a real window in real time, as main runs it, with the length of every frame and the time
// between ticks written down. Nothing is checked meanwhile, that would take its time. Main thread.
#pragma once

#include <chrono>
#include <vector>

#include "support/Pilot.h"

class RealTimePlay : public Controls {
public:
    void Tick() override;
    void Rest() override;

    const std::vector<double>& FrameTimes() const { return frames; }   ///< ms
    const std::vector<double>& TickPeriods() const { return periods; } ///< ms

private:
    using Clock = std::chrono::steady_clock;

    bool Pass();

    std::vector<double> frames;
    std::vector<double> periods;
    Clock::time_point lastTick;
    bool hasTicked = false;
};
