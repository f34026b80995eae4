// Widgets in the running game: a small panel of buttons is added to the world, keys are pressed and
// whole ticks run.
#include "ui/UIF_Button.h"
#include "ui/UIF_Label.h"
#include "ui/UIF_Window.h"

#include "input/CMN_InputManager.h"
#include "support/GameHarness.h"
#include "support/PaintedFrame.h"
#include "support/QuietStderr.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using Events = std::vector<std::string>;

constexpr SDL_Color kBlack{0, 0, 0, 255};
constexpr SDL_Color kGreen{0, 255, 0, 255};
constexpr SDL_Color kOrange{255, 128, 0, 255};
constexpr SDL_Color kPurple{128, 0, 128, 255};
constexpr SDL_Color kTan{210, 180, 140, 255};

constexpr Rect kSmall{20, 0, 20, 0, 20, 20};

/// Puts a window into the world, as the debug menu does.
class PanelEntity : public IEntity {
public:
    void Update() override { window.Update(); }
    void Render() override { window.Render(Rect{}); }

    UIF_Window window{{300, 30, 400, 20, 270, 380}};
};

class WidgetTest : public testing::Test {
protected:
    WidgetTest() {
        game.World().AddEntity(panel, kMenuLayer);
        game.TickOnly();
        game.Settle();
    }

    /// A button that writes down what happens to it.
    UIF_Button* AddButton(const std::string& name) {
        auto owned = std::make_unique<UIF_Button>(kSmall);
        UIF_Button* button = owned.get();
        button->onHover.AddCallback([=, this](UIF_Hoverable* widget) {
            EXPECT_TRUE(widget == button && widget->hovered);
            events.push_back("hover " + name);
        });
        button->onUnhover.AddCallback([=, this](UIF_Hoverable* widget) {
            EXPECT_TRUE(widget == button && !widget->hovered);
            events.push_back("unhover " + name);
        });
        button->onClick.AddCallback([=, this](UIF_Button* widget) {
            EXPECT_EQ(widget, button);
            events.push_back("click " + name);
        });
        panel->window.AddChild(std::move(owned));
        return button;
    }

    static void StackBelow(UIF_Hoverable* upper, UIF_Hoverable* lower) {
        upper->down = lower;
        lower->up = upper;
    }

    static void PutBeside(UIF_Hoverable* west, UIF_Hoverable* east) {
        west->right = east;
        east->left = west;
    }

    /// What has happened since the last call.
    Events TakeEvents() { return std::exchange(events, {}); }

    static bool IsPressed(InputAction action) {
        return CMN_InputManager::GetInstance()->IsPressed(action);
    }

    /// Holds several keys long enough and releases them in one tick.
    void TapTogether(std::initializer_list<SDL_Keycode> keys) {
        for (const SDL_Keycode key : keys) {
            game.KeyDown(key);
        }
        game.TickOnly(3);
        for (const SDL_Keycode key : keys) {
            game.KeyUp(key);
        }
        game.TickOnly();
    }

    QuietStderr quiet;
    GameHarness game;
    PanelEntity* panel = new PanelEntity; // the world's from the constructor on
    Events events;
};

} // namespace

TEST_F(WidgetTest, MovesTheSelectionToTheNeighborOfTheReleasedKey) {
    UIF_Button* northWest = AddButton("nw");
    UIF_Button* northEast = AddButton("ne");
    UIF_Button* southWest = AddButton("sw");
    UIF_Button* southEast = AddButton("se");
    StackBelow(northWest, southWest);
    StackBelow(northEast, southEast);
    PutBeside(northWest, northEast);
    PutBeside(southWest, southEast);
    northWest->Select();
    EXPECT_EQ(TakeEvents(), (Events{"unhover ne", "unhover sw", "hover nw"}));

    game.Tap(SDLK_s);
    EXPECT_EQ(TakeEvents(), (Events{"unhover nw", "hover sw"}));
    game.Tap(SDLK_d);
    EXPECT_EQ(TakeEvents(), (Events{"unhover sw", "hover se"}));
    game.Tap(SDLK_w);
    EXPECT_EQ(TakeEvents(), (Events{"unhover se", "hover ne"}));
    game.Tap(SDLK_a);
    EXPECT_EQ(TakeEvents(), (Events{"unhover ne", "hover nw"}));

    // No neighbour that way: nothing happens, but the edge is used up.
    for (const auto& [key, action] :
         {std::pair{SDLK_w, InputAction::Up}, std::pair{SDLK_a, InputAction::Left}}) {
        game.Tap(key);
        EXPECT_TRUE(TakeEvents().empty());
        EXPECT_FALSE(IsPressed(action));
        EXPECT_TRUE(northWest->hovered);
    }
}

