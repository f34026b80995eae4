// What several threads do: scenes and storms of jumps with loads at any time, a shutdown in the
// middle, generation and sprites; to be run under the sanitizers.
#include "WorldDigest.h"
#include "entities/PlayerEntity.h"
#include "gen/Random.h"
#include "gfx/GFX_GraphicsManager.h"
#include "scenes/Replay.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

namespace {

// Runs on many threads at once; each is given its number.
template <typename Work>
void OnThreads(std::size_t count, Work work) {
    std::vector<std::jthread> threads; // joined at the end
    for (std::size_t i = 0; i < count; ++i) {
        threads.emplace_back([work, i] { work(i); });
    }
}

} // namespace

TEST(ThreadsTest, ScenesComeToTheSameWithAnyWorkersAndDelays) {
    for (const char* name : {"late", "jump", "beside"}) {
        const Scene scene = ReadScene(std::string(VESK_TESTS "/scenes/") + name + ".scene");
        for (const std::uint32_t workers : {1U, 2U, 8U}) {
            EXPECT_EQ(CompareReplay(scene, workers, 5 * workers), "") << name << ' ' << workers;
        }
    }
}

// Jumps between land, sea, negative edges and cluster corners, so that the same cells come and go
// in quick succession, with everything drawn that reads records.
TEST(ThreadsTest, StormsOfJumpsComeToTheSame) {
    constexpr Vec2i centers[] = {{6, 3},  {40, 40}, {16, 16}, {10, 0}, {0, 15},
                                 {-3, 2}, {18, 17}, {0, 0},   {22, 19}};
    Twister random(7);
    Scene scene{"storm", {.width = 320, .height = 240}, {}};
    std::istringstream menu(
        "`4 Return4 s4 Return4 s4 Return4 s4 Return4 s4 s4 Return4 s4 s4 Return4 "
        "s4 Return4 `4 Backspace4 e15");
    for (std::string word; menu >> word;) {
        scene.words.push_back(word);
    }
    for (int i = 0; i < 400; ++i) {
        const auto draw = [&random] { return static_cast<std::int32_t>(random() % 5) - 2; };
        const Vec2i place = CellOrigin(centers[random() % 9] + Vec2i{draw(), draw()});
        scene.words.push_back('!' + std::to_string(place.x + 6144) + ',' +
                              std::to_string(place.y + 6144));
        scene.words.push_back('.' + std::to_string(random() % 3)); // with none, a jump nobody sees
    }
    for (const std::uint32_t workers : {1U, 2U, 8U}) {
        EXPECT_EQ(CompareReplay(scene, workers, workers, 40), "") << workers;
    }
}

TEST(ThreadsTest, TheGameEndsInTheMiddleOfLoads) {
    int pendingRounds = 0;
    for (std::uint32_t round = 0; round < 14; ++round) {
        Game game({.width = 320, .height = 240, .workers = 1 + round % 7});
        for (std::int32_t jump = 0; jump < 4; ++jump) {
            game.World().player->PlaceAt(CellOrigin({6 + 20 * jump, 3 + 20 * jump}));
            game.Tick(static_cast<int>(round) % 3);
        }
        game.Pass();
        pendingRounds += game.World().cellGrid.WaitForLoads(0) ? 0 : 1;
    }
    EXPECT_GT(pendingRounds, 0) << "every load had ended before the shutdown";
}

TEST(ThreadsTest, TheGeneratedWorldIsTheSameOnAnyNumberOfThem) {
    const ErrorLines quiet;
    const auto generate = [](std::size_t threads) {
        std::vector<std::uint64_t> digests(200);
        OnThreads(threads, [&digests, threads](std::size_t first) {
            for (std::size_t i = first; i < digests.size(); i += threads) {
                const auto cell = static_cast<std::int32_t>(i);
                digests[i] = DungeonDigest({cell % 40, cell / 40 - 2}, i % 7);
            }
        });
        return digests;
    };
    const std::vector<std::uint64_t> alone = generate(1);
    EXPECT_EQ(generate(8), alone);
    EXPECT_EQ(std::set(alone.begin(), alone.end()).size(), 200U) << "different cells must differ";
}

TEST(ThreadsTest, SpritesAreCutOnManyAndNeverShared) {
    const Game game;
    std::array<std::vector<const Sprite*>, 4> made;
    OnThreads(4, [&made](std::size_t i) {
        for (int y = 0; y < 300; ++y) {
            made[i].push_back(
                GFX_GraphicsManager::GetInstance()->CreateSprite("enemies.png", 7, y, 16, 16));
        }
    });
    std::set<const Sprite*> distinct;
    for (const std::vector<const Sprite*>& own : made) {
        distinct.insert(own.begin(), own.end());
        const SDL_Rect source{7, 299, 16, 16};
        EXPECT_TRUE(SDL_RectEquals(&own.back()->source, &source));
    }
    EXPECT_EQ(distinct.size(), 1200U);
}
