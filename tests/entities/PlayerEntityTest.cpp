#include "entities/PlayerEntity.h"

#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/TerrainCellEntity.h"
#include "gen/DungeonRecord.h"
#include "input/CMN_InputManager.h"
#include "support/GameHarness.h"
#include "support/PaintedFrame.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr int kUp = 0;
constexpr int kDown = 1;
constexpr int kLeft = 2;
constexpr int kRight = 3;

constexpr std::array<Vec2i, 4> kSteps{{{0, 24}, {0, -24}, {-24, 0}, {24, 0}}}; // by direction

constexpr Vec2i kStart{6156, 6156}; // open water
constexpr Vec2i kLandCell{6, 3};    // its tiles are known once it is loaded

void SetInput(float horizontal, float vertical) {
    CMN_InputManager& input = *CMN_InputManager::GetInstance();
    input.actions[Index(InputAction::MoveHorizontal)] = horizontal;
    input.actions[Index(InputAction::MoveVertical)] = vertical;
}

class PlayerEntityTest : public testing::Test {
protected:
    PlayerEntity& Player() const { return *game.World().player; }

    // Expects the player to show these lines of information and, but for the one pixel at the
    // window's centre, nothing else.
    void ExpectInformation(const std::vector<std::string>& lines, SDL_Color atCenter) {
        constexpr SDL_Color white{255, 255, 255, 255};
        game.Capture([] {});
        PaintedFrame expected(game);
        for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
            expected.Text(lines[static_cast<std::size_t>(i)], 300, 15 * i, white);
        }
        expected.Fill({320, 240, 1, 1}, atCenter);
        game.Capture([&] { Player().Render(); });
        EXPECT_EQ(expected.Difference(game), "");
    }

    GameHarness game{{.start = kStart}};
};

// A game in which a land cell is loaded, with a shore: a land tile that has water to its left and
// above and two land tiles to its right.
class IslandTest : public PlayerEntityTest {
protected:
    void SetUp() override {
        Player().PlaceAt(CellOrigin(kLandCell));
        game.TickOnly();
        game.Settle();
        const TerrainCellEntity* cell = game.World().cellGrid.FindLoaded(kLandCell);
        ASSERT_NE(cell, nullptr);
        dungeon = cell->GetView().dungeon;
        ASSERT_NE(dungeon, nullptr) << "the cell is no land";
        while (!IsShore(shore)) {
            shore = shore.x < kCellTiles - 3 ? shore + Vec2i{1, 0} : Vec2i{1, shore.y + 1};
            ASSERT_LT(shore.y, kCellTiles - 1) << "the cell has no shore";
        }
    }

    bool IsShore(Vec2i t) const {
        const auto isLand = [&](Vec2i tile) { return dungeon->TileAt(tile.x, tile.y) != 0; };
        return isLand(t) && isLand(t + Vec2i{1, 0}) && isLand(t + Vec2i{2, 0}) &&
               !isLand(t - Vec2i{1, 0}) && !isLand(t + Vec2i{0, 1});
    }

    AnchoredBoatEntity& Boat() const { return *game.World().anchoredBoat; }

    // The world position of the centre of a tile of the shore's row.
    Vec2i FromShore(std::int32_t tilesToTheRight) const {
        return CellOrigin(kLandCell) + (shore + Vec2i{tilesToTheRight, 0}) * kTileSize +
               Vec2i{12, 12};
    }

    const DungeonRecord* dungeon = nullptr;
    Vec2i shore{1, 1};
};

} // namespace

TEST_F(PlayerEntityTest, SailsATileInTwoTicksInEachDirection) {
    struct Case {
        SDL_Keycode key;
        int direction;
        Vec2i afterOneTick; // 19.2 units, truncated
    };
    for (const Case& c : {Case{SDLK_d, kRight, {6175, 6156}},
                          {SDLK_a, kLeft, {6136, 6156}},
                          {SDLK_w, kUp, {6156, 6175}},
                          {SDLK_s, kDown, {6156, 6136}}}) {
        const Vec2i step = kSteps[static_cast<std::size_t>(c.direction)];
        Player().PlaceAt(kStart);
        game.KeyDown(c.key);
        game.TickOnly();
        EXPECT_EQ(Player().direction, c.direction);
        EXPECT_EQ(Player().position, c.afterOneTick);
        EXPECT_EQ(Player().exactPosition, ToVec2f(kStart) + ToVec2f(step) * 0.8f);
        EXPECT_FALSE(Player().idle);
        EXPECT_EQ(Player().targetTile, kStart + step);
        game.TickOnly();
        EXPECT_EQ(Player().position, kStart + step);
        EXPECT_EQ(Player().exactPosition, ToVec2f(kStart + step));
        EXPECT_TRUE(Player().idle);
        // Held on, every arrival starts the next move in the following tick.
        game.TickOnly(9);
        EXPECT_EQ(Player().position, step * 5 + c.afterOneTick);
        // Released under way, the move is still finished.
        game.KeyUp(c.key);
        game.TickOnly(5);
        EXPECT_EQ(Player().position, kStart + step * 6);
    }
}

