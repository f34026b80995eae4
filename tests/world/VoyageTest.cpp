// A whole voyage under the player's keys: sail, land, walk a corridor, be refused by water, board,
// and sail into another cluster.
#include "entities/AnchoredBoatEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "support/GameHarness.h"
#include "support/QuietStderr.h"
#include "support/WorldInvariants.h"
#include "world/ASM_AssetManager.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

constexpr Vec2i kLand{6, 3};
// Open water with a main room seven tiles to the east; a corridor leaves that room to the west,
// rows below, and water lies above the corridor.
constexpr Vec2i kStartTile{334, 86};

Vec2i TileAt(Vec2i cell, Vec2i tile) {
    return CellOrigin(cell) + tile * kTileSize + Vec2i{12, 12};
}

class VoyageTest : public testing::Test {
protected:
    PlayerEntity& Player() { return *game.World().player; }
    AnchoredBoatEntity& Boat() { return *game.World().anchoredBoat; }

    /// Holds a key until the condition is met and the player stands still.
    void Hold(SDL_Keycode key, const std::function<bool()>& done) {
        game.KeyDown(key);
        for (int tick = 0; tick < 5000 && !done(); ++tick) {
            game.TickOnly();
        }
        ASSERT_TRUE(done());
        game.KeyUp(key);
        game.TickOnly(14); // the longest move under way
        ASSERT_TRUE(Player().idle);
    }

    /// Taps a key long enough for one move to begin.
    void Step(SDL_Keycode key) {
        game.KeyDown(key);
        game.TickOnly();
        game.KeyUp(key);
        game.TickOnly(14);
    }

    std::uint8_t TileToward(Vec2i step) {
        return game.World().GetTileAt(Player().position + step * kTileSize);
    }

    const QuietStderr quiet;
    GameHarness game{GameOptions{.start = TileAt(kLand, kStartTile)}};
};

} // namespace

TEST_F(VoyageTest, LandsWalksACorridorIsRefusedByWaterAndBoardsAgain) {
    game.TickOnly();
    game.Settle();
    SlotModel model;
    model.MoveTo(kLand);
    CheckWorldAtRest(model);
    const std::size_t spawned = game.World().layers[kSpawnedLayer].size();
    EXPECT_GT(spawned, 100U);
    EXPECT_EQ(Player().mode, PlayerEntity::kSailing);

    Hold(SDLK_d, [&] { return Player().mode == PlayerEntity::kOnFoot; });
    EXPECT_EQ(Player().position, TileAt(kLand, kStartTile + Vec2i{7, 0}));
    EXPECT_EQ(Player().tileType, kTileRoom);
    EXPECT_EQ(Player().speed, 120.0f);
    EXPECT_TRUE(Boat().active);
    EXPECT_EQ(Boat().position, TileAt(kLand, kStartTile + Vec2i{6, 0}));
    EXPECT_EQ(Boat().direction, 3);

    // Along the shore and back into the water: only the boat's tile lets the player in.
    Step(SDLK_w);
    const Vec2i shore = Player().position;
    EXPECT_EQ(shore, TileAt(kLand, kStartTile + Vec2i{7, 1}));
    ASSERT_EQ(TileToward({-1, 0}), kTileEmpty);
    Step(SDLK_a);
    EXPECT_EQ(Player().position, shore);
    EXPECT_EQ(Player().direction, 2);
    EXPECT_EQ(Player().mode, PlayerEntity::kOnFoot);

    // Down to the corridor, west along it, and no way off it.
    Hold(SDLK_s, [&] { return TileToward({-1, 0}) == kTileHallway; });
    Hold(SDLK_a, [&] { return Player().tileType == kTileHallway; });
    Step(SDLK_a);
    const Vec2i corridor = Player().position;
    ASSERT_EQ(TileToward({0, 1}), kTileEmpty);
    Step(SDLK_w);
    EXPECT_EQ(Player().position, corridor);
    EXPECT_EQ(Player().tileType, kTileHallway);
    EXPECT_EQ(Player().mode, PlayerEntity::kOnFoot);

    // Back to the boat.
    Hold(SDLK_d, [&] { return Player().tileType == kTileRoom; });
    Hold(SDLK_w, [&] { return Player().targetTile.y == Boat().position.y; });
    while (Player().position.x > Boat().position.x + kTileSize) {
        Step(SDLK_a);
    }
    Step(SDLK_a);
    EXPECT_EQ(Player().position, Boat().position);
    EXPECT_EQ(Player().mode, PlayerEntity::kSailing);
    EXPECT_EQ(Player().tileType, kTileEmpty);
    EXPECT_EQ(Player().speed, 1200.0f);
    EXPECT_FALSE(Boat().active);
    EXPECT_EQ(game.World().layers[kSpawnedLayer].size(), spawned);
}

TEST(SailingTest, SailsAcrossCellsIntoAnotherClusterWithoutAStallOrALeak) {
    const QuietStderr quiet;
    // Two cells from the border of the cluster at x = 16, along a row of sea.
    GameHarness game({.start = TileAt({14, 2}, {500, 256}), .hardwareThreads = 3});
    const PlayerEntity& player = *game.World().player;
    SlotModel model;
    game.KeyDown(SDLK_d);
    for (int tick = 0; tick < 5000 && !HasFailure(); ++tick) {
        const bool moved = model.Follow(player.position);
        game.TickOnly();
        if (moved) {
            model.Follow(player.position);
            game.Settle();
            CheckWorldAtRest(model);
        }
    }
    EXPECT_GE(player.position.x, CellOrigin({18, 2}).x);
    EXPECT_EQ(CellKeyAt(player.position).y, 2);
    EXPECT_EQ(player.mode, PlayerEntity::kSailing);
    EXPECT_NE(ASM_AssetManager::GetInstance()->FindCluster(ClusterKey({2, 0}).id), nullptr);
    EXPECT_EQ(ASM_AssetManager::GetInstance()->FindCluster(ClusterKey({-1, 0}).id), nullptr);
}
