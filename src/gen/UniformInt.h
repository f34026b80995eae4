// The one rule by which whole numbers are drawn from a Mersenne twister.
//
// The standard fixes the output of its twister but not that of its distributions, so the world
// draws through these alone. The engine belongs to the caller; nothing is shared, so any thread may
// call with an engine of its own.
#pragma once

#include <cstdint>
#include <limits>

#include "common/Arithmetic.h"

/// The numbers from lo to hi, both included, every one as likely as the others. An interval of one
/// number draws nothing; the interval of all 2^32 numbers takes one raw output as it is; any other
/// redraws while the output lies in the last, incomplete run of hi - lo + 1 values. The ends are
/// taken modulo 2^32, so lo > hi gives the interval that wraps around.
class UniformRange {
public:
    constexpr UniformRange(std::int32_t lo, std::int32_t hi)
        : lowest(lo), count(static_cast<std::uint32_t>(hi) - static_cast<std::uint32_t>(lo) + 1u) {
        if (count > 1 && kTop % count != count - 1) {
            largestRaw = kTop / count * count - 1;
        }
    }

    /// One number; `engine()` gives the raw 32-bit outputs.
    template <typename Engine>
    std::int32_t operator()(Engine& engine) const {
        if (count == 1) {
            return lowest;
        }
        auto raw = static_cast<std::uint32_t>(engine());
        while (raw > largestRaw) {
            raw = static_cast<std::uint32_t>(engine());
        }
        return WrapAdd(lowest, static_cast<std::int32_t>(count == 0 ? raw : raw % count));
    }

private:
    static constexpr std::uint32_t kTop = std::numeric_limits<std::uint32_t>::max();

    std::int32_t lowest;
    std::uint32_t count;             ///< modulo 2^32
    std::uint32_t largestRaw = kTop; ///< end of the last complete run
};

/// One number from lo to hi.
template <typename Engine>
std::int32_t UniformInt(Engine& engine, std::int32_t lo, std::int32_t hi) {
    return UniformRange(lo, hi)(engine);
}
