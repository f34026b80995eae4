// The whole program in process and headless: real SDL with the dummy video driver and the software
// renderer, events pushed into SDL's queue, the clock set by the test. What it draws is in the
// drawing log (DrawLog.h).
#pragma once

#include "gfx/Vec2.h"
#include "support/Holds.h"
#include "world/WorldManager.h"

#include <SDL_events.h>
#include <SDL_keycode.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

struct GameSettings {
    int width = 640; ///< window pixels
    int height = 480;
    Vec2i start{6156, 6156}; ///< world units
    std::string zoom = "1";
    std::string mode = "dev"; ///< any other: images and font are looked for beside the program
    std::uint32_t workers = 1;
};

/// A file that lives as long as its object.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& content);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    std::string path;
};

/// Makes SDL use its headless drivers, whatever its environment says.
void UseHeadlessDrivers();

/// Takes what is written to std::cout while it lives.
class OutputLines {
public:
    /// The lines since the last call, each up to what SDL says after " error: ", which differs
    /// between systems.
    std::vector<std::string> Take();

private:
    ErrorLines text{std::cout};
};

/// A running game from construction to destruction; one at a time. Main thread.
class Game {
public:
    /// Without a configuration file's path, one is made from the settings.
    explicit Game(const GameSettings& settings = {}, const std::string& configuration = "");
    ~Game();
    Game(const Game&) = delete;
    Game& operator=(const Game&) = delete;

    /// Ticks of input and world without drawing.
    void Tick(int count = 1);

    /// One pass of the main loop so many ms after the last one.
    void Pass(std::uint32_t milliseconds = 16);

    /// Presses keys, holds them for some ticks, lets them go and runs the tick that sees it.
    void Hold(const std::vector<SDL_Keycode>& keys, int ticks = 3);

    /// Waits until no load is pending, then runs a tick: the world is at rest. False when a load
    /// does not end.
    bool Settle();

    /// What one frame of the world draws, as lines of the drawing log.
    std::string Frame();

    WorldManager& World() const { return *WorldManager::GetInstance(); }

    bool started = false;
    ErrorLines errors;

private:
    std::uint32_t now = 1000;
};

/// Waits until no load is pending; false when one does not end.
bool WaitForLoads();

/// Pushes an event of this type, filled in by `fill`.
template <typename Fill>
void PushEvent(std::uint32_t type, Fill fill) {
    SDL_Event event{};
    event.type = type;
    fill(event);
    SDL_PushEvent(&event);
}

/// Pushes SDL_KEYDOWN or SDL_KEYUP for the next tick.
inline void PushKey(std::uint32_t type, SDL_Keycode key) {
    PushEvent(type, [key](SDL_Event& event) { event.key.keysym.sym = key; });
}
