#include "entities/PlayerEntity.h"

#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/TerrainCellEntity.h"
#include "gen/DungeonRecord.h"
#include "gfx/GFX_GraphicsManager.h"
#include "input/CMN_InputManager.h"
#include "support/GameHarness.h"
#include "support/PaintedFrame.h"
#include "support/SolidTexture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr int kUp = 0;
constexpr int kDown = 1;
constexpr int kLeft = 2;
constexpr int kRight = 3;

constexpr Vec2i kStart{6156, 6156}; // open water
constexpr Vec2i kLandCell{6, 3};    // its tiles are known once it is loaded
constexpr SDL_Color kWhite{255, 255, 255, 255};

GameOptions StartAt(Vec2i start) {
    GameOptions options;
    options.start = start;
    return options;
}

void SetInput(float horizontal, float vertical) {
    CMN_InputManager& input = *CMN_InputManager::GetInstance();
    input.actions[Index(InputAction::MoveHorizontal)] = horizontal;
    input.actions[Index(InputAction::MoveVertical)] = vertical;
}

// A game in which a land cell is loaded, with its tiles.
class IslandTest : public testing::Test {
protected:
    IslandTest() : game(StartAt(CellOrigin(kLandCell) + Vec2i{12, 12})) {
        game.TickOnly();
        game.Settle();
        const TerrainCellEntity* cell = game.World().cellGrid.FindLoaded(kLandCell);
        dungeon = cell == nullptr ? nullptr : cell->GetView().dungeon;
    }

    void SetUp() override { ASSERT_NE(dungeon, nullptr) << "the cell is no land"; }

    PlayerEntity& Player() const { return *game.World().player; }
    AnchoredBoatEntity& Boat() const { return *game.World().anchoredBoat; }

    // The world position of a tile's centre.
    static Vec2i Center(Vec2i tile) {
        return CellOrigin(kLandCell) + tile * kTileSize + Vec2i{12, 12};
    }

    std::uint8_t Tile(Vec2i tile) const { return dungeon->TileAt(tile.x, tile.y); }

    // The first tile, row by row, for which the condition holds.
    std::optional<Vec2i> FindTile(const std::function<bool(Vec2i)>& fits) const {
        for (std::int32_t y = 1; y < kCellTiles - 1; ++y) {
            for (std::int32_t x = 1; x < kCellTiles - 1; ++x) {
                if (fits({x, y})) {
                    return Vec2i{x, y};
                }
            }
        }
        return {};
    }

    // A land tile with water to its left and above, and land to its right.
    std::optional<Vec2i> FindShore() const {
        return FindTile([this](Vec2i t) {
            return Tile(t) != 0 && Tile(t + Vec2i{-1, 0}) == 0 && Tile(t + Vec2i{0, 1}) == 0 &&
                   Tile(t + Vec2i{1, 0}) != 0;
        });
    }

    // Sails from the water on the left onto a shore tile and walks until it is reached.
    void Land(Vec2i shore) {
        Player().PlaceAt(Center(shore + Vec2i{-1, 0}));
        SetInput(1.0f, 0.0f);
        game.TickOnly();
        SetInput(0.0f, 0.0f);
        game.TickOnly(12);
        ASSERT_EQ(Player().position, Center(shore));
        ASSERT_EQ(Player().mode, PlayerEntity::kOnFoot);
    }

    GameHarness game;
    const DungeonRecord* dungeon = nullptr;
};

} // namespace

