#include "support/WorldState.h"

#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/CompassEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "input/CMN_InputManager.h"
#include "support/Guarded.h"

#include <array>

std::ostream& operator<<(std::ostream& out, Vec2i v) {
    return out << '(' << v.x << ',' << v.y << ')';
}

std::ostream& operator<<(std::ostream& out, Vec2f v) {
    return out << '(' << v.x << ',' << v.y << ')';
}

namespace {

std::string Heading(std::int32_t direction) {
    constexpr std::string_view names[] = {"up", "down", "left", "right"};
    return Text(" facing ", names[static_cast<std::size_t>(direction)]);
}

std::string DescribePlayer(const PlayerEntity& p) {
    constexpr std::string_view tiles[] = {"water", "a hallway", "a room"};
    return Text(p.position, " exactly ", p.exactPosition, Heading(p.direction),
                p.mode == PlayerEntity::kSailing ? ", sailing on " : ", on foot on ",
                tiles[p.tileType], p.idle ? ", idle" : ", moving", " by ", p.moveVector, " to ",
                p.targetTile, " at ", p.speed);
}

// In the order of InputAction.
constexpr std::array<std::string_view, kInputActionCount> kActions{
    "button10", "button11", "button12", "button13", "horizontal", "vertical",
    "panX",     "panY",     "zoomIn",   "zoomOut",  "map",        "quit",
    "menu",     "up",       "down",     "left",     "right",      "confirm"};

std::string DescribeInput(const CMN_InputManager& input) {
    std::string text;
    for (std::size_t i = 0; i < kInputActionCount; ++i) {
        const auto [lastTime, minInterval] = input.timers[i];
        text += input.actions[i] != 0.0f ? Text(' ', kActions[i], " at ", input.actions[i]) : "";
        text += lastTime != 0 ? Text(' ', kActions[i], " since ", lastTime) : "";
        text += minInterval != 30 ? Text(' ', kActions[i], " held for ", minInterval) : "";
        text += input.pressed[i] ? Text(' ', kActions[i], " let go") : "";
    }
    return text;
}

template <typename Table>
std::string DescribeReferences(const Table& table, Vec2i (*decode)(std::int32_t)) {
    std::string text;
    for (const auto& [id, count] : table.GetRefs()) {
        text += Text(' ', decode(id), 'x', count);
    }
    return text;
}

// Place, markers by their number, and whether it is hidden.
std::string Describe(const IEntity& entity) {
    const auto* marker = dynamic_cast<const CompassEntity*>(&entity);
    return Text(entity.position, marker == nullptr ? "" : Text(" marker ", marker->index),
                entity.active ? "" : " hidden");
}

template <typename Entities>
std::string Describe(const Entities& entities) {
    std::vector<std::string> all;
    for (const IEntity* entity : entities) {
        all.push_back(Describe(*entity));
    }
    return all.empty() ? " 0" : Text(' ', all.size(), " from ", all[0], " content ", Short(all));
}

} // namespace

WorldState DescribeTick() {
    const WorldManager& world = *WorldManager::GetInstance();
    const AnchoredBoatEntity& boat = *world.anchoredBoat;
    const MapEntity& map = *world.map;
    std::string requests;
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        requests += Text(' ', SlotAt(i).target);
    }
    Digest clusters;
    for (const ClusterRecord* cluster : world.cellGrid.clusters) {
        clusters.Add(*cluster);
    }
    ASM_AssetManager& store = *ASM_AssetManager::GetInstance();
    const MutexLock lock(store.neighborLock);
    return {
        {"player", DescribePlayer(*world.player)},
        {"boat",
         Text(boat.position, Heading(boat.direction), boat.active ? ", active" : ", hidden")},
        {"camera", Text(world.camera->position, " zoom ", world.camera->zoom)},
        {"map", Text("mode ", world.mapMode, map.active ? ", open at " : ", closed at ", map.pan,
                     " zoom ", map.zoom, map.showCompasses ? " with compasses" : "")},
        {"input", DescribeInput(*CMN_InputManager::GetInstance())},
        {"requests", requests},
        {"clusters", DescribeReferences(store.clusters, DecodeClusterId) +
                         Text(" content ", Short(clusters.Value()))},
        {"graph", Text(store.neighbors.size(), " land cells, content ", Short(store.neighbors))}};
}

WorldState DescribeRest() {
    const WorldManager& world = *WorldManager::GetInstance();
    std::string terrain;
    std::string spawned;
    std::string layers;
    std::vector<std::string> inLayer; // cell by cell, as cells arrive in any order
    for (const std::vector<IEntity*>& layer : world.layers) {
        layers += Text(' ', layer.size());
    }
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        const CellSlot slot = SlotAt(i);
        const TerrainCellEntity::View view = slot.cellEntity->GetView();
        const std::vector<GridKey> neighbors = slot.cellEntity->GetNeighbors();
        terrain += Text(' ', slot.coords, slot.busy ? " busy" : "",
                        slot.cellEntity->active ? "" : " hidden");
        Digest content;
        content.Add(view.key, view.occupied, view.corners, neighbors);
        if (view.dungeon != nullptr) {
            content.Add(*view.dungeon);
            terrain += Text(" land, ", neighbors.size(), " neighbours,");
            spawned += Text(' ', slot.coords, Describe(slot.spawned));
        }
        terrain += Text(" content ", Short(content.Value()));
        for (const IEntity* entity : world.layers[kSpawnedLayer]) {
            if (entity->position / kCellSize == slot.coords) {
                inLayer.push_back(Describe(*entity));
            }
        }
    }
    return {
        {"terrain", terrain},
        {"spawned", spawned},
        {"layers", Text(layers, " of ", world.entities.size(), " content ", Short(inLayer))},
        {"dungeons", DescribeReferences(ASM_AssetManager::GetInstance()->dungeons, DecodeCellId)}};
}
