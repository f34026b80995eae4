// The one font, or nothing when its file did not open. Main thread; closes the font when destroyed.
#pragma once

#include <SDL_ttf.h>

struct Font {
    TTF_Font* handle = nullptr;

    explicit Font(TTF_Font* opened) : handle(opened) {}
    ~Font();
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;
};
