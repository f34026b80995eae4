#include "support/StateDigest.h"

#include "WorldDigest.h"
#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "support/Guarded.h"

StateDigest DigestTick() {
    const WorldManager& world = *WorldManager::GetInstance();
    const PlayerEntity& p = *world.player;
    const AnchoredBoatEntity& boat = *world.anchoredBoat;
    const MapEntity& map = *world.map;
    const CMN_InputManager& input = *CMN_InputManager::GetInstance();
    Hasher requests;
    for (std::size_t i = 0; i < CellGrid::kSlotCount; ++i) {
        requests.Add(SlotAt(i).target);
    }
    Hasher clusters;
    clusters.Add(ASM_AssetManager::GetInstance()->clusters.GetRefs());
    for (const ClusterRecord* cluster : world.cellGrid.clusters) {
        clusters.Add(DigestOf(*cluster));
    }
    return {{"player", Hasher()
                           .Add(p.position, p.exactPosition, p.targetTile, p.moveVector,
                                p.direction, p.tileType, p.mode, p.speed, p.idle)
                           .state},
            {"boat", Hasher().Add(boat.position, boat.direction, boat.active).state},
            {"camera", Hasher().Add(world.camera->position, world.camera->zoom).state},
            {"map",
             Hasher().Add(world.mapMode, map.active, map.pan, map.zoom, map.showCompasses).state},
            {"input", Hasher().Add(input.actions, input.pressed, input.timers).state},
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
            terrain.Add(DigestOf(*view.dungeon));
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
            {"counts", Hasher().Add(ASM_AssetManager::GetInstance()->dungeons.GetRefs()).state}};
}