TEST(PlayerEntityTest, SailsATileInTwoTicksInEachDirection) {
    struct Case {
        SDL_Keycode key;
        int direction;
        Vec2i afterOneTick;
        Vec2i step;
    };
    const std::vector<Case> cases{{SDLK_d, kRight, {6175, 6156}, {24, 0}},
                                  {SDLK_a, kLeft, {6136, 6156}, {-24, 0}},
                                  {SDLK_w, kUp, {6156, 6175}, {0, 24}},
                                  {SDLK_s, kDown, {6156, 6136}, {0, -24}}};
    for (const Case& c : cases) {
        GameHarness game(StartAt(kStart));
        const PlayerEntity& player = *game.World().player;
        game.KeyDown(c.key);
        game.TickOnly();
        EXPECT_EQ(player.direction, c.direction);
        EXPECT_EQ(player.position, c.afterOneTick);
        EXPECT_FALSE(player.idle);
        EXPECT_EQ(player.targetTile, kStart + c.step);
        game.TickOnly();
        EXPECT_EQ(player.position, kStart + c.step);
        EXPECT_EQ(player.exactPosition, ToVec2f(kStart + c.step));
        EXPECT_TRUE(player.idle);
        // Held on, every arrival starts the next move in the following tick.
        game.TickOnly(9);
        EXPECT_EQ(player.position, kStart + c.step * 5 + (c.afterOneTick - kStart));
        // Released under way, the move is still finished.
        game.KeyUp(c.key);
        game.TickOnly(5);
        EXPECT_EQ(player.position, kStart + c.step * 6);
        EXPECT_EQ(player.direction, c.direction);
    }
}

TEST(PlayerEntityTest, AMoveCoversExactly19Point2UnitsATick) {
    GameHarness game(StartAt(kStart));
    game.KeyDown(SDLK_d);
    game.TickOnly();
    EXPECT_EQ(game.World().player->exactPosition, (Vec2f{6156.0f + 19.2f, 6156.0f}));
}

TEST(PlayerEntityTest, TakesOneDirectionAndOnlyBeyondTheThreshold) {
    constexpr float threshold = 0.8f;
    const float beyond = std::nextafter(threshold, 1.0f);
    struct Case {
        float horizontal;
        float vertical;
        int direction; // -1: stays
    };
    const std::vector<Case> cases{{threshold, -threshold, -1}, {-threshold, threshold, -1},
                                  {beyond, 0.0f, kRight},      {-beyond, 0.0f, kLeft},
                                  {0.0f, beyond, kUp},         {0.0f, -beyond, kDown},
                                  {1.0f, 1.0f, kRight},        {-1.0f, -1.0f, kLeft},
                                  {threshold, 1.0f, kUp},      {0.79f, -0.79f, -1}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.horizontal << " " << c.vertical);
        GameHarness game(StartAt(kStart));
        PlayerEntity& player = *game.World().player;
        player.direction = 77; // to see whether it is touched
        SetInput(c.horizontal, c.vertical);
        game.TickOnly(2);
        const std::vector<Vec2i> steps{{0, 24}, {0, -24}, {-24, 0}, {24, 0}};
        const bool moves = c.direction >= 0;
        EXPECT_EQ(player.direction, moves ? c.direction : 77);
        EXPECT_EQ(player.position,
                  moves ? kStart + steps[static_cast<std::size_t>(c.direction)] : kStart);
        player.direction = 0;
    }
}

TEST(PlayerEntityTest, StrandsOnTheFirstNegativeTile) {
    struct Case {
        SDL_Keycode key;
        Vec2i underWay;
        Vec2i stranded;
    };
    for (const Case& c : {Case{SDLK_a, {-7, 12}, {-12, 12}}, {SDLK_s, {12, -7}, {12, -12}}}) {
        GameHarness game(StartAt({12, 12}));
        const PlayerEntity& player = *game.World().player;
        game.KeyDown(c.key);
        game.TickOnly();
        EXPECT_EQ(player.position, c.underWay); // 12 - 19.2, truncated
        game.TickOnly();
        EXPECT_EQ(player.position, c.stranded);
        const int direction = player.direction;
        for (const SDL_Keycode key : {SDLK_a, SDLK_d, SDLK_w, SDLK_s}) {
            game.KeyDown(key);
            game.TickOnly(4);
            game.KeyUp(key);
            EXPECT_EQ(player.position, c.stranded) << "no negative position is a tile's centre";
            EXPECT_EQ(player.direction, direction);
        }
    }
}

TEST(PlayerEntityTest, IsPlacedOnATileByTheSignedRemainder) {
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    struct Case {
        Vec2i place;
        Vec2i expected;
    };
    const std::vector<Case> cases{
        {{100, -30}, {108, -12}}, {{-5, 50}, {12, 60}},
        {{0, 23}, {12, 12}},      {{24, 47}, {36, 36}},
        {{-24, -25}, {-12, -12}}, {{lowest, highest - 10}, {lowest + 20, highest - 19}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.place.x << " " << c.place.y);
        const GameHarness game(StartAt(c.place)); // the world places it at the start
        PlayerEntity& player = *game.World().player;
        EXPECT_EQ(player.position, c.expected);
        EXPECT_EQ(player.exactPosition, ToVec2f(c.expected));
        player.PlaceAt(kStart);
        player.PlaceAt(c.place);
        EXPECT_EQ(player.position, c.expected);
    }
}

