// The store in the running program: what it generates, its listing, and generation beside rebuilds.
#include "world/ASM_AssetManager.h"

#include "support/GameHarness.h"
#include "support/PaintedFrame.h"
#include "support/QuietStderr.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace {

ASM_AssetManager& Store() {
    return *ASM_AssetManager::GetInstance();
}

} // namespace

TEST(AssetManagerTest, AKeyOutsideThePackingRangeSharesItsRecord) {
    const QuietStderr quiet;
    const GameHarness game;
    const ClusterRecord* left = Store().AcquireCluster(ClusterKey({-1, 1}));
    const ClusterRecord* far = Store().AcquireCluster(ClusterKey({65534, 0}));
    EXPECT_EQ(left, far);
    EXPECT_EQ(DecodeClusterId(ClusterKey({-1, 1}).id), (Vec2i{65534, 0}));
    EXPECT_EQ(DecodeClusterId(ClusterKey({-1, -1}).id), (Vec2i{-1, -1}));
    EXPECT_EQ(DecodeClusterId(ClusterKey({-1, 0}).id), (Vec2i{-1, 0}));
}

TEST(AssetManagerTest, ARecordComesOutEqualAfterItWasPooledAndUsedForAnother) {
    const QuietStderr quiet;
    const GameHarness game;
    const GridKey key = CellKey({6, 3});
    const DungeonRecord* record = Store().AcquireDungeon(key, 3);
    const auto tiles = std::make_unique<DungeonRecord>(*record);
    Store().ReleaseDungeon(key.id);
    EXPECT_EQ(Store().AcquireDungeon(CellKey({8, 3}), 5), record);
    EXPECT_NE(record->tiles, tiles->tiles);
    const DungeonRecord* again = Store().AcquireDungeon(key, 3);
    EXPECT_NE(again, record);
    EXPECT_EQ(again->tiles, tiles->tiles);
    EXPECT_EQ(again->compassPoints, tiles->compassPoints);
    EXPECT_EQ(again->compassPoints.size(), 3U);
}

TEST(AssetManagerTest, ListsWhatIsInUseAndNothingElse) {
    const QuietStderr quiet;
    GameHarness game;
    Store().AcquireDungeon(CellKey({1, 1}), 0);
    Store().AcquireDungeon(CellKey({1, 2}), 0);
    Store().AcquireDungeon(CellKey({1, 2}), 0);
    Store().AcquireCluster(ClusterKey({1, 1}));
    Store().AcquireCluster(ClusterKey({2, 2}));
    Store().ReleaseCluster(ClusterKey({2, 2}));
    game.Capture();
    PaintedFrame expected(game);
    constexpr SDL_Color white{255, 255, 255, 255};
    expected.Text("Dungeon 1048561 (1, 1) : 1", 300, 0, white);
    expected.Text("Dungeon 2097121 (1, 2) : 2", 300, 15, white);
    expected.Text("Cluster 65536 (1, 1) : 1", 300, 30, white);
    game.World().showLoadedAssets = true;
    game.Capture();
    EXPECT_EQ(expected.Difference(game), "");
}

TEST(AssetManagerTest, GeneratesBesideRebuildsOfTheNeighbourMap) {
    const QuietStderr quiet;
    const GameHarness game;
    std::array<const ClusterRecord*, 9> block{};
    for (std::int32_t i = 0; i < 9; ++i) {
        block[static_cast<std::size_t>(i)] =
            Store().AcquireCluster(ClusterKey({1 + i % 3, 1 + i / 3}));
    }
    Store().RebuildNeighbors(block.data(), 9);
    const std::vector<GridKey> expected = Store().GetNeighbors(CellKey({16 + 2, 16 + 1}));
    ASSERT_FALSE(expected.empty());

    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (std::int32_t t = 0; t < 8; ++t) {
        threads.emplace_back([&, t] {
            for (std::int32_t round = 0; round < 20; ++round) {
                const GridKey key = CellKey({round % 5, t % 3});
                const std::size_t count = Store().GetNeighbors(CellKey({16 + 2, 16 + 1})).size();
                wrong += count == expected.size() ? 0 : 1;
                wrong += Store().AcquireDungeon(key, count)->rooms.empty() ? 1 : 0;
                Store().ReleaseDungeon(key.id);
            }
        });
    }
    for (int round = 0; round < 50; ++round) {
        Store().RebuildNeighbors(block.data(), 9);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_TRUE(Store().GetDungeons().ListHeld().empty());
    EXPECT_GE(Store().GetDungeons().PoolSize(), 12U);
}
