// Takes numbers out of a fuzz input from front to back; past its end every number is 0.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

class ByteReader {
public:
    ByteReader(const std::uint8_t* input, std::size_t length) : data(input), left(length) {}

    bool IsEmpty() const { return left == 0; }

    template <typename T>
    T Take() requires std::is_trivially_copyable_v<T> {
        T value{};
        const std::size_t count = std::min(left, sizeof(T));
        std::memcpy(&value, data, count);
        data += count;
        left -= count;
        return value;
    }

    /// A number below `count`.
    std::uint32_t TakeBelow(std::uint32_t count) { return Take<std::uint8_t>() % count; }

private:
    const std::uint8_t* data;
    std::size_t left;
};