TEST(PlayerEntityTest, PlacingEndsAMoveAndKeepsTheRest) {
    GameHarness game(StartAt(kStart));
    PlayerEntity& player = *game.World().player;
    game.KeyDown(SDLK_w);
    game.TickOnly();
    game.KeyUp(SDLK_w);
    ASSERT_FALSE(player.idle);
    player.PlaceAt({100, 200});
    EXPECT_EQ(player.direction, kUp);
    EXPECT_EQ(player.mode, PlayerEntity::kSailing);
    EXPECT_EQ(player.speed, 1200.0f);
    game.TickOnly(10);
    EXPECT_EQ(player.position, (Vec2i{108, 204}));
    // A held key goes on from the new place.
    game.KeyDown(SDLK_w);
    game.TickOnly();
    player.PlaceAt({100, 200});
    game.TickOnly(2);
    EXPECT_EQ(player.position, (Vec2i{108, 228}));
}

TEST_F(IslandTest, LeavesTheShipAtTheShoreAndWalksATileInThirteenTicks) {
    const std::optional<Vec2i> shore = FindShore();
    ASSERT_TRUE(shore);
    const Vec2i water = Center(*shore + Vec2i{-1, 0});
    const Vec2i land = Center(*shore);
    Player().PlaceAt(water);
    EXPECT_EQ(Player().tileType, 0);
    EXPECT_FALSE(Boat().active);
    SetInput(1.0f, 0.0f);
    game.TickOnly();
    EXPECT_EQ(Player().mode, PlayerEntity::kOnFoot);
    EXPECT_EQ(Player().speed, 120.0f);
    EXPECT_EQ(Player().tileType, Tile(*shore));
    EXPECT_TRUE(Boat().active);
    EXPECT_EQ(Boat().position, water);
    EXPECT_EQ(Boat().direction, kRight);
    EXPECT_EQ(Player().position, (Vec2i{water.x + 1, water.y})); // 1.92
    SetInput(0.0f, 0.0f);
    game.TickOnly(11);
    EXPECT_EQ(Player().position, (Vec2i{water.x + 23, water.y})); // 23.04
    EXPECT_FALSE(Player().idle);
    game.TickOnly();
    EXPECT_EQ(Player().position, land);
    EXPECT_TRUE(Player().idle);
    SetInput(1.0f, 0.0f);
    game.TickOnly(13);
    EXPECT_EQ(Player().position, (Vec2i{land.x + 24, land.y}));
    EXPECT_EQ(Boat().position, water) << "the boat stays";
}

TEST_F(IslandTest, OnlyTheBoatsTileLeadsBackToTheWater) {
    const std::optional<Vec2i> shore = FindShore();
    ASSERT_TRUE(shore);
    Land(*shore);
    SetInput(0.0f, 1.0f); // the water above is not the boat's
    for (int tick = 0; tick < 20; ++tick) {
        game.TickOnly();
        ASSERT_EQ(Player().position, Center(*shore));
        ASSERT_TRUE(Player().idle);
    }
    EXPECT_EQ(Player().direction, kUp) << "it has turned";
    EXPECT_EQ(Player().mode, PlayerEntity::kOnFoot);
    EXPECT_EQ(Player().tileType, Tile(*shore));
    EXPECT_TRUE(Boat().active);
    SetInput(-1.0f, 0.0f);
    game.TickOnly();
    EXPECT_EQ(Player().mode, PlayerEntity::kSailing);
    EXPECT_EQ(Player().speed, 1200.0f);
    EXPECT_EQ(Player().tileType, 0);
    EXPECT_FALSE(Boat().active);
    EXPECT_EQ(Player().position, (Vec2i{Center(*shore).x - 20, Center(*shore).y}));
    game.TickOnly();
    EXPECT_EQ(Player().position, Center(*shore + Vec2i{-1, 0}));
}

