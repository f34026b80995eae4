#include "support/Game.h"

#include "app/Application.h"
#include "app/CMN_TimeManager.h"
#include "input/CMN_InputManager.h"
#include "support/DrawLog.h"

#include <SDL.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace {

constexpr std::uint32_t kTick = 16;         // ms
constexpr std::uint32_t kDeadline = 120000; // ms, for loads to end even under a slow sanitizer

std::string ConfigurationText(const GameSettings& settings) {
    std::ostringstream text;
    text << "[resource]\nmode = " << settings.mode << "\n[graphics]\nwidth = " << settings.width
         << "\nheight = " << settings.height << "\n[world]\nstart_pos_x = " << settings.start.x
         << "\nstart_pos_y = " << settings.start.y << "\nstart_zoom = " << settings.zoom << "\n";
    return text.str();
}

} // namespace

TemporaryFile::TemporaryFile(const std::string& content) {
    static int count = 0;
    path = std::filesystem::temp_directory_path().string() + "/vesk-test-" +
           std::to_string(getpid()) + "-" + std::to_string(++count) + ".ini";
    std::ofstream(path, std::ios::binary) << content;
}

TemporaryFile::~TemporaryFile() {
    std::remove(path.c_str());
}

void UseHeadlessDrivers() {
    SDL_SetHintWithPriority(SDL_HINT_VIDEODRIVER, "dummy", SDL_HINT_OVERRIDE);
    SDL_SetHintWithPriority(SDL_HINT_RENDER_DRIVER, "software", SDL_HINT_OVERRIDE);
    SDL_SetHintWithPriority(SDL_HINT_RENDER_VSYNC, "0", SDL_HINT_OVERRIDE);
}

std::vector<std::string> OutputLines::Take() {
    std::vector<std::string> lines;
    std::istringstream stream(text.Take());
    for (std::string line; std::getline(stream, line);) {
        const std::size_t reason = line.find(" error: ");
        lines.push_back(reason == std::string::npos ? line : line.substr(0, reason + 8));
    }
    return lines;
}

Game::Game(const GameSettings& settings, const std::string& configuration) {
    UseHeadlessDrivers();
    ResetDrawLog();
    StartOptions start;
    start.hardwareThreads = settings.workers + 1;
    const TemporaryFile file(ConfigurationText(settings));
    start.configurationFile = configuration.empty() ? file.path : configuration;
    started = StartUp(start);
}

Game::~Game() {
    errors.SetOpen(true);
    ShutDown();
    SDL_ClearHints();
}

void Game::Pass(std::uint32_t milliseconds) {
    now += milliseconds;
    RunPass(now);
}

void Game::Tick(int count) {
    for (int i = 0; i < count; ++i) {
        now += kTick;
        CMN_TimeManager::GetInstance()->currentTime = now;
        CMN_TimeManager::GetInstance()->lastTickTime = now;
        CMN_InputManager::GetInstance()->Update();
        World().Update();
    }
}

void Game::Hold(const std::vector<SDL_Keycode>& keys, int ticks) {
    for (const SDL_Keycode key : keys) {
        PushKey(SDL_KEYDOWN, key);
    }
    Tick(ticks);
    for (const SDL_Keycode key : keys) {
        PushKey(SDL_KEYUP, key);
    }
    Tick();
}

bool Game::Settle() {
    const bool ended = WaitForLoads();
    Tick();
    return ended;
}

std::string Game::Frame() {
    TakeDrawLog();
    World().Render();
    return TakeDrawLog();
}

bool WaitForLoads() {
    return WorldManager::GetInstance()->cellGrid.WaitForLoads(kDeadline);
}
