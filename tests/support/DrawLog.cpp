#include "support/DrawLog.h"

#include <SDL.h>
#include <SDL_image.h>
#include <SDL_ttf.h>

#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <utility>

namespace {

const std::thread::id mainThread = std::this_thread::get_id();
thread_local int held = 0;

std::string drawLog;
std::string ground; // the first clear's colour

template <typename... Parts>
void Say(const Parts&... parts) {
    std::ostringstream line;
    (line << ... << parts);
    drawLog += std::to_string(held) + ' ' + line.str();
    drawLog += std::this_thread::get_id() == mainThread ? "\n" : " on another thread\n";
}

std::string Numbers(SDL_Color c) {
    std::ostringstream text;
    text << int{c.r} << ',' << int{c.g} << ',' << int{c.b} << ',' << int{c.a};
    return text.str();
}

std::string Numbers(const SDL_Rect* rect) {
    std::ostringstream text;
    text << rect->x << ',' << rect->y << ',' << rect->w << ',' << rect->h;
    return text.str();
}

std::string ColorOf(SDL_Renderer* renderer) {
    SDL_Color c{};
    SDL_GetRenderDrawColor(renderer, &c.r, &c.g, &c.b, &c.a);
    return Numbers(c);
}

// Whether a rectangle, made larger by `border` on every side, shows in the window.
bool Shows(SDL_Renderer* renderer, const SDL_Rect* rect, int border) {
    SDL_Rect window{};
    SDL_GetRendererOutputSize(renderer, &window.w, &window.h);
    const int grown = 2 * border;
    const SDL_Rect shown{rect->x - border, rect->y - border, rect->w + grown, rect->h + grown};
    return SDL_HasIntersection(&shown, &window) == SDL_TRUE;
}

} // namespace

std::string TakeDrawLog() {
    return std::exchange(drawLog, {});
}

void ResetDrawLog() {
    drawLog.clear();
    ground.clear();
}

int LocksHeld() {
    return held;
}

extern "C" {

int __real_SDL_RenderCopy(SDL_Renderer*, SDL_Texture*, const SDL_Rect*, const SDL_Rect*);
int __wrap_SDL_RenderCopy(SDL_Renderer* renderer, SDL_Texture* texture, const SDL_Rect* source,
                          const SDL_Rect* place) {
    if (Shows(renderer, place, 0)) {
        const void* name = SDL_GetTextureUserData(texture);
        if (name == nullptr) { // its size is the font's
            Say("copy text -> ", place->x, ',', place->y);
        } else {
            Say("copy ", static_cast<const char*>(name), ' ',
                source == nullptr ? "all" : Numbers(source), " -> ", Numbers(place));
        }
    }
    return __real_SDL_RenderCopy(renderer, texture, source, place);
}

int __real_SDL_RenderFillRect(SDL_Renderer*, const SDL_Rect*);
int __wrap_SDL_RenderFillRect(SDL_Renderer* renderer, const SDL_Rect* rect) {
    if (Shows(renderer, rect, 0)) {
        Say("fill ", Numbers(rect), " in ", ColorOf(renderer));
    }
    return __real_SDL_RenderFillRect(renderer, rect);
}

int __real_SDL_RenderDrawRect(SDL_Renderer*, const SDL_Rect*);
int __wrap_SDL_RenderDrawRect(SDL_Renderer* renderer, const SDL_Rect* rect) {
    if (Shows(renderer, rect, 1)) {
        Say("rect ", Numbers(rect), " in ", ColorOf(renderer));
    }
    return __real_SDL_RenderDrawRect(renderer, rect);
}

int __real_SDL_RenderDrawLine(SDL_Renderer*, int, int, int, int);
int __wrap_SDL_RenderDrawLine(SDL_Renderer* renderer, int x1, int y1, int x2, int y2) {
    Say("line ", x1, ',', y1, " -> ", x2, ',', y2, " in ", ColorOf(renderer));
    return __real_SDL_RenderDrawLine(renderer, x1, y1, x2, y2);
}

int __real_SDL_RenderClear(SDL_Renderer*);
int __wrap_SDL_RenderClear(SDL_Renderer* renderer) {
    const std::string color = ColorOf(renderer);
    ground = ground.empty() ? color : ground;
    Say("clear", color == ground ? "" : " in " + color);
    return __real_SDL_RenderClear(renderer);
}

void __real_SDL_RenderPresent(SDL_Renderer*);
void __wrap_SDL_RenderPresent(SDL_Renderer* renderer) {
    Say("present");
    __real_SDL_RenderPresent(renderer);
}

SDL_Surface* __real_TTF_RenderText_Blended(TTF_Font*, const char*, SDL_Color);
SDL_Surface* __wrap_TTF_RenderText_Blended(TTF_Font* font, const char* text, SDL_Color color) {
    Say("text \"", text, "\" in ", Numbers(color));
    return __real_TTF_RenderText_Blended(font, text, color);
}

SDL_Texture* __real_IMG_LoadTexture(SDL_Renderer*, const char*);
SDL_Texture* __wrap_IMG_LoadTexture(SDL_Renderer* renderer, const char* path) {
    static std::set<std::string> names; // for the textures to point to
    SDL_Texture* texture = __real_IMG_LoadTexture(renderer, path);
    const auto name = names.insert(std::filesystem::path(path).filename().string()).first;
    Say("load ", name->c_str());
    SDL_SetTextureUserData(texture, const_cast<char*>(name->c_str()));
    return texture;
}

int __real_SDL_LockMutex(SDL_mutex*);
int __wrap_SDL_LockMutex(SDL_mutex* mutex) {
    ++held;
    return __real_SDL_LockMutex(mutex);
}

int __real_SDL_UnlockMutex(SDL_mutex*);
int __wrap_SDL_UnlockMutex(SDL_mutex* mutex) {
    --held;
    return __real_SDL_UnlockMutex(mutex);
}
}