TEST_F(IslandTest, StepsBetweenRoomAndHallwayOnFoot) {
    const std::optional<Vec2i> shore = FindShore();
    const std::optional<Vec2i> door = FindTile([this](Vec2i t) {
        return Tile(t) == 2 && Tile(t + Vec2i{1, 0}) == 1;
    });
    ASSERT_TRUE(shore && door);
    Land(*shore);
    const Vec2i boat = Boat().position;
    Player().PlaceAt(Center(*door));
    EXPECT_EQ(Player().tileType, 2);
    for (const auto& [input, tile] : {std::pair{1.0f, 1}, std::pair{-1.0f, 2}}) {
        SetInput(input, 0.0f);
        game.TickOnly();
        SetInput(0.0f, 0.0f);
        game.TickOnly(12);
        EXPECT_EQ(Player().tileType, tile);
        EXPECT_EQ(Player().mode, PlayerEntity::kOnFoot);
        EXPECT_EQ(Player().speed, 120.0f);
    }
    EXPECT_EQ(Player().position, Center(*door));
    EXPECT_EQ(Boat().position, boat);
    EXPECT_TRUE(Boat().active);
}

TEST_F(IslandTest, AHeldKeyWalksOnFromTheTruncatedCentre) {
    const std::optional<Vec2i> shore = FindShore();
    const std::optional<Vec2i> end = FindTile([this](Vec2i t) {
        return t.x > 3 && Tile(t) != 0 && Tile(t + Vec2i{-1, 0}) == Tile(t) &&
               Tile(t + Vec2i{-2, 0}) == Tile(t) && Tile(t + Vec2i{-3, 0}) == Tile(t);
    });
    ASSERT_TRUE(shore && end);
    Land(*shore);
    const Vec2i right = Center(*end);
    const Vec2i left = right - Vec2i{48, 0};
    Player().PlaceAt(left);
    SetInput(1.0f, 0.0f);
    game.TickOnly(25);
    EXPECT_FALSE(Player().idle);
    game.TickOnly();
    EXPECT_EQ(Player().position, right) << "13 ticks a tile";
    // To the left, 12 ticks leave less than a unit, which truncation takes for the centre: the next
    // move begins a tick early, and its own end is exact again.
    SetInput(-1.0f, 0.0f);
    game.TickOnly(12);
    EXPECT_EQ(Player().position, right - (Vec2i{24, 0}));
    EXPECT_FALSE(Player().idle);
    game.TickOnly(13);
    EXPECT_EQ(Player().position, left);
    EXPECT_EQ(Player().exactPosition, ToVec2f(left));
    EXPECT_TRUE(Player().idle);
}

TEST_F(IslandTest, LooksTilesUpInLoadedCellsOnly) {
    WorldManager& world = game.World();
    const std::optional<Vec2i> room = FindTile([this](Vec2i t) { return Tile(t) == 2; });
    ASSERT_TRUE(room);
    const Vec2i corner = CellOrigin(kLandCell) + *room * kTileSize;
    EXPECT_EQ(world.GetTileAt(corner), 2);
    EXPECT_EQ(world.GetTileAt(corner + Vec2i{23, 23}), 2);
    EXPECT_EQ(world.GetTileAt(corner + Vec2i{3 * kCellSize, 0}), 0) << "not loaded";
    EXPECT_EQ(world.GetTileAt({-1, -1}), 0);
    EXPECT_EQ(world.GetTileAt({std::numeric_limits<std::int32_t>::min(), 5}), 0);
    // A cell that is asked for anew reads as water until it is there.
    game.World().cellGrid.Update({100 * kCellSize, 100 * kCellSize});
    EXPECT_EQ(world.GetTileAt(corner), 0);
}

