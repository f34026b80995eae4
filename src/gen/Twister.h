// The random engine of every generator.
//
// It is std::mt19937 in all but the type of its state: the same recurrence and tempering, the same
// seeding and the same outputs, held in 32-bit words, where some standard libraries take 64 bits
// for each. That halves its size and lets the compiler work on several words at once. An engine
// belongs to the call that made it.
#pragma once

#include <cstdint>
#include <random>

using Twister = std::mersenne_twister_engine<
    std::uint32_t, std::mt19937::word_size, std::mt19937::state_size, std::mt19937::shift_size,
    std::mt19937::mask_bits, std::mt19937::xor_mask, std::mt19937::tempering_u,
    std::mt19937::tempering_d, std::mt19937::tempering_s, std::mt19937::tempering_b,
    std::mt19937::tempering_t, std::mt19937::tempering_c, std::mt19937::tempering_l,
    std::mt19937::initialization_multiplier>;
