// Turns SDL's events into the action state that the rest of the program reads.
//
// Updated once per tick, before the world; main thread only. Levels last until an event changes
// them. An edge is set for one update when a key or button is released; a reader may consume it
// with ClearPressed.
#pragma once

#include "app/CMN_Singleton.h"
#include "input/InputAction.h"

#include <SDL_events.h>

#include <array>
#include <cstdint>

class CMN_InputManager : public CMN_Singleton<CMN_InputManager> {
public:
    /// When an action was last pressed or its release accepted, and how long a key must be held
    /// for its release to count.
    struct Timer {
        std::uint32_t lastTime = 0;    ///< ms
        std::uint32_t minInterval = 0; ///< ms
    };

    /// Opens joystick 0, when there is one, and sets the shortest hold of every action. Does
    /// nothing when SDL offers no joystick events.
    void InitJoystick();

    /// Clears the edges, then handles every event that SDL has queued.
    void Update();

    /// How far the action's key, stick or trigger is pushed; InputAction tells the range.
    float ActionValue(InputAction action) const { return actions[Index(action)]; }

    /// True when the action's key or button was let go in this update and nobody has cleared it.
    bool IsPressed(InputAction action) const { return pressed[Index(action)]; }

    /// Uses an edge up, so that no later reader acts on it.
    void ClearPressed(InputAction action) { pressed[Index(action)] = false; }

    std::array<float, kInputActionCount> actions{};
    std::array<Timer, kInputActionCount> timers{};
    std::array<bool, kInputActionCount> pressed{};
    std::uint32_t defaultInterval = 30; ///< ms

private:
    void Handle(const SDL_Event& event);
    void HandleKeyDown(const SDL_KeyboardEvent& event);
    void HandleKeyUp(const SDL_KeyboardEvent& event);
    void HandleAxis(const SDL_JoyAxisEvent& event);
    void HandleButtonDown(const SDL_JoyButtonEvent& event);

    void Set(InputAction action, float value) { actions[Index(action)] = value; }
    void Stamp(InputAction action);
    void Release(InputAction action);
};