TEST_F(PlayerEntityTest, HeedsNoOtherKeyInTheMiddleOfAMove) {
    for (const auto& [key, direction] :
         {std::pair{SDLK_w, kUp}, std::pair{SDLK_s, kDown}, std::pair{SDLK_a, kLeft}}) {
        Player().PlaceAt(kStart);
        game.KeyDown(SDLK_d);
        game.TickOnly();
        game.KeyUp(SDLK_d);
        game.KeyDown(key);
        game.TickOnly();
        EXPECT_EQ(Player().position, (kStart + Vec2i{24, 0}));
        EXPECT_EQ(Player().direction, kRight);
        game.TickOnly(2);
        EXPECT_EQ(Player().direction, direction) << "it is heeded where the move ends";
        EXPECT_EQ(Player().position,
                  (kStart + Vec2i{24, 0} + kSteps[static_cast<std::size_t>(direction)]));
        game.KeyUp(key);
        game.TickOnly(2);
    }
}

TEST_F(PlayerEntityTest, TakesOneDirectionAndOnlyBeyondTheThreshold) {
    constexpr float threshold = 0.8f;
    const float beyond = std::nextafter(threshold, 1.0f);
    struct Case {
        float horizontal;
        float vertical;
        int direction; // kDown, with no step, for none
        Vec2i step;
    };
    for (const Case& c : {Case{threshold, threshold, kDown, {}},
                          {-threshold, -threshold, kDown, {}},
                          {beyond, beyond, kRight, {24, 0}},
                          {-beyond, -beyond, kLeft, {-24, 0}},
                          {threshold, beyond, kUp, {0, 24}},
                          {-threshold, -beyond, kDown, {0, -24}}}) {
        SCOPED_TRACE(testing::Message() << c.horizontal << " " << c.vertical);
        Player().PlaceAt(kStart);
        Player().direction = kDown;
        SetInput(c.horizontal, c.vertical);
        game.TickOnly(2);
        EXPECT_EQ(Player().direction, c.direction);
        EXPECT_EQ(Player().position, kStart + c.step);
    }
}

TEST_F(PlayerEntityTest, StrandsOnTheFirstNegativeTile) {
    struct Case {
        SDL_Keycode key;
        Vec2i underWay; // 12 - 19.2, truncated
        Vec2i stranded;
    };
    for (const Case& c : {Case{SDLK_a, {-7, 12}, {-12, 12}}, {SDLK_s, {12, -7}, {12, -12}}}) {
        Player().PlaceAt({12, 12});
        game.KeyDown(c.key);
        game.TickOnly();
        EXPECT_EQ(Player().position, c.underWay);
        game.TickOnly();
        const int direction = Player().direction;
        for (const SDL_Keycode key : {SDLK_a, SDLK_d, SDLK_w, SDLK_s}) {
            game.KeyDown(key);
            game.TickOnly(4);
            game.KeyUp(key);
            EXPECT_EQ(Player().position, c.stranded) << "no negative position is a tile's centre";
            EXPECT_EQ(Player().direction, direction);
        }
    }
}

TEST_F(PlayerEntityTest, IsPlacedOnATileByTheSignedRemainder) {
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    struct Case {
        Vec2i place;
        Vec2i expected;
    };
    for (const Case& c : {Case{{100, -30}, {108, -12}},
                          {{-5, 50}, {12, 60}},
                          {{24, 47}, {36, 36}},
                          {{-24, -25}, {-12, -12}},
                          {{lowest, highest - 10}, {lowest + 20, highest - 19}}}) {
        SCOPED_TRACE(testing::Message() << c.place.x << " " << c.place.y);
        Player().PlaceAt(c.place);
        EXPECT_EQ(Player().position, c.expected);
        EXPECT_EQ(Player().exactPosition, ToVec2f(c.expected));
    }
}

TEST_F(PlayerEntityTest, PlacingEndsAMoveAndKeepsTheRest) {
    game.KeyDown(SDLK_w);
    game.TickOnly();
    game.KeyUp(SDLK_w);
    ASSERT_FALSE(Player().idle);
    Player().PlaceAt({100, 200});
    EXPECT_EQ(Player().direction, kUp);
    EXPECT_EQ(Player().mode, PlayerEntity::kSailing);
    EXPECT_EQ(Player().speed, 1200.0f);
    game.TickOnly(10);
    EXPECT_EQ(Player().position, (Vec2i{108, 204}));
    // A held key goes on from the new place.
    game.KeyDown(SDLK_w);
    game.TickOnly();
    Player().PlaceAt({100, 200});
    game.TickOnly(2);
    EXPECT_EQ(Player().position, (Vec2i{108, 228}));
}

