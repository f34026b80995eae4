#include "support/GameHarness.h"

#include "app/Application.h"
#include "app/CMN_TimeManager.h"
#include "gfx/GFX_GraphicsManager.h"
#include "input/CMN_InputManager.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

namespace {

constexpr std::uint32_t kTick = 16;         // ms
constexpr std::uint32_t kDeadline = 120000; // ms, for loads to end even under a slow sanitizer

std::string WriteConfiguration(const GameOptions& options) {
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("vesk-test-" + std::to_string(getpid()) + ".ini");
    std::ofstream(path) << "[resource]\nmode = " << options.mode
                        << "\n[graphics]\nwidth = " << options.width
                        << "\nheight = " << options.height
                        << "\n[world]\nstart_pos_x = " << options.start.x
                        << "\nstart_pos_y = " << options.start.y
                        << "\nstart_zoom = " << options.zoom << "\n";
    return path.string();
}

void PushKey(std::uint32_t type, SDL_Keycode key) {
    SDL_Event event{};
    event.type = type;
    event.key.keysym.sym = key;
    SDL_PushEvent(&event);
}

} // namespace

void UseHeadlessDrivers() {
    SDL_SetHint(SDL_HINT_VIDEODRIVER, "dummy");
    SDL_SetHint(SDL_HINT_RENDER_DRIVER, "software");
    SDL_SetHint(SDL_HINT_RENDER_VSYNC, "0"); // no waiting for a display that is not there
}

GameHarness::GameHarness(const GameOptions& options)
    : width(options.width), height(options.height) {
    UseHeadlessDrivers();
    StartOptions start;
    start.hardwareThreads = options.hardwareThreads;
    start.configurationFile = WriteConfiguration(options);
    const bool started = StartUp(start);
    std::filesystem::remove(start.configurationFile);
    if (!started) {
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
    // Pixels are undefined after a present, so they are taken from a frame drawn into a texture.
    SDL_Renderer* renderer = GFX_GraphicsManager::GetInstance()->renderer;
    SDL_Texture* target = SDL_CreateTexture(renderer, SDL_PIXELFORMAT_ARGB8888,
                                            SDL_TEXTUREACCESS_TARGET, width, height);
    SDL_SetRenderTarget(renderer, target);
    World().Render();
    frame.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
    const int failed =
        SDL_RenderReadPixels(renderer, nullptr, SDL_PIXELFORMAT_ARGB8888, frame.data(), width * 4);
    SDL_SetRenderTarget(renderer, nullptr);
    SDL_DestroyTexture(target);
    ASSERT_EQ(failed, 0) << SDL_GetError();
}

SDL_Color GameHarness::Pixel(int x, int y) const {
    const std::uint32_t argb = frame[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                     static_cast<std::size_t>(x)];
    return {static_cast<Uint8>(argb >> 16U), static_cast<Uint8>(argb >> 8U),
            static_cast<Uint8>(argb), static_cast<Uint8>(argb >> 24U)};
}
