#include "gfx/SdlError.h"

#include <SDL_error.h>

#include <iostream>

void PrintSdlError(const char* operation) {
    std::cout << operation << " error: " << SDL_GetError() << std::endl;
}