TEST_F(WidgetTest, OneReleaseMovesOneStepAndTheFirstOfTwoCounts) {
    UIF_Button* top = AddButton("top");
    UIF_Button* middle = AddButton("middle");
    UIF_Button* lowest = AddButton("lowest");
    StackBelow(top, middle);
    StackBelow(middle, lowest);
    top->Hover();
    TakeEvents();
    // The middle one is updated later in the same tick; it must not see the edge again.
    game.Tap(SDLK_s);
    game.TickOnly(3);
    EXPECT_EQ(TakeEvents(), (Events{"unhover top", "hover middle"}));

    TapTogether({SDLK_s, SDLK_w});
    EXPECT_EQ(TakeEvents(), (Events{"unhover middle", "hover top"}));
    EXPECT_TRUE(IsPressed(InputAction::Down)) << "nobody has taken it";
    game.TickOnly();
    EXPECT_FALSE(IsPressed(InputAction::Down));
    EXPECT_TRUE(TakeEvents().empty());
}

TEST_F(WidgetTest, ClicksOnlyTheSelectedButtonAndBeforeItMoves) {
    UIF_Button* top = AddButton("top");
    UIF_Button* lower = AddButton("lower");
    StackBelow(top, lower);

    game.Tap(SDLK_RETURN);
    EXPECT_TRUE(TakeEvents().empty()) << "nothing is selected";
    EXPECT_TRUE(IsPressed(InputAction::Confirm));
    game.TickOnly();
    EXPECT_FALSE(IsPressed(InputAction::Confirm));

    top->Hover();
    TakeEvents();
    game.Tap(SDLK_RETURN);
    EXPECT_EQ(TakeEvents(), (Events{"click top"}));
    EXPECT_FALSE(IsPressed(InputAction::Confirm));
    TapTogether({SDLK_s, SDLK_RETURN});
    EXPECT_EQ(TakeEvents(), (Events{"click top", "unhover top", "hover lower"}));
}

TEST_F(WidgetTest, CallbacksMayChangeAnyWidget) {
    UIF_Button* top = AddButton("top");
    UIF_Button* lower = AddButton("lower");
    top->Hover();
    TakeEvents();
    // One callback fills its own list and gives every widget more children, so that whatever held
    // them moves while they are in use; the other links the buttons.
    top->onClick.AddCallback([log = &events, window = &panel->window](UIF_Button* self) {
        for (int i = 0; i < 100; ++i) {
            self->onClick.AddCallback([log](UIF_Button*) { log->emplace_back("later"); });
            self->AddChild(std::make_unique<UIF_Label>(kSmall, "x"));
            window->AddChild(std::make_unique<UIF_Label>(kSmall, "x"));
        }
        log->emplace_back("filled");
    });
    int clicks = 0;
    top->onClick.AddCallback([=, &clicks, own = 0](UIF_Button*) mutable {
        StackBelow(top, lower);
        clicks = ++own; // a callback keeps its own state
    });
    TapTogether({SDLK_s, SDLK_RETURN});
    EXPECT_EQ(TakeEvents(), (Events{"click top", "filled", "unhover top", "hover lower"}));

    game.Tap(SDLK_w);
    TakeEvents();
    game.Tap(SDLK_RETURN);
    EXPECT_EQ(TakeEvents().size(), 102U) << "the added callbacks take part from the next click on";
    EXPECT_EQ(clicks, 2);
}

TEST_F(WidgetTest, DrawsWithinTheParent) {
    panel->active = false;
    game.Capture();
    PaintedFrame expected(game);
    panel->active = true;

    UIF_Window& window = panel->window;
    window.fillColor = kTan;
    window.borderColor = kPurple;
    // The stored sizes are wrong on purpose: only the edges count.
    auto button = std::make_unique<UIF_Button>(Rect{262, 2, 378, 338, 7, 9999});
    button->fillColor = kGreen;
    button->borderColor = kOrange;
    auto overlapping = std::make_unique<UIF_Button>(Rect{200, 150, 345, 330, 0, 0});
    overlapping->borderColor = kPurple;
    button->AddChild(
        std::make_unique<UIF_Label>(Rect{15, 10, 30, 25, 0, 0}, "longer than its place"));
    window.AddChild(std::move(button));
    window.AddChild(std::move(overlapping));
    game.Capture();

    expected.Fill({30, 80, 270, 380}, kTan); // the window is 480 pixels high
    expected.Outline({30, 80, 270, 380}, kPurple);
    expected.Fill({32, 82, 260, 40}, kGreen);
    expected.Outline({32, 82, 260, 40}, kOrange);
    expected.Text("longer than its place", 42, 92, kBlack);
    expected.Fill({180, 115, 50, 15}, kBlack);
    expected.Outline({180, 115, 50, 15}, kPurple);
    EXPECT_EQ(expected.Difference(game), "");
}
