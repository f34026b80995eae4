#include "RealTimePlay.h"

#include "app/Application.h"
#include "app/CMN_TimeManager.h"
#include "world/WorldManager.h"

#include <SDL_timer.h>

namespace {

double Milliseconds(std::chrono::steady_clock::duration length) {
    return std::chrono::duration<double, std::milli>(length).count();
}

} // namespace

void RealTimePlay::Tick() {
    while (!Pass()) {
    }
}

void RealTimePlay::Rest() {
    while (!WorldManager::GetInstance()->cellGrid.WaitForLoads(0)) {
        Tick();
    }
    Tick();
}

// True when the pass has run a tick.
bool RealTimePlay::Pass() {
    const CMN_TimeManager& time = *CMN_TimeManager::GetInstance();
    const std::uint32_t before = time.lastTickTime;
    const Clock::time_point began = Clock::now();
    RunPass(SDL_GetTicks());
    frames.push_back(Milliseconds(Clock::now() - began));
    if (time.lastTickTime == before) {
        return false;
    }
    if (hasTicked) {
        periods.push_back(Milliseconds(began - lastTick));
    }
    lastTick = began;
    hasTicked = true;
    return true;
}
