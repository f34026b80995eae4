// Plays for a long time, in either of two ways, and reports.
//
//   vesk_soak ticks N [SEED]    so many ticks as fast as possible, headless, with memory sampled
//   vesk_soak seconds N [SEED]  in real time in a window, with frame times and tick periods
//
// Ends at once, with an error, when a check fails. The window, the driver and the renderer are
// SDL's choice in the second way; its environment variables tell it otherwise.
#include "RealTimePlay.h"
#include "SimulatedPlay.h"

#include "app/Application.h"
#include "support/GameHarness.h"
#include "support/TemporaryFile.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#if defined(__GLIBC__)
#include <malloc.h>
#endif
#include <unistd.h>

namespace {

constexpr Vec2i kHome{81756, 38940};
constexpr std::size_t kTicksPerSample = 5000;
constexpr double kMega = 1024.0 * 1024.0;

bool Start(int width, int height) {
    const TemporaryFile configuration(
        ConfigurationText({.width = width, .height = height, .start = kHome, .zoom = "1.3333334"}));
    StartOptions options;
    options.configurationFile = configuration.Path();
    return StartUp(options);
}

struct MemorySample {
    std::size_t resident = 0; ///< bytes in the machine's memory
    std::size_t heap = 0;     ///< bytes allocated and not freed; 0 where the system does not tell
};

MemorySample TakeMemorySample() {
    std::ifstream file("/proc/self/statm");
    std::size_t total = 0;
    std::size_t residentPages = 0;
    file >> total >> residentPages;
    MemorySample sample;
    sample.resident = residentPages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
#if defined(__GLIBC__)
    // Sanitizers replace the allocator, and its own book says 0 then.
    const struct mallinfo2 book = mallinfo2();
    sample.heap = book.uordblks + book.hblkhd;
#endif
    return sample;
}

void SampleAtHome(SimulatedPlay& play) {
    play.RestAt(kHome);
    const MemorySample sample = TakeMemorySample();
    std::printf("%8zu ticks %6zu rests %8zu arrivals %8.2f MiB resident %8.2f MiB heap\n",
                play.Ticks(), play.Rests(), play.Arrivals(),
                static_cast<double>(sample.resident) / kMega,
                static_cast<double>(sample.heap) / kMega);
    std::fflush(stdout);
}

int Simulate(std::size_t ticks, unsigned seed) {
    UseHeadlessDrivers();
    if (!Start(320, 240)) {
        return 1;
    }
    {
        SimulatedPlay play;
        Pilot pilot(play, seed);
        play.Tick();
        play.Rest();
        std::size_t nextSample = 0;
        while (play.Ticks() < ticks && !QuitRequested()) {
            if (play.Ticks() >= nextSample) {
                SampleAtHome(play);
                nextSample += kTicksPerSample;
            }
            pilot.PlayLeg();
        }
        SampleAtHome(play);
    }
    ShutDown();
    std::puts("ended");
    return 0;
}

void PrintPercentiles(const char* name, std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const auto at = [&values](double share) {
        return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
    };
    std::printf("%s: %zu, ms at p1 %.2f, p50 %.2f, p90 %.2f, p99 %.2f, p99.9 %.2f, longest %.2f\n",
                name, values.size(), at(0.01), at(0.5), at(0.9), at(0.99), at(0.999),
                values.back());
}

int PlayInRealTime(std::size_t seconds, unsigned seed) {
    if (!Start(1280, 720)) {
        return 1;
    }
    SDL_RendererInfo info{};
    SDL_GetRendererInfo(SDL_GetRenderer(SDL_GetWindowFromID(1)), &info);
    std::printf("%s, %s renderer, vertical synchronisation %s\n", SDL_GetCurrentVideoDriver(),
                info.name, (info.flags & SDL_RENDERER_PRESENTVSYNC) != 0 ? "on" : "off");
    {
        RealTimePlay play;
        Pilot pilot(play, seed);
        play.Tick();
        play.Rest();
        while (SDL_GetTicks64() < std::uint64_t{seconds} * 1000 && !QuitRequested()) {
            pilot.PlayLeg();
        }
        PrintPercentiles("frames", play.FrameTimes());
        PrintPercentiles("tick periods", play.TickPeriods());
    }
    ShutDown();
    std::puts("ended");
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::string way = argc > 1 ? argv[1] : "";
    const std::size_t length = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 0;
    const auto seed = static_cast<unsigned>(argc > 3 ? std::strtoul(argv[3], nullptr, 10) : 1);
    GTEST_FLAG_SET(break_on_failure, true);
    std::cerr.rdbuf(nullptr); // the generator's progress
    if (way == "ticks" && length > 0) {
        return Simulate(length, seed);
    }
    if (way == "seconds" && length > 0) {
        return PlayInRealTime(length, seed);
    }
    std::fputs("usage: vesk_soak ticks|seconds N [SEED]\n", stderr);
    return 2;
}
