// Draws in a colour for the length of a scope and then restores the renderer's former colour, so
// that drawing never changes what the world is cleared with. Main thread.
#pragma once

#include <SDL_pixels.h>
#include <SDL_render.h>

class DrawColorScope {
public:
    DrawColorScope(SDL_Renderer* target, const SDL_Color& color);
    ~DrawColorScope();
    DrawColorScope(const DrawColorScope&) = delete;
    DrawColorScope& operator=(const DrawColorScope&) = delete;

private:
    SDL_Renderer* renderer;
    SDL_Color former{0, 0, 0, 255};
};
