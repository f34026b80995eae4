#include "support/StateDigest.h"

#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/CompassEntity.h"
#include "entities/HudEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "input/CMN_InputManager.h"
#include "ui/DebugMenuEntity.h"
#include "ui/UIF_Button.h"
#include "ui/UIF_Label.h"
#include "world/ASM_AssetManager.h"
#include "world/WorldManager.h"

#include <algorithm>
#include <bit>
#include <concepts>
#include <map>
#include <type_traits>

namespace {

// FNV-1a over bytes, 64 bits.
class Hasher {
public:
    template <typename T>
    Hasher& Add(T value) requires std::integral<T> || std::is_enum_v<T> {
        return AddBits(static_cast<std::uint64_t>(value));
    }

    Hasher& Add(float value) { return AddBits(std::bit_cast<std::uint32_t>(value)); }
    Hasher& Add(Vec2i value) { return Add(value.x).Add(value.y); }
    Hasher& Add(Vec2f value) { return Add(value.x).Add(value.y); }
    Hasher& Add(const GridKey& key) { return Add(key.x).Add(key.y).Add(key.id); }
    Hasher& Add(const SDL_Color& color) {
        return Add(color.r).Add(color.g).Add(color.b).Add(color.a);
    }
    Hasher& Add(std::string_view text) {
        AddBytes(text.data(), text.size());
        return Add(text.size());
    }

    template <typename T>
    Hasher& AddAll(const T& values) {
        for (const auto& value : values) {
            Add(value);
        }
        return Add(values.size());
    }

    template <typename T>
    Hasher& AddBytes(const T* data, std::size_t count) requires(sizeof(T) == 1) {
        for (std::size_t i = 0; i < count; ++i) {
            state = (state ^ static_cast<std::uint8_t>(data[i])) * 1099511628211U;
        }
        return *this;
    }

    std::uint64_t Value() const { return state; }

private:
    Hasher& AddBits(std::uint64_t bits) {
        for (int shift = 0; shift < 64; shift += 8) {
            state = (state ^ ((bits >> shift) & 0xFFU)) * 1099511628211U;
        }
        return *this;
    }

    std::uint64_t state = 14695981039346656037U;
};

WorldManager& World() {
    return *WorldManager::GetInstance();
}

std::uint64_t DigestPlayer() {
    const PlayerEntity& player = *World().player;
    return Hasher()
        .Add(player.position)
        .Add(player.exactPosition)
        .Add(player.targetTile)
        .Add(player.moveVector)
        .Add(player.direction)
        .Add(player.tileType)
        .Add(player.mode)
        .Add(player.speed)
        .Add(player.idle)
        .Value();
}

std::uint64_t DigestBoat() {
    const AnchoredBoatEntity& boat = *World().anchoredBoat;
    return Hasher().Add(boat.position).Add(boat.direction).Add(boat.active.load()).Value();
}

std::uint64_t DigestCamera() {
    return Hasher().Add(World().camera->position).Add(World().camera->zoom).Value();
}

std::uint64_t DigestMap() {
    const MapEntity& map = *World().map;
    return Hasher()
        .Add(World().mapMode)
        .Add(map.active.load())
        .Add(map.pan)
        .Add(map.zoom)
        .Add(map.showCompasses)
        .Value();
}

std::uint64_t DigestMenu() {
    const DebugMenuEntity& menu = *World().debugMenu;
    Hasher hash;
    hash.Add(menu.active.load());
    for (const auto& child : menu.menuWindow.children) {
        const auto& button = dynamic_cast<const UIF_Button&>(*child);
        hash.Add(button.hovered).Add(button.fillColor).Add(button.borderColor);
        for (const auto& label : button.children) {
            hash.Add(std::string_view(dynamic_cast<const UIF_Label&>(*label).text));
        }
    }
    return hash.Value();
}

std::uint64_t DigestFlags() {
    return Hasher()
        .Add(World().renderCellBorder)
        .Add(World().renderDungeonRooms)
        .Add(World().renderMinSpanningTree)
        .Add(World().renderHallways)
        .Add(World().showPlayerInfo)
        .Add(World().showLoadedAssets)
        .Value();
}

std::uint64_t DigestInput() {
    const CMN_InputManager& input = *CMN_InputManager::GetInstance();
    Hasher hash;
    hash.AddAll(input.actions).AddAll(input.pressed);
    for (const CMN_InputManager::Timer& timer : input.timers) {
        hash.Add(timer.lastTime).Add(timer.minInterval);
    }
    return hash.Value();
}

std::uint64_t DigestRadar() {
    const auto& radar = dynamic_cast<const HudEntity&>(*World().layers[kHudLayer].front());
    return Hasher().Add(radar.position).AddAll(radar.icons).Value();
}

// What the main thread has asked the loads for.
std::uint64_t DigestRequests() {
    Hasher hash;
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        const CellSlot slot = World().cellGrid.GetSlot(i);
        hash.Add(slot.target)
            .Add(slot.request.number)
            .Add(slot.request.cell)
            .Add(slot.request.land);
        hash.AddAll(slot.request.neighbors);
    }
    return hash.Value();
}

template <typename Table>
void AddHeld(Hasher& hash, const Table& table) {
    for (const auto& held : table.ListHeld()) {
        hash.Add(held.id).Add(held.count);
    }
}

