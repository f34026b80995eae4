#include "world/WorldManager.h"

#include "common/CMN_ConfigurationManager.h"
#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/HudEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "entities/TerrainCellEntity.h"
#include "gfx/GFX_GraphicsManager.h"
#include "input/CMN_InputManager.h"
#include "ui/DebugMenuEntity.h"
#include "world/ASM_AssetManager.h"

#include <algorithm>
#include <cassert>
#include <functional>
#include <utility>

namespace {

// A new entity in a layer; the world owns it.
template <typename Entity>
Entity* Create(WorldManager& world, std::int32_t layer) {
    auto made = std::make_unique<Entity>();
    Entity* entity = made.get();
    world.AddEntity(made.release(), layer);
    return entity;
}

} // namespace

WorldManager::WorldManager() = default;

WorldManager::~WorldManager() {
    for (const IEntity* entity : entities) {
        delete entity;
    }
    camera.reset();
    const MutexLock lock(callbackLock);
    callbacks.clear();
}

bool WorldManager::Init() {
    InitTerrainCells();

    anchoredBoat = Create<AnchoredBoatEntity>(*this, kPlayerLayer);
    anchoredBoat->Init();
    anchoredBoat->active = false;
    InitPlayer();
    InitCamera();
    map = Create<MapEntity>(*this, kMapLayer);
    map->active = false;
    debugMenu = Create<DebugMenuEntity>(*this, kMenuLayer);
    debugMenu->active = false;
    Create<HudEntity>(*this, kHudLayer)->Init();
    return true;
}

void WorldManager::InitTerrainCells() {
    for (std::size_t slot = 0; slot < CellGrid::kSlotCount; ++slot) {
        TerrainCellEntity* entity = CreateTerrainCellEntity();
        entity->active = false;
        const MutexLock lock(cellGrid.slotLock);
        cellGrid.slots[slot].cellEntity = entity;
    }
}

void WorldManager::InitPlayer() {
    const CMN_ConfigurationManager& config = *CMN_ConfigurationManager::GetInstance();
    player = Create<PlayerEntity>(*this, kPlayerLayer);
    player->Init();
    player->PlaceAt({config.startPosX, config.startPosY});
}

void WorldManager::InitCamera() {
    const float startZoom = CMN_ConfigurationManager::GetInstance()->startZoom;
    camera = std::make_unique<CameraEntity>();
    if (startZoom >= CameraEntity::kMinZoom && startZoom <= CameraEntity::kMaxZoom) { // else 0
        camera->zoom = startZoom;
    }
    camera->target = player;
}

void WorldManager::Update() {
    ApplyToggles();
    cellGrid.Update(player->position);
    const MutexLock lock(worldLock);
    UpdateEntities();
    camera->Update();
    DrainCallbacks();
}

void WorldManager::ApplyToggles() {
    const CMN_InputManager& input = *CMN_InputManager::GetInstance();
    if (input.IsPressed(InputAction::DebugMenu)) {
        debugMenu->active = !debugMenu->active;
    }
    if (input.IsPressed(InputAction::Map)) {
        ToggleMap();
    }
}

void WorldManager::ToggleMap() {
    mapMode = mapMode == 0 ? 1 : 0;
    map->active = mapMode == 1;
    if (mapMode == 1) {
        map->pan = ToVec2f(player->position) * map->worldToMap;
    }
}

void WorldManager::UpdateEntities() {
    const std::size_t count = entities.size(); // what is added meanwhile waits for the next tick
    for (std::size_t i = 0; i < count; ++i) {
        if (entities[i]->active) {
            entities[i]->Update();
        }
    }
}

void WorldManager::DrainCallbacks() {
    const MutexLock lock(callbackLock);
    for (const std::function<void()>& callback : callbacks) {
        callback();
    }
    callbacks.clear();
}

void WorldManager::Render() {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    const MutexLock lock(worldLock);
    {
        const MutexLock render(graphics.renderLock);
        graphics.Clear();
    }
    for (const std::vector<IEntity*>& layer : layers) {
        for (IEntity* entity : layer) {
            if (entity->active) {
                entity->Render();
            }
        }
    }
    if (showLoadedAssets) {
        ASM_AssetManager::GetInstance()->DrawLoadedAssets();
    }
    const MutexLock render(graphics.renderLock);
    graphics.Present();
}

void WorldManager::AddEntity(IEntity* entity, std::int32_t layer) {
    assert(layer >= kTerrainLayer && layer <= kMenuLayer);
    entities.push_back(entity);
    layers[static_cast<std::size_t>(layer)].push_back(entity);
}

void WorldManager::RemoveEntity(IEntity* entity) {
    const auto owned = std::find(entities.begin(), entities.end(), entity);
    const std::unique_ptr<IEntity> removed(owned == entities.end() ? nullptr : entity);
    if (removed != nullptr) { // deleted once no layer points to it
        entities.erase(owned);
    }
    for (std::vector<IEntity*>& layer : layers) {
        const auto found = std::find(layer.begin(), layer.end(), entity);
        if (found != layer.end()) {
            layer.erase(found);
            return;
        }
    }
}

TerrainCellEntity* WorldManager::CreateTerrainCellEntity() {
    const MutexLock lock(worldLock);
    auto* entity = Create<TerrainCellEntity>(*this, kTerrainLayer);
    entity->Init();
    return entity;
}

std::uint8_t WorldManager::GetTileAt(Vec2i world) const {
    const TerrainCellEntity* cell = cellGrid.FindLoaded(world / kCellSize);
    return cell == nullptr ? kTileEmpty : cell->TileAt(world);
}

void WorldManager::QueueCallback(std::function<void()> callback) {
    const MutexLock lock(callbackLock);
    callbacks.push_back(std::move(callback));
}

void WorldManager::QueueEntity(std::unique_ptr<IEntity> entity, std::int32_t layer) {
    // Shared, because a std::function must be copyable; a callback that never runs deletes it.
    const auto held = std::make_shared<std::unique_ptr<IEntity>>(std::move(entity));
    QueueCallback([this, held, layer] { AddEntity(held->release(), layer); });
}
