// A player made of chance: sails, goes ashore, jumps, opens map and menu, with keys and joystick.
//
// It steers through events alone and decides only while the world is at rest, so the same seed
// makes the same voyage. Whoever runs the game gives it the controls. Main thread.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include <SDL_events.h>
#include <SDL_keycode.h>

#include "gfx/Vec2.h"

/// How a pilot reaches the game.
class Controls {
public:
    virtual ~Controls() = default;

    /// Queues an event for the next tick.
    virtual void Push(SDL_Event event) { SDL_PushEvent(&event); }

    /// Runs a tick.
    virtual void Tick() = 0;

    /// Waits until no cell is being loaded and runs a tick, after which the world is at rest. No
    /// cell may come into reach in that tick.
    virtual void Rest() = 0;
};

class Pilot {
public:
    Pilot(Controls& target, unsigned seed) : controls(target), random(seed) {}

    /// Plays some hundreds of ticks, from rest to rest.
    void PlayLeg();

private:
    // What a leg may consist of.
    void Sail();
    void GoAshore();
    void JumpToLand();
    void Storm();
    void LookAtMap();
    void UseMenu();
    void PlayWithJoystick();

    std::uint32_t Draw(std::uint32_t count) { return static_cast<std::uint32_t>(random()) % count; }
    void Key(std::uint32_t type, SDL_Keycode key);
    void Wait(std::uint32_t ticks);

    /// Holds a key for so many ticks, or until the condition is met.
    void Hold(
        SDL_Keycode key, std::uint32_t ticks, bool (*reached)() = [] { return false; });
    void Tap(SDL_Keycode key) { Hold(key, 3); }
    void Axis(std::uint8_t axis, std::int16_t value);
    void StopAndRest();
    void ReturnToBoat(bool alongX);
    void OpenMenuAt(std::uint32_t row);
    void CloseMenu() { Tap(SDLK_BACKQUOTE); }
    void PanByCells(Vec2i cells);
    void Jump(const std::vector<Vec2i>& cells);
    Vec2i NearbyLand();

    Controls& controls;
    std::mt19937 random;
    std::uint32_t menuRow = 0; ///< the row that the menu has selected
};
