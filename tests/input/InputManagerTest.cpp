#include "input/CMN_InputManager.h"

#include "app/CMN_TimeManager.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace {

using enum InputAction;

using Levels = std::array<float, kInputActionCount>;

// An input manager whose clock the test sets.
class InputManagerTest : public testing::Test {
protected:
    InputManagerTest() {
        SDL_Init(SDL_INIT_EVENTS);
        SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
        Restart();
    }
    ~InputManagerTest() override {
        CMN_InputManager::DestroyInstance();
        CMN_TimeManager::DestroyInstance();
        SDL_Quit();
    }

    static CMN_InputManager& Input() { return *CMN_InputManager::GetInstance(); }

    static void Restart(std::uint32_t minInterval = 30) {
        CMN_InputManager::DestroyInstance();
        for (CMN_InputManager::Timer& timer : Input().timers) {
            timer.minInterval = minInterval;
        }
    }

    static void Push(std::uint32_t type, SDL_Keycode key, bool isRepeat = false) {
        SDL_Event event{};
        event.type = type;
        event.key.keysym.sym = key;
        event.key.repeat = isRepeat ? 1 : 0;
        ASSERT_EQ(SDL_PushEvent(&event), 1);
    }

    static void UpdateAt(std::uint32_t time) {
        CMN_TimeManager::GetInstance()->currentTime = time;
        Input().Update();
    }

    static void DownAt(std::uint32_t time, SDL_Keycode key) {
        Push(SDL_KEYDOWN, key);
        UpdateAt(time);
    }

    static void UpAt(std::uint32_t time, SDL_Keycode key) {
        Push(SDL_KEYUP, key);
        UpdateAt(time);
    }

    // The actions whose edges are set.
    static std::vector<InputAction> Edges() {
        std::vector<InputAction> edges;
        for (std::size_t i = 0; i < kInputActionCount; ++i) {
            if (Input().pressed[i]) {
                edges.push_back(static_cast<InputAction>(i));
            }
        }
        return edges;
    }
};

const std::vector<InputAction> kNoEdge;

} // namespace

TEST_F(InputManagerTest, StartsAtRestWithHoldTimesOnlyFromTheJoystickStartUp) {
    CMN_InputManager::DestroyInstance();
    EXPECT_EQ(Input().actions, Levels{});
    EXPECT_EQ(Edges(), kNoEdge);
    EXPECT_EQ(Input().defaultInterval, 30U);
    for (const CMN_InputManager::Timer& timer : Input().timers) {
        EXPECT_EQ(timer.lastTime, 0U);
        EXPECT_EQ(timer.minInterval, 0U);
    }
    Input().defaultInterval = 45;
    Input().InitJoystick();
    for (const CMN_InputManager::Timer& timer : Input().timers) {
        EXPECT_EQ(timer.minInterval, 45U);
    }
}

