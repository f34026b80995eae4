// What the debug menu leaves of the widgets: neighbours on all sides, several keys in one tick, and
// callbacks that change widgets.
#include "ui/UIF_Widget.h"

#include "input/CMN_InputManager.h"
#include "support/DrawLog.h"
#include "support/Game.h"
#include "support/Probe.h"

#include <gtest/gtest.h>

namespace {

class WidgetTest : public testing::Test {
protected:
    WidgetTest() {
        AddProbe(kMenuLayer).onUpdate = [this] { window.Update(); };
        upper->down = lower;
        lower->up = upper;
        upper->right = lower->left = right;
        right->left = upper;
    }

    /// A button that writes down what happens to it.
    UIF_Button* AddButton(const std::string& name) {
        auto owned = std::make_unique<UIF_Button>(Rect{20, 0, 20, 0, 0, 0});
        UIF_Button* button = owned.get();
        button->onHover.AddCallback([=, this](UIF_Hoverable*) { events += "+" + name + " "; });
        button->onUnhover.AddCallback([=, this](UIF_Hoverable*) { events += "-" + name + " "; });
        button->onClick.AddCallback([=, this](UIF_Button*) { events += "click " + name + " "; });
        window.AddChild(std::move(owned));
        return button;
    }

    std::string After(const std::vector<SDL_Keycode>& keys) {
        events.clear();
        game.Hold(keys);
        return events;
    }

    static bool IsPressed(InputAction action) {
        return CMN_InputManager::GetInstance()->IsPressed(action);
    }

    Game game;
    UIF_Window window{{300, 30, 400, 20, 270, 380}};
    std::string events;
    UIF_Button* upper = AddButton("upper");
    UIF_Button* lower = AddButton("lower");
    UIF_Button* right = AddButton("right");
};

} // namespace

TEST_F(WidgetTest, HoveringMovesOneStepAndClicksComeFirst) {
    EXPECT_EQ(After({SDLK_RETURN}), "") << "nothing is hovered";
    EXPECT_TRUE(IsPressed(InputAction::Confirm));
    lower->Select();
    upper->Select();
    EXPECT_EQ(events, "-right -upper +lower -right -lower +upper ");
    EXPECT_EQ(After({SDLK_w}), "") << "no neighbour that way";
    EXPECT_FALSE(IsPressed(InputAction::Up)) << "but the edge is used up";
    EXPECT_EQ(After({SDLK_d}), "-upper +right ");
    EXPECT_EQ(After({SDLK_d, SDLK_a}), "-right +upper ") << "left comes before right";
    EXPECT_EQ(After({SDLK_s, SDLK_RETURN}), "click upper -upper +lower ");
    EXPECT_EQ(After({SDLK_s, SDLK_w}), "-lower +upper ") << "up comes first";
    EXPECT_TRUE(IsPressed(InputAction::Down)) << "nobody has taken it";
}

TEST_F(WidgetTest, CallbacksMayChangeAnyWidgetAndKeepTheirState) {
    upper->Hover();
    upper->onClick.AddCallback([this, count = 0](UIF_Button* self) mutable {
        for (int i = 0; count == 0 && i < 100; ++i) { // whatever held it moves while it runs
            self->onClick.AddCallback([this](UIF_Button*) { events += "*"; });
            self->AddChild(std::make_unique<UIF_Label>(Rect{}, "x"));
            window.AddChild(std::make_unique<UIF_Label>(Rect{}, "x"));
        }
        events += std::to_string(++count);
    });
    EXPECT_EQ(After({SDLK_RETURN}), "click upper 1");
    EXPECT_EQ(After({SDLK_RETURN}), "click upper 2" + std::string(100, '*'));
}

TEST_F(WidgetTest, DrawsWithinTheParentByTheEdgesAlone) {
    right->fillColor = {1, 2, 3, 4};
    TakeDrawLog();
    right->Render({500, 30, 400, 20, 1, 1});
    EXPECT_EQ(TakeDrawLog(), "1 fill 30,440,20,20 in 1,2,3,4\n1 rect 30,440,20,20 in 0,0,0,255\n");
}
