// Frame times and tick periods of the game as shipped, in a real window and in real time.
//
//   window_frames [SECONDS]    sails right and back (60 s); SDL chooses driver and renderer
//
// Prints driver and renderer, then percentiles in ms. Exit code 1 when no window opens.
#include "app/Application.h"
#include "app/CMN_TimeManager.h"

#include <SDL.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <vector>

namespace {

constexpr std::uint32_t kLeg = 8000; // ms in one direction

double Milliseconds() {
    return static_cast<double>(SDL_GetPerformanceCounter()) * 1000.0 /
           static_cast<double>(SDL_GetPerformanceFrequency());
}

void PushKey(std::uint32_t type, SDL_Keycode key) {
    SDL_Event event{};
    event.type = type;
    event.key.keysym.sym = key;
    SDL_PushEvent(&event);
}

void PrintPercentiles(const char* name, std::vector<double> values) {
    std::sort(values.begin(), values.end());
    std::printf("%s: %zu, ms at", name, values.size());
    for (const double share : {0.5, 0.99, 0.999, 1.0}) {
        const double place = share * static_cast<double>(values.size() - 1);
        std::printf(" p%g %.2f", 100.0 * share, values[static_cast<std::size_t>(place)]);
    }
    std::puts("");
}

void Measure(std::uint32_t end) {
    const CMN_TimeManager& time = *CMN_TimeManager::GetInstance();
    std::vector<double> frames;
    std::vector<double> periods;
    double lastTick = Milliseconds();
    bool sailsRight = false;
    while (SDL_GetTicks() < end) {
        if ((SDL_GetTicks() / kLeg % 2 == 0) != sailsRight) {
            sailsRight = !sailsRight;
            PushKey(SDL_KEYUP, sailsRight ? SDLK_a : SDLK_d);
            PushKey(SDL_KEYDOWN, sailsRight ? SDLK_d : SDLK_a);
        }
        const std::uint32_t tick = time.lastTickTime;
        const double began = Milliseconds();
        RunPass(SDL_GetTicks());
        frames.push_back(Milliseconds() - began);
        if (time.lastTickTime != tick) {
            periods.push_back(began - lastTick);
            lastTick = began;
        }
    }
    PrintPercentiles("frames", frames);
    PrintPercentiles("tick periods", periods);
}

} // namespace

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
    if (seconds < 1) {
        std::fputs("usage: window_frames [SECONDS]\n", stderr);
        return 2;
    }
    std::cerr.rdbuf(nullptr); // the generator's progress lines are not what is measured
    if (!StartUp()) {
        return 1;
    }
    SDL_RendererInfo info{};
    SDL_GetRendererInfo(SDL_GetRenderer(SDL_GetWindowFromID(1)), &info);
    std::printf("%s, %s renderer\n", SDL_GetCurrentVideoDriver(), info.name);
    Measure(SDL_GetTicks() + 1000 * static_cast<std::uint32_t>(seconds));
    ShutDown();
    return 0;
}
