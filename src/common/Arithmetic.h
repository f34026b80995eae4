// Integer arithmetic with defined results at every input.
//
// World coordinates and grid ids live in 32-bit integers and wrap, as unsigned arithmetic does;
// window coordinates that come from floats saturate. Both rules stand here once, so that no other
// file needs to think about signed overflow or out-of-range conversions. Any thread may call.
#pragma once

#include <cstdint>
#include <limits>

constexpr std::int32_t WrapAdd(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

constexpr std::int32_t WrapSub(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

constexpr std::int32_t WrapMul(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

/// The nearest 32-bit value.
constexpr std::int32_t Saturate(std::int64_t value) {
    constexpr std::int64_t low = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t high = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(value < low ? low : (value > high ? high : value));
}

constexpr std::int32_t SaturatingAdd(std::int32_t a, std::int32_t b) {
    return Saturate(static_cast<std::int64_t>(a) + b);
}

constexpr std::int32_t SaturatingSub(std::int32_t a, std::int32_t b) {
    return Saturate(static_cast<std::int64_t>(a) - b);
}

/// Truncates toward zero; values beyond the 32-bit range become its nearest end, NaN becomes 0.
constexpr std::int32_t Truncate(double value) {
    if (value >= 2147483647.0) {
        return std::numeric_limits<std::int32_t>::max();
    }
    if (value <= -2147483648.0) {
        return std::numeric_limits<std::int32_t>::min();
    }
    return value == value ? static_cast<std::int32_t>(value) : 0;
}

/// Truncates toward zero, as above. A float converts to double without loss.
constexpr std::int32_t Truncate(float value) {
    return Truncate(static_cast<double>(value));
}