TEST(PlayerEntityTest, ShowsTheSpriteOfItsModeAndDirection) {
    GameHarness game(StartAt(kStart));
    PlayerEntity& player = *game.World().player;
    const TextureInfo* ships = GFX_GraphicsManager::GetInstance()->GetTexture("ships.png");
    const TextureInfo* figures = GFX_GraphicsManager::GetInstance()->GetTexture("link_raw.png");
    const std::vector<PixelRect> shipSources{
        {0, 96, 32, 32}, {0, 0, 32, 32}, {0, 32, 32, 32}, {0, 64, 32, 32}};
    const std::vector<PixelRect> walkSources{
        {62, 0, 16, 16}, {0, 0, 16, 16}, {30, 0, 16, 16}, {91, 0, 16, 16}};
    const SolidTexture ship(32, 32, kTestPink);
    const SolidTexture figure(16, 16, kTestRed);
    for (int direction = 0; direction < 4; ++direction) {
        const auto d = static_cast<std::size_t>(direction);
        ASSERT_NE(player.shipSprites[d], nullptr);
        ASSERT_NE(player.walkSprites[d], nullptr);
        EXPECT_EQ(player.shipSprites[d]->source, shipSources[d]);
        EXPECT_EQ(player.shipSprites[d]->texture, ships);
        EXPECT_EQ(player.walkSprites[d]->source, walkSources[d]);
        EXPECT_EQ(player.walkSprites[d]->texture, figures);
        const auto shipSprites = player.shipSprites;
        const auto walkSprites = player.walkSprites;
        player.shipSprites[d] = &ship.sprite;
        player.walkSprites[d] = &figure.sprite;
        player.direction = direction;
        for (const float zoom : {1.0f, 0.5f}) {
            game.World().camera->zoom = zoom;
            game.World().camera->position = kStart - Vec2i{20, 10};
            const int size = zoom == 1.0f ? 24 : 12;
            const SDL_Rect expected{zoom == 1.0f ? 328 : 324, zoom == 1.0f ? 218 : 229, size, size};
            player.mode = PlayerEntity::kSailing;
            game.Capture([&] { player.Render(); });
            EXPECT_EQ(game.BoundsOf(kTestPink), expected);
            player.mode = PlayerEntity::kOnFoot;
            game.Capture([&] { player.Render(); });
            EXPECT_EQ(game.BoundsOf(kTestRed), expected);
            EXPECT_EQ(game.CountOf(kTestPink), 0);
        }
        player.shipSprites = shipSprites;
        player.walkSprites = walkSprites;
    }
}

TEST(PlayerEntityTest, TellsWhereItIsEvenWhereNothingIsLoaded) {
    GameHarness game(StartAt({-30000, -2000000}));
    game.TickOnly();
    game.Settle();
    PlayerEntity& player = *game.World().player;
    player.shipSprites.fill(nullptr);
    game.Capture([&] { player.Render(); });
    EXPECT_EQ(game.DrawnBounds(), SDL_Rect{}) << "only when asked";
    PaintedFrame expected(game);
    expected.Text("World Position -29988 -1999980", 300, 0, kWhite);
    expected.Text("Cell Id -169866722 (-2 -162)", 300, 15, kWhite);
    expected.Text("Cluster Id -655350 (0 -10)", 300, 30, kWhite);
    game.World().showPlayerInfo = true;
    game.Capture([&] { player.Render(); });
    EXPECT_EQ(expected.Difference(game), "");
}

TEST_F(IslandTest, TellsTheNeighboursOfItsCellAndLinksThem) {
    WorldManager& world = game.World();
    const std::vector<GridKey> neighbors = world.cellGrid.FindLoaded(kLandCell)->GetNeighbors();
    ASSERT_FALSE(neighbors.empty());
    Player().PlaceAt(CellOrigin(kLandCell));
    Player().shipSprites.fill(nullptr);
    // Without any magnification the links shrink to the window's centre.
    world.camera->zoom = 0.0f;
    game.Capture([] {});
    PaintedFrame expected(game);
    expected.Text("World Position 73740 36876", 300, 0, kWhite);
    expected.Text("Cell Id 3145686 (6 3)", 300, 15, kWhite);
    expected.Text("Cluster Id 0 (0 0)", 300, 30, kWhite);
    expected.Text("Neighbors " + std::to_string(neighbors.size()), 300, 45, kWhite);
    expected.Fill({320, 240, 1, 1}, kWhite);
    world.showPlayerInfo = true;
    game.Capture([&] { Player().Render(); });
    EXPECT_EQ(expected.Difference(game), "");

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
            found += SameColor(game.Pixel(at.x, at.y), kWhite) ? 1 : 0;
        }
        EXPECT_GT(found, 0) << neighbor.x << " " << neighbor.y;
    }
}
