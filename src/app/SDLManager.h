// Shuts SDL and its companion libraries down at the very end; start-up initialises them itself.
// Main thread.
#pragma once

#include "app/CMN_Singleton.h"

#include <SDL.h>
#include <SDL_image.h>
#include <SDL_ttf.h>

class SDLManager : public CMN_Singleton<SDLManager> {
public:
    ~SDLManager() override {
        TTF_Quit();
        IMG_Quit();
        SDL_Quit();
    }
};
