// A joystick from its driver to the game: SDL's virtual device is moved and whole ticks run.
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "input/CMN_InputManager.h"
#include "support/GameHarness.h"
#include "support/QuietStderr.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using enum InputAction;

constexpr float kHalfPush = (20000 + 32768) / 65535.0f; // as a fraction of the whole way

class JoystickTest : public testing::Test {
protected:
    JoystickTest() {
        UseHeadlessDrivers();
        // The window of a headless driver never gets the focus.
        SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
        // The device has to be there before the game looks for it.
        SDL_InitSubSystem(SDL_INIT_JOYSTICK);
        const int device = SDL_JoystickAttachVirtual(SDL_JOYSTICK_TYPE_GAMECONTROLLER, 8, 16, 0);
        EXPECT_EQ(device, 0) << SDL_GetError();
        joystick = SDL_JoystickOpen(0);
        game = std::make_unique<GameHarness>();
        game->TickOnly();
        game->Settle();
    }

    static float Value(InputAction action) {
        return CMN_InputManager::GetInstance()->ActionValue(action);
    }

    void MoveAxis(int axis, int value) {
        ASSERT_EQ(SDL_JoystickSetVirtualAxis(joystick, axis, static_cast<Sint16>(value)), 0);
        game->TickOnly();
    }

    void SetButton(int button, bool down) {
        ASSERT_EQ(SDL_JoystickSetVirtualButton(joystick, button, down ? 1 : 0), 0);
        game->TickOnly();
    }

    std::string PrintedBy(int button, bool down) {
        const OutputCapture output;
        SetButton(button, down);
        return output.Text();
    }

    SDL_Joystick* joystick = nullptr;
    QuietStderr quiet;
    std::unique_ptr<GameHarness> game;
};

} // namespace

TEST_F(JoystickTest, SticksGiveLevelsOutsideTheirDeadZone) {
    struct Stick {
        int axis;
        InputAction action;
        float sign;
    };
    const std::vector<std::pair<int, float>> levels{{32767, 1.0f},
                                                    {5000, 0.0f},
                                                    {5001, 37769 / 65535.0f * 2.0f - 1.0f},
                                                    {-5000, 0.0f},
                                                    {-5001, 27767 / 65535.0f * 2.0f - 1.0f},
                                                    {-32768, -1.0f}};
    for (const Stick& stick : {Stick{0, MoveHorizontal, 1.0f}, Stick{1, MoveVertical, -1.0f},
                               Stick{2, PanHorizontal, 1.0f}, Stick{3, PanVertical, -1.0f}}) {
        for (const auto& [place, level] : levels) {
            SCOPED_TRACE(testing::Message() << stick.axis << " at " << place);
            MoveAxis(stick.axis, place);
            game->TickOnly(2); // a level lasts until the stick moves
            EXPECT_FLOAT_EQ(Value(stick.action), stick.sign * level);
        }
        MoveAxis(stick.axis, 0);
    }
}

TEST_F(JoystickTest, TriggersGiveFractions) {
    for (const auto& [axis, action] : {std::pair{4, ZoomOut}, std::pair{5, ZoomIn}}) {
        SCOPED_TRACE(axis);
        MoveAxis(axis, 32767);
        EXPECT_EQ(Value(action), 1.0f);
        MoveAxis(axis, 20000);
        EXPECT_FLOAT_EQ(Value(action), kHalfPush);
        for (const int value : {5000, -20000}) {
            MoveAxis(axis, value);
            EXPECT_EQ(Value(action), 0.0f) << value;
        }
    }
    const auto before = CMN_InputManager::GetInstance()->actions;
    MoveAxis(6, 32767);
    EXPECT_EQ(CMN_InputManager::GetInstance()->actions, before);
}

TEST_F(JoystickTest, ButtonsTellWhatTheyAre) {
    for (const auto& [button, action] :
         {std::pair{10, JoystickButton10}, std::pair{11, JoystickButton11},
          std::pair{12, JoystickButton12}, std::pair{13, JoystickButton13}}) {
        EXPECT_EQ(Value(action), 0.0f);
        EXPECT_EQ(PrintedBy(button, true), "button\n");
        EXPECT_EQ(PrintedBy(button, false), "");
        EXPECT_EQ(Value(action), 1.0f);
    }
    const auto before = CMN_InputManager::GetInstance()->actions;
    for (const int button : {0, 3, 5, 7, 9, 14}) {
        EXPECT_EQ(PrintedBy(button, true), "button\nunknown joystick button\n") << button;
        EXPECT_EQ(PrintedBy(button, false), "") << button;
    }
    EXPECT_EQ(CMN_InputManager::GetInstance()->actions, before);

    EXPECT_EQ(PrintedBy(4, true), "button\n");
    EXPECT_EQ(PrintedBy(4, false), ""); // 16 ms later
    EXPECT_FALSE(CMN_InputManager::GetInstance()->IsPressed(Map)) << "too short";
    SetButton(4, true);
    game->TickOnly(2);
    SetButton(4, false);
    EXPECT_TRUE(CMN_InputManager::GetInstance()->IsPressed(Map));
    EXPECT_EQ(Value(Map), 1.0f);
}

TEST_F(JoystickTest, PlaysTheGame) {
    WorldManager& world = game->World();
    const Vec2i start = world.player->position;
    MoveAxis(1, -32768); // pushed away: up
    game->TickOnly(5);
    MoveAxis(1, 0);
    game->TickOnly(2);
    EXPECT_EQ(world.player->position, (Vec2i{start.x, start.y + 3 * 24}));

    SetButton(4, true);
    game->TickOnly(3);
    SetButton(4, false);
    ASSERT_EQ(world.mapMode, 1);
    MapEntity& map = *world.map;
    map.pan = {0.0f, 0.0f};
    MoveAxis(2, 32767);
    MoveAxis(3, 32767); // pulled near: down
    EXPECT_EQ(map.pan, (Vec2f{20.0f, -10.0f}));
    MoveAxis(5, 20000);
    EXPECT_FLOAT_EQ(map.zoom, 1.0f + 0.1f * kHalfPush);
}
