#include "entities/HudEntity.h"

#include "entities/CameraEntity.h"
#include "entities/PlayerEntity.h"
#include "gen/Clusters.h"
#include "gfx/GFX_GraphicsManager.h"
#include "support/GameHarness.h"
#include "support/SolidTexture.h"
#include "world/ASM_AssetManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

constexpr Vec2i kIsland{6, 3}; // a land cell

Vec2i CellCenter(Vec2i cell) {
    return CellOrigin(cell) + Vec2i{kCellSize / 2, kCellSize / 2};
}

bool IsLand(Vec2i cell) {
    ClusterRecord record;
    GenerateCluster(ClusterKeyOfCell(cell), record);
    const auto flag = record.cells.find(CellKey(cell).id);
    return flag != record.cells.end() && flag->second == 1;
}

class HudEntityTest : public testing::Test {
protected:
    HudEntity& Hud() const { return dynamic_cast<HudEntity&>(*game.World().layers[kHudLayer][0]); }

    // Where the icons lie around the radar's centre, with the player at a world position.
    std::vector<Vec2i> IconsAt(Vec2i player) const {
        game.World().player->position = player;
        Hud().Update();
        std::vector<Vec2i> offsets;
        for (const Vec2i& icon : Hud().icons) {
            offsets.push_back(icon - Hud().position);
        }
        return offsets;
    }

    GameHarness game{{.width = 1280, .height = 720, .start = CellCenter(kIsland)}};
};

} // namespace

TEST_F(HudEntityTest, PlacesIconsInTheDirectionAndAtTheScaledDistanceOfLand) {
    ASSERT_TRUE(IsLand(kIsland));
    game.TickOnly(); // the clusters around are held from now on
    struct Case {
        Vec2i player;
        Vec2i icon;
        const char* meaning;
    };
    const Case cases[] = {
        {CellCenter({5, 3}), {20, 0}, "the island lies to the east"},
        {CellCenter({6, 2}), {0, -20}, "north is up"},
        {CellCenter({6, 5}), {0, 40}, "two cells to the south"},
        {CellCenter({3, 0}), {35, -35}, "cut to the rim"},
        {CellCenter({9, 3}), {-50, 0}, "60 away, cut to the rim"},
        {CellCenter(kIsland) + Vec2i{3500, -3500}, {-5, -5}, "its own cell, 5.7 cut to 5"},
    };
    for (const Case& c : cases) {
        const std::vector<Vec2i> icons = IconsAt(c.player);
        EXPECT_EQ(std::count(icons.begin(), icons.end(), c.icon), 1) << c.meaning;
    }
}

TEST_F(HudEntityTest, ShowsEveryLandCellWithinThreeCellsOfTheClustersHeld) {
    EXPECT_TRUE(IconsAt(CellCenter(kIsland)).empty()) << "none is held before the first tick";
    game.TickOnly();
    for (const Vec2i cell : {Vec2i{6, 3}, {3, 3}, {2, 3}, {1, 7}, {14, 2}}) {
        std::size_t land = 0;
        for (std::int32_t dx = -3; dx <= 3; ++dx) {
            for (std::int32_t dy = -3; dy <= 3; ++dy) {
                land += IsLand(cell + Vec2i{dx, dy}) ? 1 : 0;
            }
        }
        EXPECT_EQ(IconsAt(CellCenter(cell)).size(), land) << cell.x << " " << cell.y;
    }
    const std::size_t held = ASM_AssetManager::GetInstance()->clusters.GetRefs().size();
    EXPECT_TRUE(IconsAt(CellCenter({1000, 1000})).empty());
    EXPECT_EQ(ASM_AssetManager::GetInstance()->clusters.GetRefs().size(), held)
        << "looking holds nothing";
}

TEST_F(HudEntityTest, SitsInTheUpperRightCornerAndSkipsMissingImages) {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    const TextureInfo* rose = graphics.GetTexture("hud_compass.png");
    EXPECT_EQ(Hud().compassTexture, rose);
    EXPECT_EQ(Hud().islandTexture, graphics.GetTexture("island_icon.png"));
    const SolidTexture compass(rose->width, rose->height, kTestRed);
    const SolidTexture island(9, 6, kTestGreen);
    Hud().compassTexture = &compass.info;
    Hud().islandTexture = &island.info;
    Hud().icons = {Hud().position};
    game.World().camera->zoom = 0.1f; // the radar ignores the view
    game.Capture([this] { Hud().Render(); });
    const Vec2i half{rose->width / 2, rose->height / 2};
    EXPECT_EQ(game.BoundsOf(kTestRed),
              (SDL_Rect{1280 - 10 - 2 * half.x, 10, rose->width, rose->height}));
    const SDL_Rect icon{1280 - 10 - half.x - 4, 10 + half.y - 3, 9, 6};
    EXPECT_EQ(game.BoundsOf(kTestGreen), icon);
    EXPECT_EQ(game.CountOf(kTestGreen), 54) << "icons lie above the rose";

    Hud().compassTexture = nullptr;
    game.Capture([this] { Hud().Render(); });
    EXPECT_EQ(game.DrawnBounds(), icon);
    Hud().islandTexture = nullptr;
    game.Capture([this] { Hud().Render(); });
    EXPECT_EQ(game.DrawnBounds(), SDL_Rect{});
}
