// The one rule by which whole numbers are drawn from a Mersenne twister.
//
// The standard fixes the output of std::mt19937 but not that of its distributions, so the world
// draws through this function alone. The engine belongs to the caller; nothing is shared, so any
// thread may call with an engine of its own.
#pragma once

#include <cstdint>
#include <limits>

#include "common/Arithmetic.h"

/// A number from lo to hi, both included, every one as likely as the others. `engine()` gives the
/// raw 32-bit outputs. An interval of one number draws nothing; the interval of all 2^32 numbers
/// takes one raw output as it is; any other redraws while the output lies in the last, incomplete
/// run of hi - lo + 1 values. The ends are taken modulo 2^32, so lo > hi gives the interval that
/// wraps around.
template <typename Engine>
std::int32_t UniformInt(Engine& engine, std::int32_t lo, std::int32_t hi) {
    const auto draw = [&engine] { return static_cast<std::uint32_t>(engine()); };
    const std::uint32_t n = static_cast<std::uint32_t>(hi) - static_cast<std::uint32_t>(lo) + 1u;
    if (n == 1) {
        return lo;
    }
    if (n == 0) {
        return WrapAdd(lo, static_cast<std::int32_t>(draw()));
    }
    constexpr std::uint32_t top = std::numeric_limits<std::uint32_t>::max();
    const std::uint32_t fullRuns = top / n;
    const bool allRunsFull = top % n == n - 1;
    std::uint32_t raw = draw();
    while (!allRunsFull && raw / n >= fullRuns) {
        raw = draw();
    }
    return WrapAdd(lo, static_cast<std::int32_t>(raw % n));
}