TEST_F(IslandTest, LeavesTheShipAtTheShoreAndReturnsOnlyToItsTile) {
    Player().PlaceAt(FromShore(-1));
    EXPECT_EQ(Player().tileType, 0);
    EXPECT_FALSE(Boat().active);
    SetInput(1.0f, 0.0f);
    game.TickOnly();
    EXPECT_EQ(Player().mode, PlayerEntity::kOnFoot);
    EXPECT_EQ(Player().speed, 120.0f);
    EXPECT_EQ(Player().tileType, dungeon->TileAt(shore.x, shore.y));
    EXPECT_TRUE(Boat().active);
    EXPECT_EQ(Boat().position, FromShore(-1));
    EXPECT_EQ(Boat().direction, kRight);
    SetInput(0.0f, 1.0f); // the water above is not the boat's
    game.TickOnly(11);
    EXPECT_EQ(Player().position, (FromShore(-1) + Vec2i{23, 0})); // 12 * 1.92
    for (int tick = 0; tick < 20; ++tick) {
        game.TickOnly();
        ASSERT_EQ(Player().position, FromShore(0));
        ASSERT_TRUE(Player().idle);
    }
    EXPECT_EQ(Player().direction, kUp) << "it has turned";
    EXPECT_EQ(Player().mode, PlayerEntity::kOnFoot);
    EXPECT_TRUE(Boat().active);
    SetInput(-1.0f, 0.0f);
    game.TickOnly();
    EXPECT_EQ(Player().mode, PlayerEntity::kSailing);
    EXPECT_EQ(Player().speed, 1200.0f);
    EXPECT_EQ(Player().tileType, 0);
    EXPECT_FALSE(Boat().active);
    game.TickOnly();
    EXPECT_EQ(Player().position, FromShore(-1));
}

TEST_F(IslandTest, AHeldKeyWalksOnFromTheTruncatedCentre) {
    Player().PlaceAt(FromShore(-1));
    SetInput(1.0f, 0.0f);
    game.TickOnly(38);
    EXPECT_FALSE(Player().idle);
    game.TickOnly();
    EXPECT_EQ(Player().position, FromShore(2)) << "13 ticks a tile";
    // Twelve ticks to the left leave less than a unit, which truncation takes for the centre: the
    // next move begins a tick early, and its own end is exact again.
    SetInput(-1.0f, 0.0f);
    game.TickOnly(12);
    EXPECT_EQ(Player().position, FromShore(1));
    EXPECT_FALSE(Player().idle);
    game.TickOnly(13);
    EXPECT_EQ(Player().exactPosition, ToVec2f(FromShore(0)));
    EXPECT_TRUE(Player().idle);
    EXPECT_EQ(Boat().position, FromShore(-1)) << "the boat stays";
}

TEST_F(PlayerEntityTest, TellsWhereItIsEvenWhereNothingIsLoaded) {
    Player().PlaceAt({-30000, -2000000});
    game.TickOnly();
    game.Settle();
    Player().shipSprites.fill(nullptr);
    ExpectInformation({}, {0, 0, 0, 255}); // only when asked
    game.World().showPlayerInfo = true;
    ExpectInformation({"World Position -29988 -1999980", "Cell Id -169866722 (-2 -162)",
                       "Cluster Id -655350 (0 -10)"},
                      {0, 0, 0, 255});
}

TEST_F(IslandTest, TellsTheNeighboursOfItsCellAndLinksThem) {
    WorldManager& world = game.World();
    const std::vector<GridKey> neighbors = world.cellGrid.FindLoaded(kLandCell)->GetNeighbors();
    ASSERT_FALSE(neighbors.empty());
    Player().PlaceAt(CellOrigin(kLandCell));
    Player().shipSprites.fill(nullptr);
    world.showPlayerInfo = true;
    world.camera->zoom = 0.0f; // the links shrink to a point
    ExpectInformation({"World Position 73740 36876", "Cell Id 3145686 (6 3)", "Cluster Id 0 (0 0)",
                       "Neighbors " + std::to_string(neighbors.size())},
                      {255, 255, 255, 255});

    constexpr Vec2i half{kCellSize / 2, kCellSize / 2};
    world.camera->position = CellOrigin(kLandCell) + half;
    world.camera->zoom = 0.01f;
    game.Capture([&] { Player().Render(); });
    for (const GridKey& neighbor : neighbors) {
        // A point of the link a hundred pixels from the window's centre.
        const Vec2f way = ToVec2f(Vec2i{neighbor.x, neighbor.y} - kLandCell);
        const Vec2i along = ToVec2i(way * (100.0f / std::hypot(way.x, way.y)));
        int found = 0;
        for (int i = 0; i < 9; ++i) {
            const Vec2i at{320 + along.x + i % 3 - 1, 240 - along.y + i / 3 - 1};
            found += SameColor(game.Pixel(at.x, at.y), {255, 255, 255, 255}) ? 1 : 0;
        }
        EXPECT_GT(found, 0) << neighbor.x << " " << neighbor.y;
    }
}
