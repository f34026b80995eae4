// The drawing calls of the graphics manager.
#include "gfx/GFX_GraphicsManager.h"

#include "gfx/Clipping.h"
#include "gfx/Colors.h"

#include <cassert>
#include <memory>

namespace {

using Surface = std::unique_ptr<SDL_Surface, decltype(&SDL_FreeSurface)>;
using Texture = std::unique_ptr<SDL_Texture, decltype(&SDL_DestroyTexture)>;

} // namespace

DrawColorScope::DrawColorScope(SDL_Renderer* target, const SDL_Color& color) : renderer(target) {
    SDL_GetRenderDrawColor(renderer, &former.r, &former.g, &former.b, &former.a);
    SDL_SetRenderDrawColor(renderer, color.r, color.g, color.b, color.a);
}

DrawColorScope::~DrawColorScope() {
    SDL_SetRenderDrawColor(renderer, former.r, former.g, former.b, former.a);
}

Vec2i GFX_GraphicsManager::WorldToScreen(Vec2i world, Vec2i camera, float zoom) const {
    const Vec2i offset = (world - camera) * zoom;
    // Saturating, as the scaling is: a point far to one side must not appear on the other.
    return {SaturatingAdd(offset.x, screenCenter.x),
            SaturatingSub(height, SaturatingAdd(offset.y, screenCenter.y))};
}

void GFX_GraphicsManager::DrawSprite(const Sprite* sprite, Vec2i world, Vec2i camera, float zoom) {
    if (sprite != nullptr) {
        DrawScaled(*sprite, world, camera, zoom, Vec2i{sprite->source.w, sprite->source.h} * zoom);
    }
}

void GFX_GraphicsManager::DrawSpriteSized(const Sprite* sprite, Vec2i world, Vec2i camera,
                                          float zoom, std::int32_t size) {
    if (sprite != nullptr) {
        DrawScaled(*sprite, world, camera, zoom, Vec2i{size, size} * zoom);
    }
}

void GFX_GraphicsManager::DrawScaled(const Sprite& sprite, Vec2i world, Vec2i camera, float zoom,
                                     Vec2i size) {
    assert(OnMainThread());
    const Vec2i corner = WorldToScreen(world, camera, zoom) - size * 0.5f;
    const SDL_Rect destination{corner.x, corner.y, size.x, size.y};
    if (TouchesWindow(destination, visible)) {
        const MutexLock lock(renderLock);
        SDL_RenderCopy(renderer, sprite.texture->texture, &sprite.source, &destination);
    }
}

SDL_Rect GFX_GraphicsManager::ToScreenRect(const Rect& rect) const {
    return {rect.left, SaturatingSub(height, rect.top), rect.width, rect.height};
}

void GFX_GraphicsManager::DrawRect(const Rect& rect, const SDL_Color& color) {
    const MutexLock lock(renderLock);
    const DrawColorScope scope(renderer, color);
    OutlineScreenRect(ToScreenRect(rect));
}

void GFX_GraphicsManager::FillRect(const Rect& rect, const SDL_Color& color) {
    const MutexLock lock(renderLock);
    const DrawColorScope scope(renderer, color);
    FillScreenRect(ToScreenRect(rect));
}

void GFX_GraphicsManager::DrawLine(Vec2i from, Vec2i to, const SDL_Color& color) {
    const MutexLock lock(renderLock);
    const DrawColorScope scope(renderer, color);
    DrawScreenLine({from.x, SaturatingSub(height, from.y)}, {to.x, SaturatingSub(height, to.y)});
}

void GFX_GraphicsManager::DrawText(const char* text, const Rect& rect, const SDL_Color& color) {
    DrawTextTexture(text, {rect.left, SaturatingSub(height, rect.top)}, color);
}

void GFX_GraphicsManager::DrawTextAt(const char* text, std::int32_t x, std::int32_t y) {
    DrawTextTexture(text, {x, y}, kWhite);
}

void GFX_GraphicsManager::DrawTextTexture(const char* text, Vec2i corner, const SDL_Color& color) {
    assert(OnMainThread());
    const MutexLock lock(renderLock);
    const Surface surface(TTF_RenderText_Blended(font->handle, text, color), SDL_FreeSurface);
    if (surface == nullptr) {
        PrintError("TTF_RenderText");
        return;
    }
    const Texture texture(SDL_CreateTextureFromSurface(renderer, surface.get()),
                          SDL_DestroyTexture);
    if (texture == nullptr) {
        PrintError("CreateTexture");
        return;
    }
    SDL_Rect destination{corner.x, corner.y, 0, 0};
    SDL_QueryTexture(texture.get(), nullptr, nullptr, &destination.w, &destination.h);
    if (TouchesWindow(destination, visible)) {
        SDL_RenderCopy(renderer, texture.get(), nullptr, &destination);
    }
}

void GFX_GraphicsManager::DrawTextureCentered(const TextureInfo* info, Vec2i center) {
    assert(OnMainThread());
    if (info == nullptr) {
        return;
    }
    const Vec2i size{info->width, info->height};
    const Vec2i corner = center - size * 0.5f;
    const SDL_Rect destination{corner.x, corner.y, size.x, size.y};
    if (TouchesWindow(destination, visible)) {
        SDL_RenderCopy(renderer, info->texture, nullptr, &destination);
    }
}

void GFX_GraphicsManager::Clear() {
    assert(OnMainThread());
    MeasureRenderer();
    SDL_RenderClear(renderer);
}

void GFX_GraphicsManager::Present() {
    assert(OnMainThread());
    SDL_RenderPresent(renderer);
}

void GFX_GraphicsManager::DrawScreenLine(Vec2i from, Vec2i to) {
    assert(OnMainThread());
    if (ClipLine(from, to, visible)) {
        SDL_RenderDrawLine(renderer, from.x, from.y, to.x, to.y);
    }
}

void GFX_GraphicsManager::OutlineScreenRect(const SDL_Rect& rect) {
    assert(OnMainThread());
    if (SuitsClipping(rect)) {
        SDL_RenderDrawRect(renderer, &rect);
    }
}

void GFX_GraphicsManager::FillScreenRect(const SDL_Rect& rect) {
    assert(OnMainThread());
    if (SuitsClipping(rect)) {
        SDL_RenderFillRect(renderer, &rect);
    }
}
