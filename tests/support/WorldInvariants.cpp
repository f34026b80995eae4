#include "support/WorldInvariants.h"

#include "entities/CompassEntity.h"
#include "entities/DumbEnemy.h"
#include "entities/TerrainCellEntity.h"
#include "gen/Clusters.h"
#include "gen/GEN_DungeonGenerator.h"
#include "support/Guarded.h"
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

// A block of clusters and its neighbour graph, from keys alone.
struct Block {
    std::array<ClusterRecord, CellGrid::kSlotCount> clusters;
    CellNeighborMap graph;
};

std::vector<GridKey> BlockKeys(Vec2i cluster) {
    std::vector<GridKey> keys;
    for (std::int32_t dy = -1; dy <= 1; ++dy) {
        for (std::int32_t dx = -1; dx <= 1; ++dx) {
            keys.push_back(ClusterKey(cluster + Vec2i{dx, dy}));
        }
    }
    return keys;
}

const Block& BlockAround(Vec2i cluster) {
    static std::map<std::int32_t, Block> blocks;
    if (blocks.size() > 64) {
        blocks.clear(); // a fuzzer visits millions
    }
    const auto [entry, isNew] = blocks.try_emplace(ClusterKey(cluster).id);
    Block& block = entry->second;
    if (isNew) {
        const std::vector<GridKey> keys = BlockKeys(cluster);
        std::array<const ClusterRecord*, CellGrid::kSlotCount> records{};
        for (std::size_t i = 0; i < keys.size(); ++i) {
            GenerateCluster(keys[i], block.clusters[i]);
            records[i] = &block.clusters[i];
        }
        BuildNeighborGraph(records.data(), static_cast<std::int32_t>(records.size()), block.graph);
    }
    return block;
}

bool IsLand(Vec2i cell) {
    const ClusterRecord& middle = BlockAround(cell / kClusterCells).clusters[4];
    return middle.cells.find(CellKey(cell).id)->second == 1;
}

bool SameIds(const std::vector<GridKey>& a, const std::vector<GridKey>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const GridKey& x, const GridKey& y) { return x.id == y.id; });
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

// The slot's entities must stand in layer 2 in their order, others' in between them allowed.
void CheckSpawned(const CellSlot& slot, const DungeonRecord* dungeon) {
    if (dungeon == nullptr) {
        EXPECT_TRUE(slot.spawned.empty());
        return;
    }
    const std::vector<Vec2i> places = ExpectedPlaces(slot.coords, *dungeon);
    ASSERT_EQ(slot.spawned.size(), places.size());
    const std::size_t enemies = places.size() - dungeon->compassPoints.size();
    const std::vector<IEntity*>& layer = WorldManager::GetInstance()->layers[kSpawnedLayer];
    auto from = layer.begin();
    for (std::size_t i = 0; i < places.size(); ++i) {
        const IEntity* entity = slot.spawned[i];
        from = std::find(from, layer.end(), entity);
        ASSERT_NE(from++, layer.end()) << "missing from layer 2 or out of order";
        ASSERT_EQ(entity->position, places[i]);
        ASSERT_TRUE(entity->active);
        if (i < enemies) {
            ASSERT_NE(dynamic_cast<const DumbEnemy*>(entity), nullptr);
        } else {
            const auto& marker = dynamic_cast<const CompassEntity&>(*entity);
            ASSERT_EQ(marker.index, static_cast<std::int32_t>(i - enemies));
        }
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
}

using Counts = std::map<std::int32_t, std::uint32_t>;

void CheckCounts(const SlotModel& model) {
    Counts dungeons;
    for (const Vec2i& cell : model.Cells()) {
        if (cell.x >= 0 && IsLand(cell)) {
            dungeons[CellKey(cell).id] = 1;
        }
    }
    Counts clusters;
    for (const GridKey& key : BlockKeys(model.Cluster())) {
        ++clusters[key.id];
    }
    EXPECT_EQ(ASM_AssetManager::GetInstance()->dungeons.GetRefs(), dungeons);
    EXPECT_EQ(ASM_AssetManager::GetInstance()->clusters.GetRefs(), clusters);
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
        const CellNeighborMap& graph = BlockAround(cluster).graph;
        const auto entry = graph.find(CellKey(toLoad[i]));
        neighbors[freeSlots[i]] = entry == graph.end() ? std::vector<GridKey>{} : entry->second;
    }
}

bool SlotModel::Follow(Vec2i place) {
    const GridKey cell = CellKeyAt(place);
    // Far apart, two cells can share an id; the world takes them for one then.
    if (cell.id == lastCellId) {
        return false;
    }
    lastCellId = cell.id;
    MoveTo({cell.x, cell.y});
    return true;
}

void CheckWorldAtRest(const SlotModel& model) {
    const WorldManager& world = *WorldManager::GetInstance();
    std::size_t spawned = 0;
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        SCOPED_TRACE("slot " + std::to_string(i));
        const CellSlot slot = SlotAt(i);
        CheckSlot(slot, model.Cells()[i], model.Neighbors(i));
        spawned += slot.spawned.size();
    }
    EXPECT_EQ(world.layers[kSpawnedLayer].size(), spawned)
        << "something stale or doubled is in layer 2";
    EXPECT_EQ(world.entities.size(), kFixedEntities + spawned);
    CheckCounts(model);
}
