// The debug texts in the upper part of the window: the player's information and the store's
// listing.
#pragma once

#include "gfx/GFX_GraphicsManager.h"

#include <array>
#include <cstdint>
#include <cstdio>

/// Draws a line of at most 63 characters, formatted as printf does, in white; line 0 is the
/// topmost. Main thread, without the render lock.
template <typename... Values>
void DrawDebugLine(std::int32_t line, const char* format, Values... values) {
    constexpr std::int32_t left = 300;      // window pixels
    constexpr std::int32_t lineHeight = 15; // window pixels
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), format, values...);
    GFX_GraphicsManager::GetInstance()->DrawTextAt(text.data(), left, line * lineHeight);
}
