#include "support/BenchGame.h"

#include "app/Application.h"
#include "app/CMN_TimeManager.h"
#include "input/CMN_InputManager.h"

#include <SDL.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include <unistd.h>

namespace {

std::string WriteConfiguration(Vec2i start) {
    const std::filesystem::path path = std::filesystem::temp_directory_path() /
                                       ("vesk-bench-" + std::to_string(getpid()) + ".ini");
    std::ofstream(path) << "[graphics]\nwidth = 1280\nheight = 720\n[world]\nstart_pos_x = "
                        << start.x << "\nstart_pos_y = " << start.y << "\nstart_zoom = 1\n";
    return path.string();
}

} // namespace

BenchGame::BenchGame(Vec2i start, std::uint32_t hardwareThreads) {
    std::cerr.rdbuf(nullptr); // the generator's progress lines are not what is measured
    SDL_SetHint(SDL_HINT_VIDEODRIVER, "dummy");
    SDL_SetHint(SDL_HINT_RENDER_DRIVER, "software");
    SDL_SetHint(SDL_HINT_RENDER_VSYNC, "0");
    StartOptions options;
    options.hardwareThreads = hardwareThreads;
    options.configurationFile = WriteConfiguration(start);
    const bool started = StartUp(options);
    std::filesystem::remove(options.configurationFile);
    if (!started) {
        std::exit(1);
    }
    Tick();
    Settle();
}

BenchGame::~BenchGame() {
    ShutDown();
}

void BenchGame::Tick() {
    now += 16;
    CMN_TimeManager::GetInstance()->currentTime = now;
    CMN_InputManager::GetInstance()->Update();
    World().Update();
}

void BenchGame::Settle() {
    World().cellGrid.WaitForLoads(60000);
    Tick();
}
