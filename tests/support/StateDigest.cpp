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
#include "ui/UIF_Button.h"
#include "ui/UIF_Label.h"
#include "world/ASM_AssetManager.h"
#include "world/WorldManager.h"

#include <atomic>
#include <bit>
#include <ranges>
#include <type_traits>

namespace {

// FNV-1a, 64 bits, a value at a time.
class Hasher {
public:
    template <typename... Values>
    Hasher& Add(const Values&... values) {
        (AddValue(values), ...);
        return *this;
    }

    std::uint64_t Value() const { return state; }

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
    void AddValue(const DungeonRoom& room) {
        Add(room.x, room.y, room.w, room.h, room.center, room.minCorner, room.maxCorner);
        Add(room.spawnPoints);
    }
    void AddValue(const DungeonEdge& edge) { Add(edge.a, edge.b, edge.lengthSquared); }
    void AddValue(const IEntity* entity) {
        const auto* marker = dynamic_cast<const CompassEntity*>(entity);
        Add(entity->position, entity->active, marker == nullptr ? -1 : marker->index);
    }

    std::uint64_t state = 14695981039346656037U;
};

template <typename... Values>
std::uint64_t Digest(const Values&... values) {
    return Hasher().Add(values...).Value();
}

WorldManager& World() {
    return *WorldManager::GetInstance();
}

std::uint64_t DigestPlayer() {
    const PlayerEntity& player = *World().player;
    return Digest(player.position, player.exactPosition, player.targetTile, player.moveVector,
                  player.direction, player.tileType, player.mode, player.speed, player.idle);
}

std::uint64_t DigestMap() {
    const MapEntity& map = *World().map;
    return Digest(World().mapMode, map.active, map.pan, map.zoom, map.showCompasses);
}

std::uint64_t DigestMenu() {
    Hasher hash;
    hash.Add(World().debugMenu->active);
    for (const auto& child : World().debugMenu->menuWindow.children) {
        const auto& button = dynamic_cast<const UIF_Button&>(*child);
        hash.Add(button.hovered, button.fillColor, button.borderColor);
        for (const auto& label : button.children) {
            hash.Add(dynamic_cast<const UIF_Label&>(*label).text);
        }
    }
    return hash.Value();
}

std::uint64_t DigestFlags() {
    return Digest(World().renderCellBorder, World().renderDungeonRooms,
                  World().renderMinSpanningTree, World().renderHallways, World().showPlayerInfo,
                  World().showLoadedAssets);
}

std::uint64_t DigestRadar() {
    const auto& radar = dynamic_cast<const HudEntity&>(*World().layers[kHudLayer].front());
    return Digest(radar.position, radar.icons);
}

// What the main thread has asked the loads for.
std::uint64_t DigestRequests() {
    Hasher hash;
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        hash.Add(SlotAt(i).target);
    }
    return hash.Value();
}

template <typename Record>
std::uint64_t DigestCounts(const RecordTable<Record>& table) {
    Hasher hash;
    for (const auto& [id, count] : table.GetRefs()) {
        hash.Add(id, count);
    }
    return hash.Value();
}

std::uint64_t DigestClusters() {
    Hasher hash;
    hash.Add(DigestCounts(ASM_AssetManager::GetInstance()->clusters));
    for (const ClusterRecord* cluster : World().cellGrid.clusters) {
        hash.Add(cluster->key);
        for (const auto& [id, land] : cluster->cells) {
            hash.Add(id, land);
        }
    }
    return hash.Value();
}

std::uint64_t DigestTerrain() {
    Hasher hash;
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        const CellSlot slot = SlotAt(i);
        const TerrainCellEntity::View view = slot.cellEntity->GetView();
        hash.Add(slot.coords, slot.busy, slot.cellEntity->active, view.key, view.occupied,
                 view.corners, slot.cellEntity->GetNeighbors());
        if (view.dungeon != nullptr) {
            hash.Add(view.dungeon->rooms, view.dungeon->mainRooms, view.dungeon->hallwayEdges,
                     view.dungeon->hallways, view.dungeon->compassPoints, view.dungeon->tiles);
        }
    }
    return hash.Value();
}

std::uint64_t DigestSpawned() {
    Hasher hash;
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        hash.Add(SlotAt(i).spawned);
    }
    return hash.Value();
}

// Cells arrive in any order, so in layer 2 only the order within a cell counts.
std::uint64_t DigestLayers() {
    Hasher hash;
    hash.Add(World().entities.size());
    for (const std::vector<IEntity*>& layer : World().layers) {
        hash.Add(layer.size());
    }
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        const Vec2i cell = SlotAt(i).coords;
        for (const IEntity* entity : World().layers[kSpawnedLayer]) {
            if (entity->position / kCellSize == cell) {
                hash.Add(entity);
            }
        }
    }
    return hash.Value();
}

} // namespace

StateDigest DigestTick() {
    const AnchoredBoatEntity& boat = *World().anchoredBoat;
    const CMN_InputManager& input = *CMN_InputManager::GetInstance();
    return {{"player", DigestPlayer()},
            {"boat", Digest(boat.position, boat.direction, boat.active)},
            {"camera", Digest(World().camera->position, World().camera->zoom)},
            {"map", DigestMap()},
            {"menu", DigestMenu()},
            {"flags", DigestFlags()},
            {"input", Digest(input.actions, input.pressed, input.timers)},
            {"radar", DigestRadar()},
            {"requests", DigestRequests()},
            {"clusters", DigestClusters()}};
}

StateDigest DigestRest() {
    return {{"terrain", DigestTerrain()},
            {"spawned", DigestSpawned()},
            {"layers", DigestLayers()},
            {"counts", DigestCounts(ASM_AssetManager::GetInstance()->dungeons)}};
}

std::string DifferingParts(const StateDigest& a, const StateDigest& b) {
    if (a.size() != b.size()) {
        return "number of parts";
    }
    std::string names;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i] != b[i]) {
            names += std::string(a[i].name) + ' ';
        }
    }
    return names;
}
