#include "support/WorldInvariants.h"

#include "entities/CompassEntity.h"
#include "entities/DumbEnemy.h"
#include "entities/TerrainCellEntity.h"
#include "gen/BuildNeighborGraph.h"
#include "gen/GEN_DungeonGenerator.h"
#include "gen/GenerateCluster.h"
#include "world/ASM_AssetManager.h"
#include "world/WorldManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kFixedEntities = 14; // 9 cells, boat, player, map, menu, radar

bool IsLand(Vec2i cell) {
    static std::map<std::int32_t, ClusterRecord> clusters;
    const GridKey key = ClusterKeyOfCell(cell);
    if (clusters.size() > 64) {
        clusters.clear(); // a fuzzer visits millions
    }
    ClusterRecord& record = clusters[key.id];
    if (record.cells.empty()) {
        GenerateCluster(key, record);
    }
    return record.cells.find(CellKey(cell).id)->second == 1;
}

bool SameIds(const std::vector<GridKey>& a, const std::vector<GridKey>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const GridKey& x, const GridKey& y) { return x.id == y.id; });
}

// The neighbour graph of the block around a cluster, from keys alone.
const CellNeighborMap& GraphAround(Vec2i cluster) {
    static std::map<std::int32_t, CellNeighborMap> graphs;
    if (graphs.size() > 64) {
        graphs.clear(); // a fuzzer visits millions
    }
    CellNeighborMap& graph = graphs[ClusterKey(cluster).id];
    if (graph.empty()) {
        std::array<ClusterRecord, 9> block;
        std::array<const ClusterRecord*, 9> records{};
        for (std::int32_t i = 0; i < 9; ++i) {
            const auto entry = static_cast<std::size_t>(i);
            GenerateCluster(ClusterKey(cluster + Vec2i{i % 3 - 1, i / 3 - 1}), block[entry]);
            records[entry] = &block[entry];
        }
        BuildNeighborGraph(records.data(), 9, graph);
    }
    return graph;
}

// The dungeon must be the one that its key and its number of neighbours make.
void CheckDungeon(const GridKey& key, std::size_t neighborCount, const DungeonRecord& dungeon) {
    const auto expected = std::make_unique<DungeonRecord>();
    GEN_DungeonGenerator().Generate(key, neighborCount, *expected);
    EXPECT_TRUE(dungeon.tiles == expected->tiles);
    EXPECT_EQ(dungeon.mainRooms, expected->mainRooms);
    EXPECT_EQ(dungeon.compassPoints, expected->compassPoints);
}

std::vector<Vec2i> ExpectedPlaces(Vec2i cell, const DungeonRecord& dungeon) {
    const Vec2i first = CellOrigin(cell) + Vec2i{12, 12};
    std::vector<Vec2i> places;
    for (const std::int32_t room : dungeon.mainRooms) {
        for (const Vec2i& point : dungeon.rooms[static_cast<std::size_t>(room)].spawnPoints) {
            places.push_back(first + point * 24);
        }
    }
    for (const Vec2i& point : dungeon.compassPoints) {
        places.push_back(first + point * 24);
    }
    return places;
}

void CheckSpawned(const CellSlot& slot, const DungeonRecord* dungeon) {
    if (dungeon == nullptr) {
        EXPECT_TRUE(slot.spawned.empty());
        return;
    }
    const std::vector<Vec2i> places = ExpectedPlaces(slot.coords, *dungeon);
    ASSERT_EQ(slot.spawned.size(), places.size());
    const std::size_t enemies = places.size() - dungeon->compassPoints.size();
    for (std::size_t i = 0; i < places.size(); ++i) {
        const IEntity* entity = slot.spawned[i];
        ASSERT_EQ(entity->position, places[i]);
        ASSERT_TRUE(entity->active);
        const auto* marker = dynamic_cast<const CompassEntity*>(entity);
        ASSERT_EQ(marker != nullptr, i >= enemies);
        if (marker != nullptr) {
            ASSERT_EQ(marker->index, static_cast<std::int32_t>(i - enemies));
        } else {
            ASSERT_NE(dynamic_cast<const DumbEnemy*>(entity), nullptr);
        }
    }
}

