#include "support/GameHarness.h"

#include "app/Application.h"
#include "app/CMN_TimeManager.h"
#include "gfx/DrawColorScope.h"
#include "gfx/GFX_GraphicsManager.h"
#include "input/CMN_InputManager.h"
#include "support/TemporaryFile.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

constexpr std::uint32_t kTick = 16;         // ms
constexpr std::uint32_t kDeadline = 120000; // ms, for loads to end even under a slow sanitizer

void PushKey(std::uint32_t type, SDL_Keycode key) {
    SDL_Event event{};
    event.type = type;
    event.key.keysym.sym = key;
    SDL_PushEvent(&event);
}

} // namespace

std::string ConfigurationText(const GameOptions& options) {
    std::ostringstream text;
    text << "[resource]\nmode = " << options.mode << "\n[graphics]\nwidth = " << options.width
         << "\nheight = " << options.height << "\n[world]\nstart_pos_x = " << options.start.x
         << "\nstart_pos_y = " << options.start.y << "\nstart_zoom = " << options.zoom << "\n";
    return text.str();
}

void UseHeadlessDrivers() {
    // Above the environment, which may name the drivers of a real screen.
    const auto force = [](const char* hint, const char* value) {
        SDL_SetHintWithPriority(hint, value, SDL_HINT_OVERRIDE);
    };
    force(SDL_HINT_VIDEODRIVER, "dummy");
    force(SDL_HINT_RENDER_DRIVER, "software");
    force(SDL_HINT_RENDER_VSYNC, "0"); // no waiting for a display that is not there
}

GameHarness::GameHarness(const GameOptions& options)
    : width(options.width), height(options.height) {
    UseHeadlessDrivers();
    StartOptions start;
    start.hardwareThreads = options.hardwareThreads;
    const TemporaryFile configuration(ConfigurationText(options));
    start.configurationFile = configuration.Path();
    if (!StartUp(start)) {
        ADD_FAILURE() << "the game does not start";
    }
}

GameHarness::~GameHarness() {
    ShutDown();
}

void GameHarness::Pass(std::uint32_t milliseconds) {
    now += milliseconds;
    RunPass(now);
}

void GameHarness::Tick(int count) {
    for (int i = 0; i < count; ++i) {
        Pass(kTick);
    }
}

void GameHarness::TickOnly(int count) {
    for (int i = 0; i < count; ++i) {
        now += kTick;
        CMN_TimeManager::GetInstance()->currentTime = now;
        CMN_TimeManager::GetInstance()->lastTickTime = now;
        CMN_InputManager::GetInstance()->Update();
        WorldManager::GetInstance()->Update();
    }
}

void GameHarness::KeyDown(SDL_Keycode key) {
    PushKey(SDL_KEYDOWN, key);
}

void GameHarness::KeyUp(SDL_Keycode key) {
    PushKey(SDL_KEYUP, key);
}

void GameHarness::Tap(SDL_Keycode key) {
    KeyDown(key);
    TickOnly(3);
    KeyUp(key);
    TickOnly();
}

void GameHarness::Settle() {
    ASSERT_TRUE(World().cellGrid.WaitForLoads(kDeadline)) << "a load does not end";
    TickOnly();
}

void GameHarness::Capture() {
    Capture([this] { World().Render(); });
}

void GameHarness::Capture(const std::function<void()>& draw) {
    // Pixels are undefined after a present, so they are taken from a frame drawn into a texture.
    SDL_Renderer* renderer = GFX_GraphicsManager::GetInstance()->renderer;
    SDL_Texture* target = SDL_CreateTexture(renderer, SDL_PIXELFORMAT_ARGB8888,
                                            SDL_TEXTUREACCESS_TARGET, width, height);
    SDL_SetRenderTarget(renderer, target);
    {
        const DrawColorScope scope(renderer, {0, 0, 0, 255});
        SDL_RenderClear(renderer);
    }
    draw();
    frame.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
    const int failed =
        SDL_RenderReadPixels(renderer, nullptr, SDL_PIXELFORMAT_ARGB8888, frame.data(), width * 4);
    SDL_SetRenderTarget(renderer, nullptr);
    SDL_DestroyTexture(target);
    ASSERT_EQ(failed, 0) << SDL_GetError();
}

SDL_Color GameHarness::Pixel(int x, int y) const {
    const std::uint32_t argb =
        frame.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                 static_cast<std::size_t>(x));
    return {static_cast<Uint8>(argb >> 16U), static_cast<Uint8>(argb >> 8U),
            static_cast<Uint8>(argb), static_cast<Uint8>(argb >> 24U)};
}

SDL_Rect GameHarness::Bounds(const std::function<bool(SDL_Color)>& counts) const {
    SDL_Rect bounds{};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (counts(Pixel(x, y))) {
                const SDL_Rect pixel{x, y, 1, 1};
                SDL_UnionRect(&bounds, &pixel, &bounds); // an empty rectangle adds nothing
            }
        }
    }
    return bounds;
}

SDL_Rect GameHarness::BoundsOf(SDL_Color color) const {
    return Bounds([color](SDL_Color pixel) { return SameColor(pixel, color); });
}

SDL_Rect GameHarness::DrawnBounds() const {
    return Bounds([](SDL_Color pixel) { return !SameColor(pixel, {0, 0, 0, 255}); });
}

int GameHarness::CountOf(SDL_Color color) const {
    int count = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            count += SameColor(Pixel(x, y), color) ? 1 : 0;
        }
    }
    return count;
}

std::vector<std::string> OutputCapture::Lines() const {
    std::vector<std::string> lines;
    std::istringstream stream(text.str());
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}
