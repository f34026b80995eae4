#include "support/StateDigest.h"

#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/CompassEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "support/Guarded.h"

void AddTo(Digest& digest, const CMN_InputManager::Timer& timer) {
    digest.Add(timer.lastTime, timer.minInterval);
}

void AddTo(Digest& digest, const IEntity* entity) {
    const auto* marker = dynamic_cast<const CompassEntity*>(entity);
    digest.Add(entity->position, entity->active, marker == nullptr ? -1 : marker->index);
}

StateDigest DigestTick() {
    const WorldManager& world = *WorldManager::GetInstance();
    const PlayerEntity& p = *world.player;
    const AnchoredBoatEntity& boat = *world.anchoredBoat;
    const MapEntity& map = *world.map;
    const CMN_InputManager& input = *CMN_InputManager::GetInstance();
    Digest requests;
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        requests.Add(SlotAt(i).target);
    }
    Digest clusters;
    clusters.Add(ASM_AssetManager::GetInstance()->clusters.GetRefs());
    for (const ClusterRecord* cluster : world.cellGrid.clusters) {
        clusters.Add(*cluster);
    }
    return {{"player", Digest()
                           .Add(p.position, p.exactPosition, p.targetTile, p.moveVector,
                                p.direction, p.tileType, p.mode, p.speed, p.idle)
                           .Value()},
            {"boat", Digest().Add(boat.position, boat.direction, boat.active).Value()},
            {"camera", Digest().Add(world.camera->position, world.camera->zoom).Value()},
            {"map",
             Digest().Add(world.mapMode, map.active, map.pan, map.zoom, map.showCompasses).Value()},
            {"input", Digest().Add(input.actions, input.pressed, input.timers).Value()},
            {"requests", requests.Value()},
            {"clusters", clusters.Value()}};
}

StateDigest DigestRest() {
    const WorldManager& world = *WorldManager::GetInstance();
    Digest terrain;
    Digest spawned;
    Digest layers;
    for (const std::vector<IEntity*>& layer : world.layers) {
        layers.Add(layer.size());
    }
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        const CellSlot slot = SlotAt(i);
        const TerrainCellEntity::View view = slot.cellEntity->GetView();
        terrain.Add(slot.coords, slot.busy, slot.cellEntity->active, view.key, view.occupied,
                    view.corners, slot.cellEntity->GetNeighbors());
        if (view.dungeon != nullptr) {
            terrain.Add(*view.dungeon);
        }
        spawned.Add(slot.spawned);
        for (const IEntity* entity : world.layers[kSpawnedLayer]) {
            if (entity->position / kCellSize == slot.coords) { // cells arrive in any order
                layers.Add(entity);
            }
        }
    }
    return {{"terrain", terrain.Value()},
            {"spawned", spawned.Value()},
            {"layers", layers.Add(world.entities.size()).Value()},
            {"counts", Digest().Add(ASM_AssetManager::GetInstance()->dungeons.GetRefs()).Value()}};
}
