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

#include "app/CMN_Singleton.h"
#include "common/Mutex.h"
#include "gfx/Rect.h"
#include "gfx/Sprite.h"
#include "gfx/Vec2.h"

#include <SDL_pixels.h>
#include <SDL_render.h>
#include <SDL_ttf.h>
#include <SDL_video.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

/// The one font, or nothing when its file did not open. Main thread; closes it when destroyed.
struct Font {
    TTF_Font* handle = nullptr;

    explicit Font(TTF_Font* opened) : handle(opened) {}
    ~Font() {
        if (handle != nullptr) {
            TTF_CloseFont(handle);
        }
    }
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;
};

/// Draws in a colour for the length of a scope and then restores the renderer's former colour, so
/// that drawing never changes what the world is cleared with. Main thread; does not take the render
/// lock.
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

/// The data directory, ending in `separator`. `base` is the executable's directory with a separator
/// at its end. Mode 0: data/ beside the executable. Mode 1: data/ three directories above it, found
/// by cutting `base` four times before its last separator (a text without one stays as it is). Any
/// other mode: empty. Any thread.
std::string DataPath(std::string base, std::int32_t mode, char separator);

class GFX_GraphicsManager : public CMN_Singleton<GFX_GraphicsManager> {
public:
    GFX_GraphicsManager();
    ~GFX_GraphicsManager() override;

    /// Opens the window and the renderer in the configured size, opens the font and loads the
    /// images. False, after a line on standard output, only when window or renderer fail.
    bool Init();

    /// The image of this file name, loaded on first use; null, after a line on standard output,
    /// when it cannot be loaded. Threads other than main get null for an image not loaded yet.
    TextureInfo* GetTexture(const std::string& fileName) VESK_EXCLUDES(registryLock);

    /// Loads an image file of the data directory into a texture that the caller owns; null, after
    /// a line on standard output, on failure. Main thread.
    SDL_Texture* LoadTexture(const char* fileName);

    /// A new sprite showing a rectangle (pixels, y down) of an image; null when the image cannot
    /// be loaded. It lives as long as this manager.
    Sprite* CreateSprite(const std::string& fileName, std::int32_t x, std::int32_t y,
                         std::int32_t w, std::int32_t h) VESK_EXCLUDES(registryLock);

    /// The directory of images and font, ending in a separator; computed afresh on every call.
    /// Main thread.
    static std::string GetDataPath();

    /// Where a world point appears in the window (SDL coordinates): the camera's position lies at
    /// the centre, and `zoom` is window pixels per world unit. Any thread, once initialised.
    Vec2i WorldToScreen(Vec2i world, Vec2i camera, float zoom) const;

    // Every call from here on belongs to the main thread.

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

    /// Draws a whole image centred on a point (SDL coordinates). Takes no lock. A null image draws
    /// nothing.
    void DrawTextureCentered(const TextureInfo* info, Vec2i center);

    /// Begins a frame in the renderer's current colour.
    void Clear() VESK_REQUIRES(renderLock);

    /// Shows the frame; waits for the display's next picture where the renderer can.
    void Present() VESK_REQUIRES(renderLock);

    /// Draws a line in the renderer's current colour, in SDL coordinates. A line that reaches
    /// farther outside the window than SDL can clip is shortened.
    void DrawScreenLine(Vec2i from, Vec2i to) VESK_REQUIRES(renderLock);

    /// Outlines a rectangle likewise, as SDL outlines empty and negative ones, too. One that SDL
    /// cannot clip draws nothing.
    void OutlineScreenRect(const SDL_Rect& rect) VESK_REQUIRES(renderLock);

    /// Fills a rectangle, likewise.
    void FillScreenRect(const SDL_Rect& rect) VESK_REQUIRES(renderLock);

    SDL_Window* window = nullptr;
    SDL_Renderer* renderer = nullptr;
    std::unique_ptr<Font> font; ///< not null once initialised
    /// By file name.
    std::map<std::string, std::unique_ptr<TextureInfo>> textures VESK_GUARDED_BY(registryLock);
    /// Every sprite ever made, in that order.
    std::vector<std::unique_ptr<Sprite>> sprites VESK_GUARDED_BY(registryLock);
    std::int32_t width = 0;  ///< window pixels, as configured
    std::int32_t height = 0; ///< window pixels, as configured
    Vec2i screenCenter;      ///< half the size, truncated
    Mutex renderLock;        ///< not to be held when calling what takes it

private:
    static void PrintError(const char* operation);
    bool CreateWindowAndRenderer();
    void MeasureRenderer();
    TextureInfo* FindTexture(const std::string& fileName) VESK_EXCLUDES(registryLock);
    void DrawScaled(const Sprite& sprite, Vec2i world, Vec2i camera, float zoom, Vec2i size)
        VESK_EXCLUDES(renderLock);
    void DrawTextTexture(const char* text, Vec2i corner, const SDL_Color& color)
        VESK_EXCLUDES(renderLock);
    SDL_Rect ToScreenRect(const Rect& rect) const;
    bool OnMainThread() const { return std::this_thread::get_id() == mainThread; }

    const std::thread::id mainThread;
    Mutex registryLock;
    Vec2i visible; ///< the renderer's output size in pixels, taken every frame; drawing is clipped
                   ///< to it
};