// The slot's entities must stand in layer 2 in their order, others' in between them allowed.
void CheckInLayer(const CellSlot& slot) {
    const std::vector<IEntity*>& layer = WorldManager::GetInstance()->layers[2];
    auto from = layer.begin();
    for (const IEntity* entity : slot.spawned) {
        from = std::find(from, layer.end(), entity);
        ASSERT_NE(from, layer.end())
            << "an enemy or marker is missing from layer 2 or out of order";
        ++from;
    }
}

void CheckSlot(const CellSlot& slot, Vec2i expected, const std::vector<GridKey>& neighbors) {
    ASSERT_EQ(slot.coords, expected);
    const TerrainCellEntity::View view = slot.cellEntity->GetView();
    if (expected == Vec2i{-1, -1}) {
        EXPECT_FALSE(slot.cellEntity->active);
        return;
    }
    EXPECT_TRUE(slot.cellEntity->active);
    EXPECT_EQ(view.key.id, CellKey(expected).id);
    EXPECT_EQ(view.corners[0], CellOrigin(expected));
    ASSERT_EQ(view.occupied == 1, IsLand(expected));
    ASSERT_EQ(view.dungeon != nullptr, IsLand(expected));
    EXPECT_TRUE(SameIds(slot.cellEntity->GetNeighbors(), neighbors));
    if (view.dungeon != nullptr) {
        CheckDungeon(view.key, neighbors.size(), *view.dungeon);
    }
    CheckSpawned(slot, view.dungeon);
    CheckInLayer(slot);
}

void CheckCounts(const SlotModel& model) {
    std::map<std::int32_t, std::uint32_t> expected;
    for (const Vec2i& cell : model.Cells()) {
        if (cell.x >= 0 && IsLand(cell)) {
            expected[CellKey(cell).id] = 1;
        }
    }
    std::map<std::int32_t, std::uint32_t> held;
    for (const auto& entry : ASM_AssetManager::GetInstance()->GetDungeons().ListHeld()) {
        held[entry.id] = entry.count;
    }
    EXPECT_EQ(held, expected);
    std::map<std::int32_t, std::uint32_t> block;
    for (std::int32_t i = 0; i < 9; ++i) {
        ++block[ClusterKey(model.Cluster() + Vec2i{i % 3 - 1, i / 3 - 1}).id];
    }
    std::map<std::int32_t, std::uint32_t> clusters;
    for (const auto& entry : ASM_AssetManager::GetInstance()->GetClusters().ListHeld()) {
        clusters[entry.id] = entry.count;
    }
    EXPECT_EQ(clusters, block);
}

} // namespace

void SlotModel::MoveTo(Vec2i center) {
    std::vector<std::size_t> freeSlots{0, 1, 2, 3, 4, 5, 6, 7, 8};
    std::vector<Vec2i> toLoad;
    for (std::int32_t x = center.x - 1; x <= center.x + 1; ++x) {
        for (std::int32_t y = center.y - 1; y <= center.y + 1; ++y) {
            const auto holder =
                std::find_if(freeSlots.begin(), freeSlots.end(), [&](std::size_t slot) {
                    return cells[slot] == Vec2i{x, y};
                });
            if (holder != freeSlots.end()) {
                freeSlots.erase(holder);
            } else if (x >= 0 && y >= 0) {
                toLoad.push_back({x, y});
            }
        }
    }
    cluster = center / kClusterCells;
    for (std::size_t i = 0; i < toLoad.size(); ++i) {
        cells[freeSlots[i]] = toLoad[i];
        const CellNeighborMap& graph = GraphAround(cluster);
        const auto entry = graph.find(CellKey(toLoad[i]));
        neighbors[freeSlots[i]] = entry == graph.end() ? std::vector<GridKey>{} : entry->second;
    }
}

void CheckWorldAtRest(const SlotModel& model) {
    const WorldManager& world = *WorldManager::GetInstance();
    std::size_t spawned = 0;
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        SCOPED_TRACE("slot " + std::to_string(i));
        const CellSlot slot = world.cellGrid.GetSlot(i);
        CheckSlot(slot, model.Cells()[i], model.Neighbors(i));
        spawned += slot.spawned.size();
    }
    EXPECT_EQ(world.layers[2].size(), spawned) << "something stale or doubled is in layer 2";
    EXPECT_EQ(world.entities.size(), kFixedEntities + spawned);
    CheckCounts(model);
}
