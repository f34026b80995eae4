#include "atlas/Parallel.h"

#include <cstdio>

void Progress::AddHalf() {
    const std::lock_guard lock(mutex);
    ++halves;
    const Clock::time_point now = Clock::now();
    if (now - told > std::chrono::seconds(1)) {
        std::fprintf(stderr, "%zu of %zu %s\n", halves / 2, whole, things.c_str());
        told = now;
    }
}
