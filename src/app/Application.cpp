#include "app/Application.h"

#include "app/CMN_TimeManager.h"
#include "app/SDLManager.h"
#include "common/CMN_ConfigurationManager.h"
#include "common/CMN_TaskManager.h"
#include "gen/GEN_DungeonGenerator.h"
#include "gfx/GFX_GraphicsManager.h"
#include "input/CMN_InputManager.h"
#include "world/ASM_AssetManager.h"
#include "world/WorldManager.h"

#include <SDL.h>
#include <SDL_image.h>
#include <SDL_ttf.h>

namespace {

constexpr std::uint32_t kTickInterval = 16; // ms

bool HoldsWholePath(const char* variable) {
    const char* value = SDL_getenv(variable);
    return value != nullptr && *value == '/';
}

// Whether a driver's windows can be seen. Wayland's library prints lines of its own unless its
// folder, its display's path or an open connection to it is named.
bool IsVisible(const std::string& driver) {
    if (driver == "wayland") {
        return HoldsWholePath("XDG_RUNTIME_DIR") || HoldsWholePath("WAYLAND_DISPLAY") ||
               SDL_getenv("WAYLAND_SOCKET") != nullptr;
    }
    return driver != "offscreen" && driver != "dummy" && driver != "evdev";
}

// A window that opens where nobody can see it would leave the player with a program that no key can
// end: unless a driver is named, SDL may try only those with a display.
void LeaveOutHeadlessDrivers() {
    const char* named = SDL_GetHint(SDL_HINT_VIDEODRIVER);
    if (named != nullptr && *named != '\0') {
        return;
    }
    std::string visible;
    for (int i = 0; i < SDL_GetNumVideoDrivers(); ++i) {
        const std::string driver = SDL_GetVideoDriver(i);
        if (IsVisible(driver)) {
            visible += (visible.empty() ? "" : ",") + driver;
        }
    }
    // Override priority: SDL_VIDEODRIVER may be set but empty.
    SDL_SetHintWithPriority(SDL_HINT_VIDEODRIVER, visible.c_str(), SDL_HINT_OVERRIDE);
}

void InitLibraries() {
    LeaveOutHeadlessDrivers();
    if (SDL_Init(SDL_INIT_VIDEO | SDL_INIT_JOYSTICK) == 0) {
        SDL_StopTextInput(); // or an input method takes the keys, to make words of them
        if (IMG_Init(IMG_INIT_JPG | IMG_INIT_PNG) != 0) {
            TTF_Init();
        }
    }
}

bool TickIsDue(const CMN_TimeManager& time) {
    return time.currentTime >= time.tickInterval + time.lastTickTime;
}

} // namespace

bool StartUp(const StartOptions& options) {
    SDLManager::GetInstance();
    InitLibraries();
    GEN_DungeonGenerator::GetInstance();
    CMN_TaskManager::GetInstance()->Init(options.hardwareThreads);
    CMN_ConfigurationManager::GetInstance()->Load(options.configurationFile);
    if (!GFX_GraphicsManager::GetInstance()->Init()) {
        return false;
    }
    CMN_TimeManager::GetInstance()->tickInterval = kTickInterval;
    // The world must not look at input or store while it is built: both come after it.
    WorldManager::GetInstance()->Init();
    CMN_InputManager::GetInstance()->InitJoystick();
    ASM_AssetManager::GetInstance()->Init();
    return true;
}

bool QuitRequested() {
    return CMN_InputManager::GetInstance()->ActionValue(InputAction::Quit) == 1.0f;
}

void RunPass(std::uint32_t now) {
    CMN_TimeManager& time = *CMN_TimeManager::GetInstance();
    time.currentTime = now;
    if (TickIsDue(time)) {
        time.lastTickTime = time.currentTime;
        CMN_InputManager::GetInstance()->Update();
        WorldManager::GetInstance()->Update();
    }
    WorldManager::GetInstance()->Render();
}

void RunLoop(const std::function<std::uint32_t()>& clock) {
    while (!QuitRequested()) {
        RunPass(clock());
    }
}

void ShutDown() {
    // Jobs use the store and the world, which go before the pool does.
    if (CMN_TaskManager::HasInstance()) {
        CMN_TaskManager::GetInstance()->Stop();
    }
    ASM_AssetManager::DestroyInstance();
    CMN_ConfigurationManager::DestroyInstance();
    CMN_InputManager::DestroyInstance();
    GFX_GraphicsManager::DestroyInstance();
    WorldManager::DestroyInstance();
    CMN_TimeManager::DestroyInstance();
    CMN_TaskManager::DestroyInstance();
    GEN_DungeonGenerator::DestroyInstance();
    SDLManager::DestroyInstance();
}
