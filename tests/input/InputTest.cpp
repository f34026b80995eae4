// What the scenes leave of the input: releases at the ends of their time, and a real joystick.
#include "input/CMN_InputManager.h"

#include "app/CMN_TimeManager.h"
#include "entities/PlayerEntity.h"
#include "support/Game.h"

#include <SDL.h>
#include <gtest/gtest.h>

TEST(InputTest, AReleaseCountsWhenThePressLiesLongEnoughBack) {
    struct Case {
        std::uint32_t minInterval;
        std::uint32_t press;
        std::uint32_t release;
        bool counts;
    };
    Game game;
    CMN_InputManager& input = *CMN_InputManager::GetInstance();
    CMN_InputManager::Timer& timer = input.timers[Index(InputAction::Confirm)];
    for (const Case& c : {Case{30, 0xFFFFFFF0U, 14, false}, // across the clock's wrap
                          {30, 0xFFFFFFF0U, 15, true},
                          {30, 0xFFFFFFF0U, 0xFFFFFFF8U, true}, // the sum wraps before the clock
                          {0, 1000, 1000, false}}) {
        timer.minInterval = c.minInterval;
        PushKey(SDL_KEYDOWN, SDLK_RETURN);
        CMN_TimeManager::GetInstance()->currentTime = c.press;
        input.Update();
        PushKey(SDL_KEYUP, SDLK_RETURN);
        CMN_TimeManager::GetInstance()->currentTime = c.release;
        input.Update();
        EXPECT_EQ(input.IsPressed(InputAction::Confirm), c.counts) << c.press << " " << c.release;
    }
    PushKey(SDL_KEYDOWN, SDLK_a);
    PushKey(SDL_KEYDOWN, SDLK_d);
    PushKey(SDL_KEYUP, SDLK_a);
    input.Update();
    EXPECT_EQ(input.ActionValue(InputAction::MoveHorizontal), 0.0f) << "d is still held";
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
    SDL_JoystickSetVirtualAxis(joystick, 1, -32768); // pushed away: up
    game.Tick(5);
    EXPECT_GT(game.World().player->position.y, 6156);
    const auto valueAt = [&](int axis, Sint16 place, InputAction action) {
        SDL_JoystickSetVirtualAxis(joystick, axis, place);
        game.Tick();
        return CMN_InputManager::GetInstance()->ActionValue(action);
    };
    EXPECT_GT(valueAt(4, 32767, InputAction::ZoomOut), 0.9f);
    EXPECT_EQ(valueAt(4, -20000, InputAction::ZoomOut), 0.0f) << "pressed a little";
    EXPECT_LT(valueAt(0, -5001, InputAction::MoveHorizontal), 0.0f);
    EXPECT_EQ(valueAt(0, -5000, InputAction::MoveHorizontal), 0.0f) << "the last value at rest";
}
