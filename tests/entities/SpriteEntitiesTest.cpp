// The entities that only show a sprite: enemies, compass markers and the anchored boat.
#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/CompassEntity.h"
#include "entities/DumbEnemy.h"
#include "gfx/GFX_GraphicsManager.h"
#include "support/GameHarness.h"
#include "support/SolidTexture.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace {

constexpr Vec2i kPlace{6156, 6204};

const TextureInfo* Image(const char* name) {
    return GFX_GraphicsManager::GetInstance()->GetTexture(name);
}

// Draws an entity 36 right of and 20 above the camera at zooms 1, 0.5 and 2 and expects it as a
// square of so many pixels at zoom 1 centred on its place.
void ExpectSquare(GameHarness& game, IEntity& entity, int size) {
    CameraEntity& camera = *game.World().camera;
    camera.position = kPlace - Vec2i{36, 20};
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

} // namespace

TEST(SpriteEntitiesTest, AnEnemyIsDrawnInItsImagesSize) {
    GameHarness game;
    DumbEnemy enemy;
    EXPECT_TRUE(enemy.active);
    EXPECT_EQ(enemy.sprite, nullptr);
    EXPECT_TRUE(enemy.Init(kPlace));
    EXPECT_EQ(enemy.position, kPlace);
    EXPECT_EQ(enemy.sprite->texture, Image("enemies.png"));
    EXPECT_EQ(enemy.sprite->source, (PixelRect{0, 0, 16, 16}));
    const SolidTexture image(16, 16, kTestRed);
    enemy.sprite = &image.sprite;
    enemy.Update();
    EXPECT_EQ(enemy.position, kPlace);
    ExpectSquare(game, enemy, 16);
}

TEST(SpriteEntitiesTest, ACompassMarkerShrinksToThirtyTwo) {
    GameHarness game;
    CompassEntity marker;
    EXPECT_EQ(marker.index, -1);
    EXPECT_TRUE(marker.Init(3, kPlace));
    EXPECT_EQ(marker.index, 3);
    EXPECT_EQ(marker.position, kPlace);
    EXPECT_EQ(marker.sprite->texture, Image("compass.png"));
    EXPECT_EQ(marker.sprite->source, (PixelRect{0, 0, 128, 128}));
    const SolidTexture image(128, 128, kTestRed);
    marker.sprite = &image.sprite;
    ExpectSquare(game, marker, 32);
}

TEST(SpriteEntitiesTest, TheBoatShowsTheHeadingItWasLeftWith) {
    GameHarness game;
    AnchoredBoatEntity boat;
    boat.Init();
    EXPECT_EQ(boat.direction, 0);
    const std::vector<PixelRect> sources{
        {0, 96, 32, 32}, {0, 0, 32, 32}, {0, 32, 32, 32}, {0, 64, 32, 32}};
    const SolidTexture shown(32, 32, kTestRed);
    const SolidTexture other(32, 32, kTestGreen);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(boat.sprites[i]->texture, Image("ships.png"));
        EXPECT_EQ(boat.sprites[i]->source, sources[i]);
    }
    boat.position = kPlace;
    for (std::size_t i = 0; i < 4; ++i) {
        boat.sprites.fill(&other.sprite);
        boat.sprites[i] = &shown.sprite;
        boat.direction = static_cast<std::int32_t>(i);
        ExpectSquare(game, boat, 32);
    }
}

TEST(SpriteEntitiesTest, WithoutTheirImagesTheyDrawNothing) {
    GameOptions options;
    options.mode = "release";
    const OutputCapture output;
    GameHarness game(options);
    DumbEnemy enemy;
    CompassEntity marker;
    AnchoredBoatEntity boat;
    enemy.Init(kPlace);
    marker.Init(0, kPlace);
    boat.Init();
    EXPECT_EQ(enemy.sprite, nullptr);
    EXPECT_EQ(marker.sprite, nullptr);
    game.World().camera->position = kPlace;
    boat.position = kPlace;
    game.Capture([&] {
        enemy.Render();
        marker.Render();
        boat.Render();
    });
    EXPECT_EQ(game.DrawnBounds(), SDL_Rect{});
}
