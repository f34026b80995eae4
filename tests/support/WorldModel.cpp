#include "support/WorldModel.h"

#include "entities/CompassEntity.h"
#include "entities/DumbEnemy.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "gen/Clusters.h"
#include "gen/GEN_DungeonGenerator.h"
#include "support/Guarded.h"
#include "world/ASM_AssetManager.h"
#include "world/WorldManager.h"

#include <algorithm>
#include <map>
#include <memory>
#include <sstream>

namespace {

constexpr std::size_t kFixedEntities = 14; // 9 cells, boat, player, map, menu, radar

// A block of clusters and its neighbour graph, from keys alone.
struct Block {
    std::array<ClusterRecord, 9> clusters;
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
        std::array<const ClusterRecord*, 9> records{};
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
    return std::ranges::equal(a, b, {}, &GridKey::id, &GridKey::id);
}

bool IsTheDungeonOf(const GridKey& key, std::size_t neighborCount, const DungeonRecord& dungeon) {
    const auto expected = std::make_unique<DungeonRecord>();
    GEN_DungeonGenerator().Generate(key, neighborCount, *expected);
    return dungeon.tiles == expected->tiles && dungeon.mainRooms == expected->mainRooms &&
           dungeon.compassPoints == expected->compassPoints;
}

// Where a dungeon's enemies stand, then its markers.
std::vector<Vec2i> SpawnPlaces(Vec2i cell, const DungeonRecord& dungeon) {
    std::vector<Vec2i> tiles;
    for (const std::int32_t room : dungeon.mainRooms) {
        const auto& points = dungeon.rooms[static_cast<std::size_t>(room)].spawnPoints;
        tiles.insert(tiles.end(), points.begin(), points.end());
    }
    tiles.insert(tiles.end(), dungeon.compassPoints.begin(), dungeon.compassPoints.end());
    for (Vec2i& tile : tiles) {
        tile = cell * 12288 + Vec2i{12, 12} + tile * 24;
    }
    return tiles;
}

// Compares and keeps what differs.
class Checker {
public:
    void Check(bool holds, const char* what) {
        if (!holds) {
            text << where << what << '\n';
        }
    }

    void CheckSlot(const CellSlot& slot, Vec2i expected, const std::vector<GridKey>& neighbors) {
        const TerrainCellEntity::View view = slot.cellEntity->GetView();
        Check(slot.coords == expected, "another cell than expected");
        if (slot.coords != expected || expected == Vec2i{-1, -1}) {
            Check(expected != Vec2i{-1, -1} || !slot.cellEntity->active, "shown without a cell");
            return;
        }
        Check(slot.cellEntity->active, "not shown");
        Check(view.key.id == CellKey(expected).id, "the entity has another cell");
        Check(view.corners[0] == CellOrigin(expected), "another origin");
        Check((view.occupied == 1) == IsLand(expected), "land or sea mistaken");
        Check((view.dungeon != nullptr) == IsLand(expected), "dungeon missing or superfluous");
        Check(SameIds(slot.cellEntity->GetNeighbors(), neighbors), "other neighbours");
        std::vector<Vec2i> places;
        if (view.dungeon != nullptr) {
            Check(IsTheDungeonOf(view.key, neighbors.size(), *view.dungeon), "another dungeon");
            places = SpawnPlaces(expected, *view.dungeon);
        }
        CheckSpawned(slot, places,
                     view.dungeon == nullptr ? 0 : view.dungeon->compassPoints.size());
    }

    std::string where;
    std::ostringstream text;

private:
    // The slot's entities stand in layer 2 in their order, others' in between them allowed.
    void CheckSpawned(const CellSlot& slot, const std::vector<Vec2i>& places, std::size_t markers) {
        Check(slot.spawned.size() == places.size(), "too many or too few enemies and markers");
        const std::vector<IEntity*>& layer = WorldManager::GetInstance()->layers[2];
        auto from = layer.begin();
        for (std::size_t i = 0; i < std::min(slot.spawned.size(), places.size()); ++i) {
            from = std::find(from, layer.end(), slot.spawned[i]);
            if (from == layer.end()) {
                return Check(false, "an enemy or marker is missing from layer 2 or out of order");
            }
            const IEntity& entity = **from++;
            const auto index = static_cast<std::int32_t>(i + markers - places.size());
            const auto* marker = dynamic_cast<const CompassEntity*>(&entity);
            Check(entity.position == places[i] && entity.active, "displaced or hidden");
            Check(index < 0 ? dynamic_cast<const DumbEnemy*>(&entity) != nullptr
                            : marker != nullptr && marker->index == index,
                  "not the enemy or marker that belongs here");
        }
    }
};

} // namespace

bool WorldModel::Follow() {
    const GridKey cell = CellKeyAt(WorldManager::GetInstance()->player->position);
    // Far apart, two cells can share an id; the world takes them for one then.
    if (cell.id == lastCellId) {
        return false;
    }
    lastCellId = cell.id;
    MoveTo({cell.x, cell.y});
    return true;
}

void WorldModel::MoveTo(Vec2i center) {
    std::vector<std::size_t> freeSlots{0, 1, 2, 3, 4, 5, 6, 7, 8};
    std::vector<Vec2i> toLoad;
    for (std::int32_t x = center.x - 1; x <= center.x + 1; ++x) {
        for (std::int32_t y = center.y - 1; y <= center.y + 1; ++y) {
            const auto holder = std::ranges::find(freeSlots, Vec2i{x, y},
                                                  [this](std::size_t slot) { return cells[slot]; });
            if (holder != freeSlots.end()) {
                freeSlots.erase(holder);
            } else if (x >= 0 && y >= 0) {
                toLoad.push_back({x, y});
            }
        }
    }
    cluster = center / kClusterCells;
    const CellNeighborMap& graph = BlockAround(cluster).graph;
    for (std::size_t i = 0; i < toLoad.size(); ++i) {
        cells[freeSlots[i]] = toLoad[i];
        const auto entry = graph.find(CellKey(toLoad[i]));
        neighbors[freeSlots[i]] = entry == graph.end() ? std::vector<GridKey>{} : entry->second;
    }
}

std::string WorldModel::Faults() const {
    const WorldManager& world = *WorldManager::GetInstance();
    const ASM_AssetManager& store = *ASM_AssetManager::GetInstance();
    Checker checker;
    std::size_t spawned = 0;
    std::map<std::int32_t, std::uint32_t> dungeons;
    std::map<std::int32_t, std::uint32_t> clusters;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const CellSlot slot = SlotAt(i);
        checker.where = "slot " + std::to_string(i) + ": ";
        checker.CheckSlot(slot, cells[i], neighbors[i]);
        spawned += slot.spawned.size();
        if (cells[i].x >= 0 && IsLand(cells[i])) {
            dungeons[CellKey(cells[i]).id] = 1;
        }
    }
    for (const GridKey& key : BlockKeys(cluster)) {
        ++clusters[key.id];
    }
    checker.where.clear();
    checker.Check(world.layers[2].size() == spawned, "something stale or doubled is in layer 2");
    checker.Check(world.entities.size() == kFixedEntities + spawned, "too many or few entities");
    checker.Check(store.dungeons.GetRefs() == dungeons, "dungeons have other references");
    checker.Check(store.clusters.GetRefs() == clusters, "clusters have other references");
    return checker.text.str();
}
