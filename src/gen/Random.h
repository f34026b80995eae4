// The random engine of every generator, and the one rule by which whole numbers are drawn from it.
//
// The world draws through UniformInt alone, because the standard fixes the output of its twister
// but not that of its distributions. Free of SDL. Any thread may draw from an engine of its own.
#pragma once

#include "common/Arithmetic.h"

#include <cstdint>
#include <limits>
#include <random>

/// std::mt19937 in all but the type of its state: the same seeding and the same outputs, held in
/// 32-bit words, where some standard libraries take 64 bits for each. That halves its size and lets
/// the compiler work on several words at once.
using Twister = std::mersenne_twister_engine<
    std::uint32_t, std::mt19937::word_size, std::mt19937::state_size, std::mt19937::shift_size,
    std::mt19937::mask_bits, std::mt19937::xor_mask, std::mt19937::tempering_u,
    std::mt19937::tempering_d, std::mt19937::tempering_s, std::mt19937::tempering_b,
    std::mt19937::tempering_t, std::mt19937::tempering_c, std::mt19937::tempering_l,
    std::mt19937::initialization_multiplier>;

/// One number from lo to hi, both included, every one as likely as the others; `engine()` gives raw
/// 32-bit outputs. An interval of one number draws nothing; the interval of all 2^32 numbers takes
/// one raw output as it is; any other draws again while the output lies in the last, incomplete run
/// of hi - lo + 1 values. The ends are taken modulo 2^32, so lo > hi gives the interval that wraps
/// around.
template <typename Engine>
std::int32_t UniformInt(Engine& engine, std::int32_t lo, std::int32_t hi) {
    constexpr std::uint32_t top = std::numeric_limits<std::uint32_t>::max();
    const std::uint32_t count = static_cast<std::uint32_t>(hi) - static_cast<std::uint32_t>(lo) + 1;
    if (count == 1) {
        return lo;
    }
    std::uint32_t raw = static_cast<std::uint32_t>(engine());
    if (count == 0) {
        return WrapAdd(lo, static_cast<std::int32_t>(raw));
    }
    const std::uint32_t lastRun = top % count == count - 1 ? top : top / count * count - 1;
    while (raw > lastRun) {
        raw = static_cast<std::uint32_t>(engine());
    }
    return WrapAdd(lo, static_cast<std::int32_t>(raw % count));
}
