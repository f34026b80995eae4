// A test image of one colour or, halved, of two, and the sprite that shows all of it. Goes before
// the game does.
#pragma once

#include <cstdint>

#include "gfx/GFX_GraphicsManager.h"

class SolidTexture {
public:
    SolidTexture(int width, int height, SDL_Color color)
        : SolidTexture(width, height, color, color) {}

    /// The left half in one colour, the right half in another.
    SolidTexture(int width, int height, SDL_Color left, SDL_Color right) {
        SDL_Surface* surface =
            SDL_CreateRGBSurfaceWithFormat(0, width, height, 32, SDL_PIXELFORMAT_ARGB8888);
        const SDL_Rect rightHalf{width / 2, 0, width - width / 2, height};
        SDL_FillRect(surface, nullptr, SDL_MapRGB(surface->format, left.r, left.g, left.b));
        SDL_FillRect(surface, &rightHalf, SDL_MapRGB(surface->format, right.r, right.g, right.b));
        info = {SDL_CreateTextureFromSurface(GFX_GraphicsManager::GetInstance()->renderer, surface),
                width, height};
        SDL_FreeSurface(surface);
        sprite = {&info,
                  {0, 0, static_cast<std::int16_t>(width), static_cast<std::int16_t>(height)}};
    }
    ~SolidTexture() { SDL_DestroyTexture(info.texture); }
    SolidTexture(const SolidTexture&) = delete;
    SolidTexture& operator=(const SolidTexture&) = delete;

    TextureInfo info;
    Sprite sprite;
};
