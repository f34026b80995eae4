#include "atlas/Parallel.h"

#include <cstdio>

void Progress::AddOne() {
    const std::lock_guard lock(mutex);
    ++done;
    const Clock::time_point now = Clock::now();
    if (now - told > std::chrono::seconds(1)) {
        std::fprintf(stderr, "%zu of %zu %s\n", done, whole, things.c_str());
        told = now;
    }
}
