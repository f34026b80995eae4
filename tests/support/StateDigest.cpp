#include "support/StateDigest.h"

#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/CompassEntity.h"
#include "entities/HudEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "input/CMN_InputManager.h"
#include "support/Guarded.h"
#include "ui/DebugMenuEntity.h"
#include "ui/UIF_Widget.h"

#include <bit>
#include <ranges>

namespace {

// FNV-1a, 64 bits, a value at a time.
class Hasher {
public:
    template <typename... Values>
    Hasher& Add(const Values&... values) {
        (AddValue(values), ...);
        return *this;
    }

    std::uint64_t state = 14695981039346656037U;

private:
    template <typename T>
    void AddValue(const T& value) requires(!std::is_pointer_v<T>) {
        if constexpr (std::ranges::range<T>) {
            for (const auto& element : value) {
                AddValue(element);
            }
            AddValue(std::ranges::size(value));
        } else {
            state = (state ^ static_cast<std::uint64_t>(value)) * 1099511628211U;
        }
    }

    void AddValue(float value) { AddValue(std::bit_cast<std::uint32_t>(value)); }
    void AddValue(const std::atomic<bool>& value) { AddValue(value.load()); }
    void AddValue(Vec2i value) { Add(value.x, value.y); }
    void AddValue(Vec2f value) { Add(value.x, value.y); }
    void AddValue(const GridKey& key) { Add(key.x, key.y, key.id); }
    void AddValue(const SDL_Color& color) { Add(color.r, color.g, color.b, color.a); }
    void AddValue(const CMN_InputManager::Timer& timer) { Add(timer.lastTime, timer.minInterval); }
    void AddValue(const DungeonEdge& edge) { Add(edge.a, edge.b, edge.lengthSquared); }
    void AddValue(const std::pair<const std::int32_t, std::uint32_t>& held) {
        Add(held.first, held.second);
    }
    void AddValue(const DungeonRoom& room) {
        Add(room.x, room.y, room.w, room.h, room.center, room.minCorner, room.maxCorner,
            room.spawnPoints);
    }
    void AddValue(const IEntity* entity) {
        const auto* marker = dynamic_cast<const CompassEntity*>(entity);
        Add(entity->position, entity->active, marker == nullptr ? -1 : marker->index);
    }
};

template <typename... Values>
std::uint64_t Digest(const Values&... values) {
    return Hasher().Add(values...).state;
}

std::uint64_t DigestMenu(const DebugMenuEntity& menu) {
    Hasher hash;
    hash.Add(menu.active);
    for (const auto& child : menu.menuWindow.children) {
        const auto& button = dynamic_cast<const UIF_Button&>(*child);
        hash.Add(button.hovered, button.fillColor, button.borderColor);
        for (const auto& label : button.children) {
            hash.Add(dynamic_cast<const UIF_Label&>(*label).text);
        }
    }
    return hash.state;
}

} // namespace

StateDigest DigestTick() {
    const WorldManager& world = *WorldManager::GetInstance();
    const PlayerEntity& p = *world.player;
    const AnchoredBoatEntity& boat = *world.anchoredBoat;
    const MapEntity& map = *world.map;
    const CMN_InputManager& input = *CMN_InputManager::GetInstance();
    const auto& radar = dynamic_cast<const HudEntity&>(*world.layers[kHudLayer].front());
    Hasher requests;
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        requests.Add(SlotAt(i).target);
    }
    Hasher clusters;
    clusters.Add(ASM_AssetManager::GetInstance()->clusters.GetRefs());
    for (const ClusterRecord* cluster : world.cellGrid.clusters) {
        clusters.Add(cluster->key);
        for (const auto& [id, land] : cluster->cells) {
            clusters.Add(id, land);
        }
    }
    return {{"player", Digest(p.position, p.exactPosition, p.targetTile, p.moveVector, p.direction,
                              p.tileType, p.mode, p.speed, p.idle)},
            {"boat", Digest(boat.position, boat.direction, boat.active)},
            {"camera", Digest(world.camera->position, world.camera->zoom)},
            {"map", Digest(world.mapMode, map.active, map.pan, map.zoom, map.showCompasses)},
            {"menu", DigestMenu(*world.debugMenu)},
            {"flags",
             Digest(world.renderCellBorder, world.renderDungeonRooms, world.renderMinSpanningTree,
                    world.renderHallways, world.showPlayerInfo, world.showLoadedAssets)},
            {"input", Digest(input.actions, input.pressed, input.timers)},
            {"radar", Digest(radar.position, radar.icons)},
            {"requests", requests.state},
            {"clusters", clusters.state}};
}

StateDigest DigestRest() {
    const WorldManager& world = *WorldManager::GetInstance();
    Hasher terrain;
    Hasher spawned;
    Hasher layers;
    for (const std::vector<IEntity*>& layer : world.layers) {
        layers.Add(layer.size());
    }
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        const CellSlot slot = SlotAt(i);
        const TerrainCellEntity::View view = slot.cellEntity->GetView();
        terrain.Add(slot.coords, slot.busy, slot.cellEntity->active, view.key, view.occupied,
                    view.corners, slot.cellEntity->GetNeighbors());
        if (view.dungeon != nullptr) {
            const DungeonRecord& d = *view.dungeon;
            terrain.Add(d.rooms, d.mainRooms, d.hallwayEdges, d.hallways, d.compassPoints, d.tiles);
        }
        spawned.Add(slot.spawned);
        for (const IEntity* entity : world.layers[kSpawnedLayer]) {
            if (entity->position / kCellSize == slot.coords) { // cells arrive in any order
                layers.Add(entity);
            }
        }
    }
    return {{"terrain", terrain.state},
            {"spawned", spawned.state},
            {"layers", layers.Add(world.entities.size()).state},
            {"counts", Digest(ASM_AssetManager::GetInstance()->dungeons.GetRefs())}};
}