TEST_F(InputManagerTest, EveryKeyDoesWhatItsRowSaysAndNothingElse) {
    struct Row {
        SDL_Keycode key;
        std::optional<InputAction> level;
        float held;
        float released;
        std::optional<InputAction> edge;
    };
    const std::vector<Row> rows{{SDLK_ESCAPE, Quit, 1.0f, 1.0f, {}},
                                {SDLK_BACKQUOTE, DebugMenu, 1.0f, 0.0f, DebugMenu},
                                {SDLK_BACKSPACE, {}, 0.0f, 0.0f, Map},
                                {SDLK_RETURN, {}, 0.0f, 0.0f, Confirm},
                                {SDLK_w, MoveVertical, 1.0f, 0.0f, Up},
                                {SDLK_s, MoveVertical, -1.0f, 0.0f, Down},
                                {SDLK_a, MoveHorizontal, -1.0f, 0.0f, Left},
                                {SDLK_d, MoveHorizontal, 1.0f, 0.0f, Right},
                                {SDLK_e, ZoomIn, 1.0f, 0.0f, {}},
                                {SDLK_q, ZoomOut, 1.0f, 0.0f, {}},
                                {SDLK_RIGHT, PanHorizontal, 1.0f, 0.0f, {}},
                                {SDLK_LEFT, PanHorizontal, -1.0f, 0.0f, {}},
                                {SDLK_DOWN, PanVertical, -1.0f, 0.0f, {}},
                                {SDLK_UP, PanVertical, 1.0f, 0.0f, {}},
                                {SDLK_x, {}, 0.0f, 0.0f, {}},
                                {SDLK_KP_ENTER, {}, 0.0f, 0.0f, {}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(SDL_GetKeyName(row.key));
        Restart();
        Levels expected{};
        if (row.level) {
            expected[Index(*row.level)] = row.held;
        }
        DownAt(1000, row.key);
        EXPECT_EQ(Edges(), kNoEdge);
        for (std::size_t i = 0; i < kInputActionCount; ++i) {
            const bool isStamped = row.edge && Index(*row.edge) == i;
            EXPECT_EQ(Input().timers[i].lastTime, isStamped ? 1000U : 0U) << i;
        }
        UpdateAt(1016);
        EXPECT_EQ(Input().actions, expected);
        UpAt(1032, row.key);
        if (row.level) {
            expected[Index(*row.level)] = row.released;
        }
        EXPECT_EQ(Input().actions, expected);
        EXPECT_EQ(Edges(), row.edge ? std::vector{*row.edge} : kNoEdge);
        UpdateAt(1048);
        EXPECT_EQ(Edges(), kNoEdge) << "an edge outlives its update";
    }
}

TEST_F(InputManagerTest, AReleaseCountsWhenThePressLiesLongEnoughBack) {
    struct Case {
        const char* name;
        std::uint32_t minInterval;
        std::uint32_t press;
        std::uint32_t release;
        bool counts;
    };
    const std::vector<Case> cases{
        {"exactly the shortest hold", 30, 1000, 1030, false},
        {"one more", 30, 1000, 1031, true},
        {"across the clock's wrap, too short", 30, 0xFFFFFFF0U, 14, false},
        {"across the clock's wrap, long enough", 30, 0xFFFFFFF0U, 15, true},
        {"the sum wraps before the clock does", 30, 0xFFFFFFF0U, 0xFFFFFFF8U, true},
        {"no joystick events: a later tick is enough", 0, 1000, 1001, true},
        {"no joystick events, but the same tick", 0, 1000, 1000, false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Restart(c.minInterval);
        DownAt(c.press, SDLK_RETURN);
        UpAt(c.release, SDLK_RETURN);
        EXPECT_EQ(Edges(), c.counts ? std::vector{Confirm} : kNoEdge);
        EXPECT_EQ(Input().timers[Index(Confirm)].lastTime, c.counts ? c.release : c.press);
    }
    Restart();
    Push(SDL_KEYDOWN, SDLK_RETURN);
    UpAt(5000, SDLK_RETURN);
    EXPECT_EQ(Edges(), kNoEdge) << "press and release in one update";
    UpAt(5031, SDLK_RETURN);
    EXPECT_EQ(Edges(), std::vector{Confirm}) << "a refused release does not start a new hold";
    UpAt(5061, SDLK_RETURN);
    EXPECT_EQ(Edges(), kNoEdge) << "an accepted one does";
}

TEST_F(InputManagerTest, KeyRepeatMovesThePressOn) {
    for (const std::uint32_t release : {1530U, 1531U}) {
        Restart();
        DownAt(1000, SDLK_w);
        Push(SDL_KEYDOWN, SDLK_w, true);
        UpdateAt(1500);
        EXPECT_EQ(Edges(), kNoEdge);
        EXPECT_EQ(Input().ActionValue(MoveVertical), 1.0f);
        UpAt(release, SDLK_w);
        EXPECT_EQ(Edges(), release > 1530 ? std::vector{Up} : kNoEdge);
    }
}

TEST_F(InputManagerTest, FortyTapsGiveFortyEdges) {
    // Every release comes in one update with the next press.
    DownAt(1000, SDLK_s);
    for (std::uint32_t tap = 1; tap <= 40; ++tap) {
        UpdateAt(1000 + 32 * tap - 16);
        EXPECT_EQ(Edges(), kNoEdge);
        Push(SDL_KEYUP, SDLK_s);
        DownAt(1000 + 32 * tap, SDLK_s);
        EXPECT_EQ(Edges(), std::vector{Down});
        EXPECT_EQ(Input().ActionValue(MoveVertical), -1.0f) << "the key is down again";
    }
}

TEST_F(InputManagerTest, OppositeKeysShareAnAxisThatAnyReleaseCentres) {
    struct Pair {
        SDL_Keycode low;
        SDL_Keycode high;
        InputAction axis;
    };
    for (const Pair& pair :
         {Pair{SDLK_a, SDLK_d, MoveHorizontal}, Pair{SDLK_s, SDLK_w, MoveVertical},
          Pair{SDLK_LEFT, SDLK_RIGHT, PanHorizontal}, Pair{SDLK_DOWN, SDLK_UP, PanVertical}}) {
        SCOPED_TRACE(SDL_GetKeyName(pair.low));
        DownAt(1000, pair.low);
        DownAt(1016, pair.high);
        EXPECT_EQ(Input().ActionValue(pair.axis), 1.0f) << "the later key wins";
        UpAt(1032, pair.low);
        EXPECT_EQ(Input().ActionValue(pair.axis), 0.0f) << "although the other is still held";
        DownAt(1048, pair.low);
        UpAt(1064, pair.high);
        EXPECT_EQ(Input().ActionValue(pair.axis), 0.0f);
    }
}
