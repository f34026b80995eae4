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
#include <functional>
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
    explicit PlayerEntityTest(Vec2i start = kStart) : game({.start = start}) {}

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

    GameHarness game;
};

// A game in which a land cell is loaded. A shore is a land tile with water to its left and above,
// and land to its right.
class IslandTest : public PlayerEntityTest {
protected:
    IslandTest() : PlayerEntityTest(CellOrigin(kLandCell) + Vec2i{12, 12}) {
        game.TickOnly();
        game.Settle();
    }

    void SetUp() override {
        const TerrainCellEntity* cell = game.World().cellGrid.FindLoaded(kLandCell);
        ASSERT_NE(cell, nullptr);
        dungeon = cell->GetView().dungeon;
        ASSERT_NE(dungeon, nullptr) << "the cell is no land";
        shore = FindTile([this](Vec2i t) {
            return Tile(t) != 0 && Tile(t + Vec2i{-1, 0}) == 0 && Tile(t + Vec2i{0, 1}) == 0 &&
                   Tile(t + Vec2i{1, 0}) != 0;
        });
    }

    AnchoredBoatEntity& Boat() const { return *game.World().anchoredBoat; }

    // The world position of a tile's centre.
    static Vec2i Center(Vec2i tile) {
        return CellOrigin(kLandCell) + tile * kTileSize + Vec2i{12, 12};
    }

    std::uint8_t Tile(Vec2i tile) const { return dungeon->TileAt(tile.x, tile.y); }

    // The first tile, row by row, for which the condition holds.
    static Vec2i FindTile(const std::function<bool(Vec2i)>& fits) {
        for (std::int32_t y = 1; y < kCellTiles - 1; ++y) {
            for (std::int32_t x = 3; x < kCellTiles - 1; ++x) {
                if (fits({x, y})) {
                    return {x, y};
                }
            }
        }
        ADD_FAILURE() << "the cell has no such tile";
        return {};
    }

    // Sails from the water on the left onto the shore and walks until it is reached.
    void Land() {
        Player().PlaceAt(Center(shore + Vec2i{-1, 0}));
        SetInput(1.0f, 0.0f);
        game.TickOnly();
        SetInput(0.0f, 0.0f);
        game.TickOnly(12);
        ASSERT_EQ(Player().position, Center(shore));
        ASSERT_EQ(Player().mode, PlayerEntity::kOnFoot);
    }

    const DungeonRecord* dungeon = nullptr;
    Vec2i shore;
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
        int direction; // -1: stays
    };
    for (const Case& c : {Case{threshold, -threshold, -1},
                          {-threshold, threshold, -1},
                          {beyond, 0.0f, kRight},
                          {-beyond, 0.0f, kLeft},
                          {0.0f, beyond, kUp},
                          {0.0f, -beyond, kDown},
                          {1.0f, 1.0f, kRight},
                          {-1.0f, -1.0f, kLeft},
                          {threshold, 1.0f, kUp}}) {
        SCOPED_TRACE(testing::Message() << c.horizontal << " " << c.vertical);
        Player().PlaceAt(kStart);
        Player().direction = 77; // to see whether it is touched
        SetInput(c.horizontal, c.vertical);
        game.TickOnly(2);
        if (c.direction < 0) {
            EXPECT_EQ(Player().direction, 77);
            EXPECT_EQ(Player().position, kStart);
        } else {
            EXPECT_EQ(Player().direction, c.direction);
            EXPECT_EQ(Player().position, kStart + kSteps[static_cast<std::size_t>(c.direction)]);
        }
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

TEST_F(IslandTest, LeavesTheShipAtTheShoreAndWalksATileInThirteenTicks) {
    const Vec2i water = Center(shore + Vec2i{-1, 0});
    Player().PlaceAt(water);
    EXPECT_EQ(Player().tileType, 0);
    EXPECT_FALSE(Boat().active);
    SetInput(1.0f, 0.0f);
    game.TickOnly();
    EXPECT_EQ(Player().mode, PlayerEntity::kOnFoot);
    EXPECT_EQ(Player().speed, 120.0f);
    EXPECT_EQ(Player().tileType, Tile(shore));
    EXPECT_TRUE(Boat().active);
    EXPECT_EQ(Boat().position, water);
    EXPECT_EQ(Boat().direction, kRight);
    EXPECT_EQ(Player().position, (water + Vec2i{1, 0})); // 1.92
    game.TickOnly(11);
    EXPECT_EQ(Player().position, (water + Vec2i{23, 0})); // 23.04
    game.TickOnly(14);
    EXPECT_EQ(Player().position, Center(shore + Vec2i{1, 0}));
    EXPECT_TRUE(Player().idle);
    EXPECT_EQ(Boat().position, water) << "the boat stays";
}

TEST_F(IslandTest, OnlyTheBoatsTileLeadsBackToTheWater) {
    Land();
    SetInput(0.0f, 1.0f); // the water above is not the boat's
    for (int tick = 0; tick < 20; ++tick) {
        game.TickOnly();
        ASSERT_EQ(Player().position, Center(shore));
        ASSERT_TRUE(Player().idle);
    }
    EXPECT_EQ(Player().direction, kUp) << "it has turned";
    EXPECT_EQ(Player().mode, PlayerEntity::kOnFoot);
    EXPECT_EQ(Player().tileType, Tile(shore));
    EXPECT_TRUE(Boat().active);
    SetInput(-1.0f, 0.0f);
    game.TickOnly();
    EXPECT_EQ(Player().mode, PlayerEntity::kSailing);
    EXPECT_EQ(Player().speed, 1200.0f);
    EXPECT_EQ(Player().tileType, 0);
    EXPECT_FALSE(Boat().active);
    game.TickOnly();
    EXPECT_EQ(Player().position, Center(shore + Vec2i{-1, 0}));
}

TEST_F(IslandTest, AHeldKeyWalksOnFromTheTruncatedCentre) {
    Land();
    const Vec2i right = Center(FindTile([this](Vec2i t) {
        return Tile(t) != 0 && Tile(t + Vec2i{-1, 0}) == Tile(t) &&
               Tile(t + Vec2i{-2, 0}) == Tile(t) && Tile(t + Vec2i{-3, 0}) == Tile(t);
    }));
    // Twelve ticks to the left leave less than a unit, which truncation takes for the centre: the
    // next move begins a tick early, and its own end is exact again.
    Player().PlaceAt(right);
    SetInput(-1.0f, 0.0f);
    game.TickOnly(12);
    EXPECT_EQ(Player().position, right - (Vec2i{24, 0}));
    EXPECT_FALSE(Player().idle);
    game.TickOnly(13);
    EXPECT_EQ(Player().exactPosition, ToVec2f(right - Vec2i{48, 0}));
    EXPECT_TRUE(Player().idle);
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
