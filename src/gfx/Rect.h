// A rectangle in window pixels, y growing upward from the window's bottom edge.
#pragma once

#include <cstdint>

struct Rect {
    std::int32_t right = 0;
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t bottom = 0;
    std::int32_t width = 0;  ///< right - left
    std::int32_t height = 0; ///< top - bottom
};
