// Jumps faster than cells can load, with several workers; to be run under the sanitizers.
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "WorldDigest.h"
#include "gfx/GFX_GraphicsManager.h"
#include "support/Game.h"
#include "support/Guarded.h"
#include "support/WorldModel.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace {

// Between land, sea, negative edges and cluster corners, so that the same cells come and go in
// quick succession, while everything is drawn that reads records.
class Storm {
public:
    Storm(Game& target, unsigned seed) : game(target), random(seed) {}

    void Jump() {
        constexpr std::array<Vec2i, 9> centers{Vec2i{6, 3},   Vec2i{40, 40}, Vec2i{16, 16},
                                               Vec2i{10, 0},  Vec2i{0, 15},  Vec2i{-3, 2},
                                               Vec2i{18, 17}, Vec2i{0, 0},   Vec2i{22, 19}};
        Vec2i cell = centers[Draw(9)];
        cell.x += static_cast<std::int32_t>(Draw(5)) - 2;
        cell.y += static_cast<std::int32_t>(Draw(5)) - 2;
        game.World().player->PlaceAt(CellOrigin(cell) + Vec2i{6144, 6144});
        for (std::size_t tick = Draw(3); tick > 0; --tick) { // with none, a jump that nobody sees
            Tick();
            WatchForStaleCells();
        }
        if (Draw(8) == 0) {
            ShowEverything(Draw(2) == 0);
            game.World().Render();
        }
    }

    void Rest() {
        Tick();
        while (!game.World().cellGrid.WaitForLoads(1)) {
            WatchForStaleCells();
        }
        game.Settle();
        ASSERT_EQ(model.Faults(), "");
    }

private:
    std::size_t Draw(std::size_t count) { return random() % count; }

    void Tick() {
        model.Follow();
        game.Tick();
        for (std::size_t i = 0; i < before.size(); ++i) {
            before[i] = SlotAt(i).coords;
        }
    }

    void ShowEverything(bool far) {
        WorldManager& world = game.World();
        world.renderCellBorder = world.renderDungeonRooms = world.renderMinSpanningTree =
            world.renderHallways = world.showPlayerInfo = world.showLoadedAssets = true;
        world.map->active = world.map->showCompasses = true;
        world.map->zoom = far ? 1.0f : 4.5f;
        world.map->pan = ToVec2f(world.player->position) * world.map->worldToMap;
    }

    // What shows is what was asked for last, and of several requests only the last is carried out.
    // Looks again and again for a while, since what is stale might be there for moments only.
    void WatchForStaleCells() {
        for (std::size_t look = 0; look < 180; ++look) {
            const std::size_t i = look % 9;
            const bool shown = game.World().cellGrid.GetEntity(i)->active;
            const CellSlot slot = SlotAt(i);
            ASSERT_TRUE(!shown || slot.coords == slot.target) << "slot " << i;
            ASSERT_TRUE(slot.coords == before[i] || slot.coords == slot.target)
                << "slot " << i << " shows an overtaken request";
        }
    }

    Game& game;
    std::mt19937 random;
    WorldModel model;
    std::array<Vec2i, 9> before{}; // the cells loaded by the last tick
};

} // namespace

TEST(StormTest, LeavesTheWorldWholeAtRest) {
    for (const std::uint32_t workers : {1U, 2U, 8U}) {
        Game game({.width = 320, .height = 240, .workers = workers});
        Storm storm(game, 7 + workers);
        for (int round = 0; round < 25 && !testing::Test::HasFailure(); ++round) {
            for (int jump = 0; jump < 25; ++jump) {
                storm.Jump();
            }
            storm.Rest();
        }
    }
}

TEST(StormTest, EndsInTheMiddle) {
    int pendingRounds = 0;
    for (unsigned round = 0; round < 16; ++round) {
        Game game({.width = 320, .height = 240, .workers = 1 + round % 7});
        Storm storm(game, round);
        for (unsigned jump = 0; jump < round % 7; ++jump) {
            storm.Jump();
        }
        game.World().player->PlaceAt(CellOrigin({60, 60}));
        game.Tick();
        pendingRounds += game.World().cellGrid.WaitForLoads(0) ? 0 : 1;
    }
    EXPECT_GT(pendingRounds, 0) << "every load had ended before the shutdown";
}

TEST(ThreadsTest, GenerateTheSameWorldOnAnyNumberOfThem) {
    const ErrorLines quiet;
    constexpr std::size_t cells = 200;
    const auto generate = [](std::size_t threadCount) {
        std::vector<std::uint64_t> digests(cells);
        std::vector<std::thread> threads;
        for (std::size_t first = 0; first < threadCount; ++first) {
            threads.emplace_back([&digests, first, threadCount] {
                for (std::size_t i = first; i < cells; i += threadCount) {
                    const auto cell = static_cast<std::int32_t>(i);
                    digests[i] = DungeonDigest({cell % 40, cell / 40 - 2}, i % 7);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        return digests;
    };
    const std::vector<std::uint64_t> alone = generate(1);
    EXPECT_EQ(generate(8), alone);
    EXPECT_EQ(std::set(alone.begin(), alone.end()).size(), cells) << "different cells must differ";
}

TEST(ThreadsTest, CutSpritesWhileTheMainThreadDraws) {
    const Game game;
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    std::array<std::vector<const Sprite*>, 4> made;
    std::vector<std::thread> threads;
    for (std::vector<const Sprite*>& own : made) {
        threads.emplace_back([&] {
            for (int i = 0; i < 300; ++i) {
                own.push_back(graphics.CreateSprite("enemies.png", 7, i, 16, 16));
            }
        });
    }
    for (int i = 0; i < 50; ++i) {
        graphics.DrawSprite(graphics.CreateSprite("ships.png", 0, 0, 32, 32), {0, 0}, {0, 0}, 1.0f);
    }
    std::set<const Sprite*> distinct;
    for (std::size_t i = 0; i < made.size(); ++i) {
        threads[i].join();
        distinct.insert(made[i].begin(), made[i].end());
        EXPECT_EQ(made[i].back()->source, (PixelRect{7, 299, 16, 16}));
    }
    EXPECT_EQ(distinct.size(), 1200U) << "never shared";
}
