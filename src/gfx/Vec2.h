// Two-component vectors: world positions, window points, sizes (Vec2i) and directions (Vec2f).
//
// Integer components wrap, conversions from float truncate toward zero and saturate. Free of SDL,
// so that the generator can use it. Any thread may call.
#pragma once

#include "common/Arithmetic.h"

#include <cstdint>

struct Vec2i {
    std::int32_t x = 0;
    std::int32_t y = 0;

    friend constexpr bool operator==(const Vec2i&, const Vec2i&) = default;
};

struct Vec2f {
    float x = 0.0f;
    float y = 0.0f;

    friend constexpr bool operator==(const Vec2f&, const Vec2f&) = default;
};

constexpr Vec2i operator+(Vec2i a, Vec2i b) {
    return {WrapAdd(a.x, b.x), WrapAdd(a.y, b.y)};
}

constexpr Vec2i operator-(Vec2i a, Vec2i b) {
    return {WrapSub(a.x, b.x), WrapSub(a.y, b.y)};
}

/// Scales by an integer, wrapping.
constexpr Vec2i operator*(Vec2i v, std::int32_t factor) {
    return {WrapMul(v.x, factor), WrapMul(v.y, factor)};
}

/// Scales in 32-bit floats and truncates each axis toward zero: (3, -3) * 0.5f is (1, -1).
constexpr Vec2i operator*(Vec2i v, float factor) {
    return {Truncate(static_cast<float>(v.x) * factor), Truncate(static_cast<float>(v.y) * factor)};
}

/// Divides by a positive integer, truncating toward zero.
constexpr Vec2i operator/(Vec2i v, std::int32_t divisor) {
    return {v.x / divisor, v.y / divisor};
}

constexpr Vec2f operator+(Vec2f a, Vec2f b) {
    return {a.x + b.x, a.y + b.y};
}

constexpr Vec2f operator-(Vec2f a, Vec2f b) {
    return {a.x - b.x, a.y - b.y};
}

constexpr Vec2f operator*(Vec2f v, float factor) {
    return {v.x * factor, v.y * factor};
}

constexpr Vec2f ToVec2f(Vec2i v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y)};
}

/// Truncates each axis toward zero, saturating.
constexpr Vec2i ToVec2i(Vec2f v) {
    return {Truncate(v.x), Truncate(v.y)};
}
