#include "app/SDLManager.h"

#include <SDL.h>
#include <SDL_image.h>
#include <SDL_ttf.h>

SDLManager::~SDLManager() {
    TTF_Quit();
    IMG_Quit();
    SDL_Quit();
}
