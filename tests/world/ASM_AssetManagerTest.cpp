// The store in the running program: what it generates, and its listing.
#include "world/ASM_AssetManager.h"

#include "support/GameHarness.h"
#include "support/PaintedFrame.h"
#include "support/QuietStderr.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

class AssetManagerTest : public testing::Test {
protected:
    const QuietStderr quiet;
    GameHarness game;
    ASM_AssetManager& store = *ASM_AssetManager::GetInstance();
};

} // namespace

TEST_F(AssetManagerTest, AKeyOutsideThePackingRangeSharesItsRecord) {
    EXPECT_EQ(store.AcquireCluster(ClusterKey({-1, 1})),
              store.AcquireCluster(ClusterKey({65534, 0})));
}

TEST_F(AssetManagerTest, ARecordComesOutEqualAfterItWasPooledAndUsedForAnother) {
    const GridKey key = CellKey({6, 3});
    const DungeonRecord* record = store.AcquireDungeon(key, 3);
    const auto copy = std::make_unique<DungeonRecord>(*record);
    store.ReleaseDungeon(key.id);
    EXPECT_EQ(store.AcquireDungeon(CellKey({8, 3}), 5), record);
    EXPECT_NE(record->tiles, copy->tiles);
    const DungeonRecord* again = store.AcquireDungeon(key, 3);
    EXPECT_NE(again, record);
    EXPECT_EQ(again->tiles, copy->tiles);
    EXPECT_EQ(again->compassPoints, copy->compassPoints);
    EXPECT_EQ(again->compassPoints.size(), 3U);
}

TEST_F(AssetManagerTest, ListsWhatIsInUseAndNothingElse) {
    store.AcquireDungeon(CellKey({1, 1}), 0);
    store.AcquireDungeon(CellKey({1, 2}), 0);
    store.AcquireDungeon(CellKey({1, 2}), 0);
    store.AcquireCluster(ClusterKey({1, 1}));
    store.AcquireCluster(ClusterKey({2, 2}));
    store.ReleaseCluster(ClusterKey({2, 2}));
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
