#include "gfx/DrawColorScope.h"

DrawColorScope::DrawColorScope(SDL_Renderer* target, const SDL_Color& color) : renderer(target) {
    SDL_GetRenderDrawColor(renderer, &former.r, &former.g, &former.b, &former.a);
    SDL_SetRenderDrawColor(renderer, color.r, color.g, color.b, color.a);
}

DrawColorScope::~DrawColorScope() {
    SDL_SetRenderDrawColor(renderer, former.r, former.g, former.b, former.a);
}
