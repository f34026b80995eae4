// What the player can ask for; each action has a level, a timer and a one-tick edge.
#pragma once

#include <cstddef>
#include <cstdint>

enum class InputAction : std::uint8_t {
    JoystickButton10, ///< 1 once the button has been pressed, as for the next three
    JoystickButton11,
    JoystickButton12,
    JoystickButton13,
    MoveHorizontal, ///< -1 left to +1 right
    MoveVertical,   ///< -1 down to +1 up
    PanHorizontal,  ///< -1 left to +1 right
    PanVertical,    ///< -1 down to +1 up
    ZoomIn,         ///< 0 to 1
    ZoomOut,        ///< 0 to 1
    Map,            ///< 1 once the joystick's button has been pressed
    Quit,           ///< 1 once the user has asked to quit
    DebugMenu,      ///< 0 or 1
    Up,             ///< this and the rest have edges only: the level stays 0
    Down,
    Left,
    Right,
    Confirm,
};

constexpr std::size_t Index(InputAction action) {
    return static_cast<std::size_t>(action);
}

inline constexpr std::size_t kInputActionCount = Index(InputAction::Confirm) + 1;
