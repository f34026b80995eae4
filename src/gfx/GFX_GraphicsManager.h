// The one window with its renderer, the font, the images and the sprites cut out of them, and every
// drawing call.
//
// Main creates it, initialises it once and destroys it; it owns all textures and sprites. Only the
// main thread draws or loads images. Other threads may look images up and cut sprites out of the
// ones that are loaded.
//
// Two coordinate systems in window pixels: y up from the bottom edge (Rect, DrawRect, FillRect,
// DrawLine, DrawText) and SDL's, y down from the top edge (WorldToScreen's result, DrawTextAt,
// DrawTextureCentered, DrawScreenLine, OutlineScreenRect, FillScreenRect). World points are in
// world units, y up.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <memory_resource>
#include <string>
#include <thread>

#include <SDL_pixels.h>
#include <SDL_render.h>
#include <SDL_video.h>

#include "app/CMN_Singleton.h"
#include "common/Mutex.h"
#include "gfx/Font.h"
#include "gfx/Rect.h"
#include "gfx/Sprite.h"
#include "gfx/Vec2.h"

class GFX_GraphicsManager : public CMN_Singleton<GFX_GraphicsManager> {
public:
    GFX_GraphicsManager();
    ~GFX_GraphicsManager() override;

    /// Opens the window and the renderer in the configured size, opens the font and loads the
    /// images. False, after a line on standard output, only when window or renderer fail.
    bool Init();

    /// The image of this file name, loaded on first use; null, after a line on standard output,
    /// when it cannot be loaded. Threads other than main get null for an image not loaded yet.
    const TextureInfo* GetTexture(const std::string& fileName) VESK_EXCLUDES(registryLock);

    /// Loads an image file of the data directory into a texture that the caller owns; null, after
    /// a line on standard output, on failure. Main thread.
    SDL_Texture* LoadTexture(const char* fileName);

    /// A new sprite showing a rectangle (pixels, y down) of an image; null when the image cannot
    /// be loaded. It lives as long as this manager.
    const Sprite* CreateSprite(const std::string& fileName, std::int32_t x, std::int32_t y,
                               std::int32_t w, std::int32_t h) VESK_EXCLUDES(registryLock);

    /// The directory of images and font, ending in a separator; computed afresh on every call.
    static std::string GetDataPath();

    /// Where a world point appears in the window (SDL coordinates): the camera's position lies at
    /// the centre, and `zoom` is window pixels per world unit.
    Vec2i WorldToScreen(Vec2i world, Vec2i camera, float zoom) const;

    /// Draws a sprite centred on a world point, its size scaled by the zoom. A null sprite draws
    /// nothing.
    void DrawSprite(const Sprite* sprite, Vec2i world, Vec2i camera, float zoom)
        VESK_EXCLUDES(renderLock);

    /// The same, stretched into a square of `size` world units.
    void DrawSpriteSized(const Sprite* sprite, Vec2i world, Vec2i camera, float zoom,
                         std::int32_t size) VESK_EXCLUDES(renderLock);

    /// Outlines a rectangle (y up), whose stored width and height count.
    void DrawRect(const Rect& rect, const SDL_Color& color) VESK_EXCLUDES(renderLock);

    /// Fills a rectangle (y up), whose stored width and height count.
    void FillRect(const Rect& rect, const SDL_Color& color) VESK_EXCLUDES(renderLock);

    /// Draws a line between two points (y up).
    void DrawLine(Vec2i from, Vec2i to, const SDL_Color& color) VESK_EXCLUDES(renderLock);

    /// Draws text at its natural size with its upper left corner at the rectangle's left and top
    /// (y up). A line on standard output when it cannot be rendered.
    void DrawText(const char* text, const Rect& rect, const SDL_Color& color)
        VESK_EXCLUDES(renderLock);

    /// The same in white with the corner at (x, y) in SDL coordinates.
    void DrawTextAt(const char* text, std::int32_t x, std::int32_t y) VESK_EXCLUDES(renderLock);

    /// Draws a whole image centred on a point (SDL coordinates). Takes no lock; main thread. A
    /// null image draws nothing.
    void DrawTextureCentered(const TextureInfo* info, Vec2i center);

    /// Begins a frame in the renderer's current colour, and shows it.
    void Clear() VESK_REQUIRES(renderLock);
    void Present() VESK_REQUIRES(renderLock);

    /// The three calls below draw in the renderer's current colour, in SDL coordinates, and skip
    /// or shorten what lies outside the window.
    void DrawScreenLine(Vec2i from, Vec2i to) VESK_REQUIRES(renderLock);
    void OutlineScreenRect(const SDL_Rect& rect) VESK_REQUIRES(renderLock);
    void FillScreenRect(const SDL_Rect& rect) VESK_REQUIRES(renderLock);

    SDL_Window* window = nullptr;
    SDL_Renderer* renderer = nullptr;
    std::unique_ptr<Font> font;
    std::int32_t width = 0;  ///< window pixels
    std::int32_t height = 0; ///< window pixels
    Vec2i screenCenter;      ///< half the size, truncated
    Mutex renderLock;        ///< not to be held when calling what takes it

private:
    bool CreateWindowAndRenderer();
    void DrawScaled(const Sprite& sprite, Vec2i world, Vec2i camera, float zoom, Vec2i size)
        VESK_EXCLUDES(renderLock);
    void DrawTextTexture(const char* text, Vec2i corner, const SDL_Color& color)
        VESK_EXCLUDES(renderLock);
    const TextureInfo* FindTexture(const std::string& fileName) VESK_EXCLUDES(registryLock);
    SDL_Rect ToScreenRect(const Rect& rect) const;
    bool OnMainThread() const { return std::this_thread::get_id() == mainThread; }

    const std::thread::id mainThread;
    Mutex registryLock;
    std::map<std::string, std::unique_ptr<TextureInfo>> textures VESK_GUARDED_BY(registryLock);
    /// Blocks of their own: sprites, which stay, would otherwise lie between enemies, which go.
    std::pmr::monotonic_buffer_resource spriteMemory VESK_GUARDED_BY(registryLock);
    /// Every sprite ever made.
    std::pmr::deque<Sprite> sprites VESK_GUARDED_BY(registryLock){&spriteMemory};
};
