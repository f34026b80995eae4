#include "atlas/Parallel.h"

#include "atlas/Interrupt.h"

#include <cstdio>

void Progress::Add() {
    CheckInterrupted();
    const std::lock_guard lock(mutex);
    ++done;
    const Clock::time_point now = Clock::now();
    if (now - told > std::chrono::seconds(1)) {
        std::fprintf(stderr, "%s: %zu %%\n", work.c_str(), done * 100 / steps);
        told = now;
    }
}