std::uint64_t DigestClusters() {
    Hasher hash;
    AddHeld(hash, ASM_AssetManager::GetInstance()->GetClusters());
    for (const ClusterRecord* cluster : World().cellGrid.GetClusters()) {
        if (cluster != nullptr) {
            hash.Add(cluster->key);
            for (const auto& [id, land] : cluster->cells) {
                hash.Add(id).Add(land);
            }
        }
    }
    return hash.Value();
}

void AddDungeon(Hasher& hash, const DungeonRecord& dungeon) {
    for (const auto* rooms : {&dungeon.rooms, &dungeon.hallways}) {
        for (const DungeonRoom& room : *rooms) {
            hash.Add(room.x).Add(room.y).Add(room.w).Add(room.h).Add(room.center);
            hash.Add(room.minCorner).Add(room.maxCorner).AddAll(room.spawnPoints);
        }
    }
    for (const auto* edges : {&dungeon.edges, &dungeon.hallwayEdges}) {
        for (const DungeonEdge& edge : *edges) {
            hash.Add(edge.a).Add(edge.b).Add(edge.lengthSquared);
        }
    }
    for (const auto& [room, others] : dungeon.adjacency) {
        hash.Add(room).AddAll(others);
    }
    hash.AddAll(dungeon.mainRooms).AddAll(dungeon.compassPoints);
    hash.AddBytes(dungeon.tiles.data(), dungeon.tiles.size());
}

std::uint64_t DigestTerrain() {
    Hasher hash;
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        const CellSlot slot = World().cellGrid.GetSlot(i);
        const TerrainCellEntity::View view = slot.cellEntity->GetView();
        hash.Add(slot.coords).Add(slot.served).Add(slot.busy).Add(slot.cellEntity->active.load());
        hash.Add(view.key).Add(view.occupied).AddAll(view.corners);
        hash.AddAll(slot.cellEntity->GetNeighbors());
        if (view.dungeon != nullptr) {
            AddDungeon(hash, *view.dungeon);
        }
    }
    return hash.Value();
}

void AddSpawned(Hasher& hash, const IEntity& entity) {
    const auto* marker = dynamic_cast<const CompassEntity*>(&entity);
    hash.Add(entity.position).Add(entity.active.load());
    hash.Add(marker == nullptr ? -1 : marker->index);
}

std::uint64_t DigestSpawned() {
    Hasher hash;
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        const std::vector<IEntity*> spawned = World().cellGrid.GetSlot(i).spawned;
        for (const IEntity* entity : spawned) {
            AddSpawned(hash, *entity);
        }
        hash.Add(spawned.size());
    }
    return hash.Value();
}

// Where each entity belongs: its slot and place there, or its place in the list when it is none of
// the spawned ones.
std::map<const IEntity*, std::uint64_t> NumberEntities() {
    std::map<const IEntity*, std::uint64_t> numbers;
    std::uint64_t next = 0;
    for (const auto& entity : World().entities) {
        numbers[entity.get()] = next++;
    }
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        next = (i + 1) << 32U;
        for (const IEntity* entity : World().cellGrid.GetSlot(i).spawned) {
            numbers[entity] = next++;
        }
    }
    return numbers;
}

// The order within a slot counts, the order between slots does not: slots are brought into their
// own order without disturbing what belongs to one of them.
template <typename Entities>
void AddInCanonicalOrder(Hasher& hash, const Entities& entities,
                         const std::map<const IEntity*, std::uint64_t>& numbers) {
    std::vector<std::uint64_t> places;
    for (const auto& entity : entities) {
        const auto number = numbers.find(&*entity);
        places.push_back(number == numbers.end() ? ~std::uint64_t{0} : number->second);
    }
    std::stable_sort(places.begin(), places.end(),
                     [](std::uint64_t a, std::uint64_t b) { return a >> 32U < b >> 32U; });
    hash.AddAll(places);
}

std::uint64_t DigestLayers() {
    const std::map<const IEntity*, std::uint64_t> numbers = NumberEntities();
    Hasher hash;
    for (const std::vector<IEntity*>& layer : World().layers) {
        AddInCanonicalOrder(hash, layer, numbers);
    }
    AddInCanonicalOrder(hash, World().entities, numbers);
    return hash.Value();
}

std::uint64_t DigestDungeonCounts() {
    Hasher hash;
    AddHeld(hash, ASM_AssetManager::GetInstance()->GetDungeons());
    return hash.Value();
}

} // namespace

StateDigest DigestTick() {
    return {{"player", DigestPlayer()},    {"boat", DigestBoat()},   {"camera", DigestCamera()},
            {"map", DigestMap()},          {"menu", DigestMenu()},   {"flags", DigestFlags()},
            {"input", DigestInput()},      {"radar", DigestRadar()}, {"requests", DigestRequests()},
            {"clusters", DigestClusters()}};
}

StateDigest DigestRest() {
    return {{"terrain", DigestTerrain()},
            {"spawned", DigestSpawned()},
            {"layers", DigestLayers()},
            {"dungeon counts", DigestDungeonCounts()}};
}

std::string DifferingParts(const StateDigest& a, const StateDigest& b) {
    if (a.size() != b.size()) {
        return "number of parts";
    }
    std::string names;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i] != b[i]) {
            names += (names.empty() ? "" : ", ") + std::string(a[i].name);
        }
    }
    return names;
}
