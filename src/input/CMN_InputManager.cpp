#include "input/CMN_InputManager.h"

#include "app/CMN_TimeManager.h"

#include <SDL_joystick.h>
#include <SDL_keycode.h>

#include <algorithm>
#include <iostream>
#include <optional>

namespace {

// What a key does: the level that it sets while it is down, and the edge that its release tells.
struct Key {
    SDL_Keycode code;
    std::optional<InputAction> level;
    float value; // of the level while the key is down
    std::optional<InputAction> edge;
};

constexpr std::array<Key, 13> kKeys{{
    {SDLK_BACKQUOTE, InputAction::DebugMenu, 1.0f, InputAction::DebugMenu},
    {SDLK_BACKSPACE, {}, 0.0f, InputAction::Map},
    {SDLK_RETURN, {}, 0.0f, InputAction::Confirm},
    {SDLK_w, InputAction::MoveVertical, 1.0f, InputAction::Up},
    {SDLK_s, InputAction::MoveVertical, -1.0f, InputAction::Down},
    {SDLK_a, InputAction::MoveHorizontal, -1.0f, InputAction::Left},
    {SDLK_d, InputAction::MoveHorizontal, 1.0f, InputAction::Right},
    {SDLK_e, InputAction::ZoomIn, 1.0f, {}},
    {SDLK_q, InputAction::ZoomOut, 1.0f, {}},
    {SDLK_RIGHT, InputAction::PanHorizontal, 1.0f, {}},
    {SDLK_LEFT, InputAction::PanHorizontal, -1.0f, {}},
    {SDLK_DOWN, InputAction::PanVertical, -1.0f, {}},
    {SDLK_UP, InputAction::PanVertical, 1.0f, {}},
}};

const Key* FindKey(SDL_Keycode code) {
    const auto found = std::find_if(kKeys.begin(), kKeys.end(),
                                    [code](const Key& key) { return key.code == code; });
    return found == kKeys.end() ? nullptr : &*found;
}

// The joystick's buttons, as SDL counts them.
constexpr int kMapButton = 4;
constexpr int kFirstSpareButton = 10;
constexpr int kLastSpareButton = 13;
constexpr int kStickDeadZone = 5000;

// An axis value from -32768 to 32767 as a fraction from 0 to 1.
double AxisFraction(int value) {
    return (value + 32768) / 65535.0;
}

float StickValue(int value) {
    const bool atRest = value >= -kStickDeadZone && value <= kStickDeadZone;
    return atRest ? 0.0f : static_cast<float>(AxisFraction(value) * 2.0 - 1.0);
}

float TriggerValue(int value) {
    return value <= kStickDeadZone ? 0.0f : static_cast<float>(AxisFraction(value));
}

struct Axis {
    InputAction action;
    float (*value)(int);
    float sign; // -1 where the joystick's y grows downward
};

// The joystick's axes from 0 on.
constexpr std::array<Axis, 6> kAxes{{{InputAction::MoveHorizontal, StickValue, 1.0f},
                                     {InputAction::MoveVertical, StickValue, -1.0f},
                                     {InputAction::PanHorizontal, StickValue, 1.0f},
                                     {InputAction::PanVertical, StickValue, -1.0f},
                                     {InputAction::ZoomOut, TriggerValue, 1.0f},
                                     {InputAction::ZoomIn, TriggerValue, 1.0f}}};

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
    if (event.keysym.sym == SDLK_ESCAPE) {
        Set(InputAction::Quit, 1.0f); // latched: releasing the key does not clear it
        return;
    }
    const Key* key = FindKey(event.keysym.sym);
    if (key != nullptr && key->level) {
        Set(*key->level, key->value);
    }
    if (key != nullptr && key->edge) {
        Stamp(*key->edge);
    }
}

// The level becomes 0 even while the opposite key is held.
void CMN_InputManager::HandleKeyUp(const SDL_KeyboardEvent& event) {
    const Key* key = FindKey(event.keysym.sym);
    if (key != nullptr && key->level) {
        Set(*key->level, 0.0f);
    }
    if (key != nullptr && key->edge) {
        Release(*key->edge);
    }
}

void CMN_InputManager::HandleAxis(const SDL_JoyAxisEvent& event) {
    if (event.axis < kAxes.size()) {
        const Axis& axis = kAxes[event.axis];
        Set(axis.action, axis.sign * axis.value(event.value));
    }
}

void CMN_InputManager::HandleButtonDown(const SDL_JoyButtonEvent& event) {
    std::cout << "button" << std::endl;
    if (event.button == kMapButton) {
        Set(InputAction::Map, 1.0f);
        Stamp(InputAction::Map);
    } else if (event.button >= kFirstSpareButton && event.button <= kLastSpareButton) {
        // Their actions are the first ones, in the buttons' order.
        Set(static_cast<InputAction>(event.button - kFirstSpareButton), 1.0f);
    } else {
        std::cout << "unknown joystick button" << std::endl;
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
