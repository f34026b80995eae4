#include "common/BasePath.h"

#include <SDL_filesystem.h>
#include <SDL_stdinc.h>

#include <memory>

std::string GetBasePath() {
    const std::unique_ptr<char, decltype(&SDL_free)> path(SDL_GetBasePath(), SDL_free);
    return path ? path.get() : "";
}
