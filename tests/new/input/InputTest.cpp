// What the scenes leave of the input: releases at the ends of their time, other keys, a real
// joystick.
#include "input/CMN_InputManager.h"

#include "app/CMN_TimeManager.h"
#include "entities/PlayerEntity.h"
#include "support/Game.h"

#include <SDL.h>
#include <gtest/gtest.h>

namespace {

CMN_InputManager& Input() {
    return *CMN_InputManager::GetInstance();
}

void UpdateAt(std::uint32_t time) {
    CMN_TimeManager::GetInstance()->currentTime = time;
    Input().Update();
}

} // namespace

TEST(InputTest, AReleaseCountsWhenThePressLiesLongEnoughBack) {
    struct Case {
        std::uint32_t minInterval;
        std::uint32_t press;
        std::uint32_t release;
        bool counts;
    };
    Game game;
    for (const Case& c : {Case{30, 1000, 1030, false},
                          {30, 1000, 1031, true},
                          {30, 0xFFFFFFF0U, 14, false}, // across the clock's wrap
                          {30, 0xFFFFFFF0U, 15, true},
                          {30, 0xFFFFFFF0U, 0xFFFFFFF8U, true}, // the sum wraps before the clock
                          {0, 1000, 1001, true},                // without joystick events
                          {0, 1000, 1000, false}}) {
        CMN_InputManager::Timer& timer = Input().timers[Index(InputAction::Confirm)];
        timer.minInterval = c.minInterval;
        game.KeyDown(SDLK_RETURN);
        UpdateAt(c.press);
        game.KeyUp(SDLK_RETURN);
        UpdateAt(c.release);
        EXPECT_EQ(Input().IsPressed(InputAction::Confirm), c.counts) << c.press << " " << c.release;
        EXPECT_EQ(timer.lastTime, c.counts ? c.release : c.press);
    }
    // A refused release does not start a new hold, an accepted one does; a repeat moves the press.
    game.KeyDown(SDLK_w);
    game.KeyUp(SDLK_w);
    UpdateAt(5000);
    EXPECT_FALSE(Input().IsPressed(InputAction::Up));
    game.KeyUp(SDLK_w);
    UpdateAt(5031);
    EXPECT_TRUE(Input().IsPressed(InputAction::Up));
    game.KeyDown(SDLK_w);
    UpdateAt(5050);
    game.KeyUp(SDLK_w);
    UpdateAt(5080);
    EXPECT_FALSE(Input().IsPressed(InputAction::Up));
    // Keys that mean nothing.
    const auto before = Input().actions;
    for (const SDL_Keycode key : {SDLK_x, SDLK_KP_ENTER, SDLK_UNKNOWN}) {
        game.KeyDown(key);
        UpdateAt(6000);
        EXPECT_EQ(Input().actions, before) << key;
    }
}

TEST(InputTest, HoldTimesComeWithTheJoystickStartUp) {
    const Game game;
    CMN_InputManager input;
    EXPECT_EQ(input.timers[0].minInterval, 0U);
    input.defaultInterval = 45;
    input.InitJoystick();
    for (const CMN_InputManager::Timer& timer : input.timers) {
        EXPECT_EQ(timer.minInterval, 45U);
    }
}

// SDL's virtual device, moved as a driver would.
TEST(InputTest, TheFirstJoystickSteersTheShip) {
    UseHeadlessDrivers();
    SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
    SDL_InitSubSystem(SDL_INIT_JOYSTICK);
    ASSERT_EQ(SDL_JoystickAttachVirtual(SDL_JOYSTICK_TYPE_GAMECONTROLLER, 8, 16, 0), 0);
    Game game;
    SDL_Joystick* joystick = SDL_JoystickFromInstanceID(SDL_JoystickGetDeviceInstanceID(0));
    ASSERT_NE(joystick, nullptr) << "the game has not opened it";
    const Vec2i start = game.World().player->position;
    SDL_JoystickSetVirtualAxis(joystick, 1, -32768); // pushed away: up
    game.Tick(4);
    SDL_JoystickSetVirtualAxis(joystick, 1, 0);
    game.Tick(3);
    EXPECT_EQ(game.World().player->position, (start + Vec2i{0, 48}));
    SDL_JoystickSetVirtualButton(joystick, 4, 1);
    game.Tick(3);
    SDL_JoystickSetVirtualButton(joystick, 4, 0);
    game.Tick();
    EXPECT_EQ(game.World().mapMode, 1);
}
