#include "entities/CameraEntity.h"

#include "entities/PlayerEntity.h"
#include "input/CMN_InputManager.h"
#include "support/GameHarness.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

constexpr Vec2i kTarget{6156, 6156};

} // namespace

TEST(CameraEntityTest, FollowsItsTargetWithADeadZone) {
    struct Case {
        float zoom;
        Vec2i offset; // of the target, in world units
        Vec2i move;
    };
    // A fifth of half the window, 644 x 369, truncated: 128 x 73.
    const std::vector<Case> cases{{1.0f, {1000, 0}, {872, 0}},
                                  {1.0f, {-1000, 500}, {-872, 427}},
                                  {1.0f, {128, -73}, {0, 0}},
                                  {1.0f, {-129, 74}, {-1, 1}},
                                  // Window pixels are taken for world units.
                                  {0.5f, {257, -147}, {0, 0}},
                                  {0.5f, {258, -148}, {1, -1}},
                                  {2.0f, {100, 100}, {72, 127}},
                                  {0.0f, {1000000, 1000000}, {0, 0}}};
    const GameHarness game({.width = 1289, .height = 739, .start = kTarget});
    CameraEntity& camera = *game.World().camera;
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.zoom << ": " << c.offset.x << " " << c.offset.y);
        camera.zoom = c.zoom;
        camera.position = kTarget - c.offset;
        camera.Update();
        EXPECT_EQ(camera.position, kTarget - c.offset + c.move);
        EXPECT_EQ(camera.zoom, c.zoom);
    }
    // The target lies nearer across the end of the world than the other way round.
    constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    camera.zoom = 1.0f;
    camera.position = {highest - 100, 0};
    game.World().player->position = {lowest + 99, 0};
    camera.Update();
    EXPECT_EQ(camera.position, (Vec2i{highest - 28, 0}));
}

TEST(CameraEntityTest, ZoomsByATenthATickWithinItsBounds) {
    struct Case {
        float zoom;
        float out;
        float in;
        float expected;
    };
    const std::vector<Case> cases{
        {1.0f, 1.0f, 0.0f, 0.9f},          {1.0f, 1.0f, 1.0f, 0.99f}, // out first, then in
        {2.0f, 0.0f, 0.25f, 2.05f},        {0.01f, 1.0f, 0.0f, 0.01f},
        {0.0101f, 1.0f, 0.0f, 0.00909f}, // may end beyond the bound
        {0.00909f, 0.0f, 1.0f, 0.009999f}, {10.0f, 0.0f, 1.0f, 10.0f},
        {9.99f, 0.0f, 1.0f, 10.989f},      {10.989f, 1.0f, 1.0f, 10.87911f},
        {0.0f, 1.0f, 0.0f, 0.0f},
    };
    GameHarness game;
    CameraEntity& camera = *game.World().camera;
    CMN_InputManager& input = *CMN_InputManager::GetInstance();
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.zoom << " " << c.out << " " << c.in);
        camera.zoom = c.zoom;
        input.actions[Index(InputAction::ZoomOut)] = c.out;
        input.actions[Index(InputAction::ZoomIn)] = c.in;
        game.TickOnly();
        EXPECT_FLOAT_EQ(camera.zoom, c.expected);
    }
}

TEST(CameraEntityTest, LeavesTheZoomKeysToTheMapAndStillFollows) {
    GameHarness game;
    game.Tap(SDLK_BACKSPACE);
    ASSERT_EQ(game.World().mapMode, 1);
    CameraEntity& camera = *game.World().camera;
    const Vec2i before = camera.position;
    game.KeyDown(SDLK_q);
    game.KeyDown(SDLK_d);
    game.TickOnly(40);
    EXPECT_EQ(camera.zoom, 1.0f);
    EXPECT_EQ(camera.position, (before + Vec2i{480, 0})) << "twenty tiles";
    game.Tap(SDLK_BACKSPACE);
    EXPECT_LT(camera.zoom, 1.0f) << "the key is still held";
}
