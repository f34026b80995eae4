// Images and the parts cut out of them. The graphics manager owns both; users hold plain pointers
// that dangle once it is destroyed.
#pragma once

#include <cstdint>

#include <SDL_render.h>

struct TextureInfo {
    SDL_Texture* texture = nullptr; ///< owned by the registry entry
    std::int32_t width = 0;         ///< pixels
    std::int32_t height = 0;        ///< pixels
};

/// A rectangle in an image's pixels, y down. Small, because every enemy ever met leaves a sprite in
/// the graphics manager's list.
struct PixelRect {
    std::int16_t x = 0;
    std::int16_t y = 0;
    std::int16_t w = 0;
    std::int16_t h = 0;

    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

struct Sprite {
    const TextureInfo* texture = nullptr; ///< not owned
    PixelRect source;                     ///< the part of the image shown
};
