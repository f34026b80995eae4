// Images and the parts cut out of them. The graphics manager owns both; users hold plain pointers
// that dangle once it is destroyed.
#pragma once

#include <SDL_render.h>

#include <cstdint>

struct TextureInfo {
    SDL_Texture* texture = nullptr; ///< owned by the registry entry
    std::int32_t width = 0;         ///< pixels
    std::int32_t height = 0;        ///< pixels
};

struct Sprite {
    TextureInfo* texture = nullptr; ///< not owned
    SDL_Rect source{};              ///< the part of the image shown, in its pixels, y down
};
