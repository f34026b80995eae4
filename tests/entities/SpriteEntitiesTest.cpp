// The entities that show themselves by a sprite: enemies, compass markers, the boat, the player.
#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/CompassEntity.h"
#include "entities/DumbEnemy.h"
#include "entities/PlayerEntity.h"
#include "gfx/GFX_GraphicsManager.h"
#include "support/GameHarness.h"
#include "support/SolidTexture.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <utility>

namespace {

constexpr Vec2i kPlace{6156, 6204};

// By direction: up, down, left, right.
constexpr std::array<PixelRect, 4> kShips{
    {{0, 96, 32, 32}, {0, 0, 32, 32}, {0, 32, 32, 32}, {0, 64, 32, 32}}};
constexpr std::array<PixelRect, 4> kFigures{
    {{62, 0, 16, 16}, {0, 0, 16, 16}, {30, 0, 16, 16}, {91, 0, 16, 16}}};

class SpriteEntitiesTest : public testing::Test {
protected:
    static void ExpectCut(const Sprite* sprite, const char* image, PixelRect source) {
        ASSERT_NE(sprite, nullptr);
        EXPECT_EQ(sprite->texture, GFX_GraphicsManager::GetInstance()->GetTexture(image));
        EXPECT_EQ(sprite->source, source);
    }

    // Draws an entity 36 right of and 20 above the camera and expects it as a red square of so many
    // pixels at zoom 1, centred on its place.
    void ExpectSquare(IEntity& entity, int size) {
        CameraEntity& camera = *game.World().camera;
        camera.position = entity.position - Vec2i{36, 20};
        for (const auto& [zoom, percent] : {std::pair{1.0f, 100}, {0.5f, 50}, {2.0f, 200}}) {
            camera.zoom = zoom;
            game.Capture([&] { entity.Render(); });
            const int side = size * percent / 100;
            const Vec2i center{320 + 36 * percent / 100, 240 - 20 * percent / 100};
            EXPECT_EQ(game.BoundsOf(kTestRed),
                      (SDL_Rect{center.x - side / 2, center.y - side / 2, side, side}))
                << "zoom " << zoom;
            EXPECT_EQ(game.CountOf(kTestRed), side * side);
        }
    }

    GameHarness game;
};

} // namespace

TEST_F(SpriteEntitiesTest, EnemiesAndMarkersStandWhereTheyWerePut) {
    DumbEnemy enemy;
    EXPECT_TRUE(enemy.active);
    EXPECT_TRUE(enemy.Init(kPlace));
    ExpectCut(enemy.sprite, "enemies.png", {0, 0, 16, 16});
    CompassEntity marker;
    EXPECT_EQ(marker.index, -1);
    EXPECT_TRUE(marker.Init(3, kPlace));
    EXPECT_EQ(marker.index, 3);
    ExpectCut(marker.sprite, "compass.png", {0, 0, 128, 128});

    const SolidTexture small(16, 16, kTestRed);
    const SolidTexture large(128, 128, kTestRed);
    enemy.sprite = &small.sprite;
    marker.sprite = &large.sprite;
    enemy.Update();
    EXPECT_EQ(enemy.position, kPlace);
    EXPECT_EQ(marker.position, kPlace);
    ExpectSquare(enemy, 16);
    ExpectSquare(marker, 32);
}

TEST_F(SpriteEntitiesTest, BoatAndPlayerShowTheirHeading) {
    AnchoredBoatEntity boat;
    boat.Init();
    EXPECT_EQ(boat.direction, 0);
    PlayerEntity player;
    player.Init();
    for (std::size_t i = 0; i < 4; ++i) {
        ExpectCut(boat.sprites[i], "ships.png", kShips[i]);
        ExpectCut(player.shipSprites[i], "ships.png", kShips[i]);
        ExpectCut(player.walkSprites[i], "link_raw.png", kFigures[i]);
    }
    boat.position = player.position = kPlace;
    const SolidTexture shown(32, 32, kTestRed);
    const SolidTexture other(32, 32, kTestGreen);
    for (std::size_t i = 0; i < 4; ++i) {
        boat.sprites.fill(&other.sprite);
        boat.sprites[i] = &shown.sprite;
        boat.direction = player.direction = static_cast<std::int32_t>(i);
        ExpectSquare(boat, 32);
        for (const std::int32_t mode : {PlayerEntity::kSailing, PlayerEntity::kOnFoot}) {
            player.mode = mode;
            player.shipSprites.fill(&other.sprite);
            player.walkSprites.fill(&other.sprite);
            (mode == PlayerEntity::kSailing ? player.shipSprites : player.walkSprites)[i] =
                &shown.sprite;
            ExpectSquare(player, 24);
        }
    }
}

TEST_F(SpriteEntitiesTest, WithoutTheirImagesTheyDrawNothing) {
    DumbEnemy enemy;
    CompassEntity marker;
    AnchoredBoatEntity boat;
    PlayerEntity player;
    game.World().camera->position = {0, 0};
    game.Capture([&] {
        enemy.Render();
        marker.Render();
        boat.Render();
        player.Render();
    });
    EXPECT_EQ(game.DrawnBounds(), SDL_Rect{});
}
