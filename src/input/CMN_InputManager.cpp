#include "input/CMN_InputManager.h"

#include "app/CMN_TimeManager.h"

#include <SDL_joystick.h>
#include <SDL_keycode.h>

#include <iostream>

namespace {

constexpr int kDeadZone = 5000;

constexpr int kMapButton = 4; // of the joystick, as SDL counts them

// The joystick's axes, as SDL counts them.
constexpr int kMoveAxisX = 0;
constexpr int kMoveAxisY = 1;
constexpr int kPanAxisX = 2;
constexpr int kPanAxisY = 3;
constexpr int kZoomOutTrigger = 4;
constexpr int kZoomInTrigger = 5;

// An axis value from -32768 to 32767 as a fraction from 0 to 1.
double AxisFraction(int value) {
    return (value + 32768) / 65535.0;
}

float StickValue(int value) {
    const bool atRest = value >= -kDeadZone && value <= kDeadZone;
    return atRest ? 0.0f : static_cast<float>(AxisFraction(value) * 2.0 - 1.0);
}

float TriggerValue(int value) {
    return value <= kDeadZone ? 0.0f : static_cast<float>(AxisFraction(value));
}

} // namespace

void CMN_InputManager::InitJoystick() {
    if (SDL_JoystickEventState(SDL_ENABLE) < 0) {
        return;
    }
    if (SDL_NumJoysticks() > 0) {
        SDL_JoystickOpen(0); // stays open until SDL shuts down
    }
    for (Timer& timer : timers) {
        timer.minInterval = defaultInterval;
    }
}

void CMN_InputManager::Update() {
    pressed.fill(false);
    SDL_Event event;
    while (SDL_PollEvent(&event) != 0) {
        Handle(event);
    }
}

void CMN_InputManager::Handle(const SDL_Event& event) {
    switch (event.type) {
    case SDL_QUIT:
        Set(InputAction::Quit, 1.0f);
        break;
    case SDL_KEYDOWN:
        HandleKeyDown(event.key);
        break;
    case SDL_KEYUP:
        HandleKeyUp(event.key);
        break;
    case SDL_JOYAXISMOTION:
        HandleAxis(event.jaxis);
        break;
    case SDL_JOYBUTTONDOWN:
        HandleButtonDown(event.jbutton);
        break;
    case SDL_JOYBUTTONUP:
        if (event.jbutton.button == kMapButton) {
            Release(InputAction::Map);
        }
        break;
    default:
        break;
    }
}

void CMN_InputManager::HandleKeyDown(const SDL_KeyboardEvent& event) {
    switch (event.keysym.sym) {
    case SDLK_ESCAPE:
        Set(InputAction::Quit, 1.0f);
        break;
    case SDLK_BACKQUOTE:
        Set(InputAction::DebugMenu, 1.0f);
        Stamp(InputAction::DebugMenu);
        break;
    case SDLK_BACKSPACE:
        Stamp(InputAction::Map);
        break;
    case SDLK_RETURN:
        Stamp(InputAction::Confirm);
        break;
    case SDLK_w:
        Set(InputAction::MoveVertical, 1.0f);
        Stamp(InputAction::Up);
        break;
    case SDLK_s:
        Set(InputAction::MoveVertical, -1.0f);
        Stamp(InputAction::Down);
        break;
    case SDLK_a:
        Set(InputAction::MoveHorizontal, -1.0f);
        Stamp(InputAction::Left);
        break;
    case SDLK_d:
        Set(InputAction::MoveHorizontal, 1.0f);
        Stamp(InputAction::Right);
        break;
    case SDLK_e:
        Set(InputAction::ZoomIn, 1.0f);
        break;
    case SDLK_q:
        Set(InputAction::ZoomOut, 1.0f);
        break;
    case SDLK_RIGHT:
        Set(InputAction::PanHorizontal, 1.0f);
        break;
    case SDLK_LEFT:
        Set(InputAction::PanHorizontal, -1.0f);
        break;
    case SDLK_DOWN:
        Set(InputAction::PanVertical, -1.0f);
        break;
    case SDLK_UP:
        Set(InputAction::PanVertical, 1.0f);
        break;
    default:
        break;
    }
}

void CMN_InputManager::HandleKeyUp(const SDL_KeyboardEvent& event) {
    switch (event.keysym.sym) {
    case SDLK_BACKQUOTE:
        Set(InputAction::DebugMenu, 0.0f);
        Release(InputAction::DebugMenu);
        break;
    case SDLK_BACKSPACE:
        Release(InputAction::Map);
        break;
    case SDLK_RETURN:
        Release(InputAction::Confirm);
        break;
    case SDLK_w:
        Set(InputAction::MoveVertical, 0.0f);
        Release(InputAction::Up);
        break;
    case SDLK_s:
        Set(InputAction::MoveVertical, 0.0f);
        Release(InputAction::Down);
        break;
    case SDLK_a:
        Set(InputAction::MoveHorizontal, 0.0f);
        Release(InputAction::Left);
        break;
    case SDLK_d:
        Set(InputAction::MoveHorizontal, 0.0f);
        Release(InputAction::Right);
        break;
    case SDLK_e:
        Set(InputAction::ZoomIn, 0.0f);
        break;
    case SDLK_q:
        Set(InputAction::ZoomOut, 0.0f);
        break;
    case SDLK_LEFT:
    case SDLK_RIGHT:
        Set(InputAction::PanHorizontal, 0.0f);
        break;
    case SDLK_UP:
    case SDLK_DOWN:
        Set(InputAction::PanVertical, 0.0f);
        break;
    default:
        break;
    }
}

void CMN_InputManager::HandleAxis(const SDL_JoyAxisEvent& event) {
    switch (event.axis) {
    case kMoveAxisX:
        Set(InputAction::MoveHorizontal, StickValue(event.value));
        break;
    case kMoveAxisY:
        Set(InputAction::MoveVertical, -StickValue(event.value));
        break;
    case kPanAxisX:
        Set(InputAction::PanHorizontal, StickValue(event.value));
        break;
    case kPanAxisY:
        Set(InputAction::PanVertical, -StickValue(event.value));
        break;
    case kZoomOutTrigger:
        Set(InputAction::ZoomOut, TriggerValue(event.value));
        break;
    case kZoomInTrigger:
        Set(InputAction::ZoomIn, TriggerValue(event.value));
        break;
    default:
        break;
    }
}

void CMN_InputManager::HandleButtonDown(const SDL_JoyButtonEvent& event) {
    std::cout << "button" << std::endl;
    switch (event.button) {
    case kMapButton:
        Set(InputAction::Map, 1.0f);
        Stamp(InputAction::Map);
        break;
    case 10:
        Set(InputAction::JoystickButton10, 1.0f);
        break;
    case 11:
        Set(InputAction::JoystickButton11, 1.0f);
        break;
    case 12:
        Set(InputAction::JoystickButton12, 1.0f);
        break;
    case 13:
        Set(InputAction::JoystickButton13, 1.0f);
        break;
    default:
        std::cout << "unknown joystick button" << std::endl;
        break;
    }
}

void CMN_InputManager::Stamp(InputAction action) {
    timers[Index(action)].lastTime = CMN_TimeManager::GetInstance()->currentTime;
}

void CMN_InputManager::Release(InputAction action) {
    Timer& timer = timers[Index(action)];
    const std::uint32_t now = CMN_TimeManager::GetInstance()->currentTime;
    if (timer.lastTime + timer.minInterval < now) {
        timer.lastTime = now;
        pressed[Index(action)] = true;
    }
}
