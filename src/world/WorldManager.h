// Owns everything that lives in the world: the entities in their drawing layers, the streaming of
// terrain cells, the state of map and debug drawing, and the queue of callbacks through which other
// threads change the world.
//
// Main thread only, but for QueueCallback and QueueEntity. Lock order: the world lock before the
// callback lock and before the graphics manager's render lock.
#pragma once

#include "app/CMN_Singleton.h"
#include "common/Mutex.h"
#include "gfx/Vec2.h"
#include "world/CellGrid.h"
#include "world/IEntity.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class AnchoredBoatEntity;
class CameraEntity;
class DebugMenuEntity;
class MapEntity;
class PlayerEntity;
class TerrainCellEntity;

/// Drawing layers, from the bottom up.
inline constexpr std::int32_t kTerrainLayer = 0;
inline constexpr std::int32_t kSpawnedLayer = 2; ///< enemies and compass markers
inline constexpr std::int32_t kPlayerLayer = 3;
inline constexpr std::int32_t kHudLayer = 4;
inline constexpr std::int32_t kMapLayer = 5;
inline constexpr std::int32_t kMenuLayer = 6;
inline constexpr std::size_t kLayerCount = std::size_t{kMenuLayer} + 1;

class WorldManager : public CMN_Singleton<WorldManager> {
public:
    WorldManager();
    ~WorldManager() override;

    /// Builds the fixed entities from the configuration. Always true. Uses neither input nor store.
    bool Init();

    /// One tick: toggles, streaming, entities, camera, queued callbacks.
    void Update() VESK_EXCLUDES(worldLock, callbackLock);

    /// Draws and presents one frame.
    void Render() VESK_EXCLUDES(worldLock);

    /// Adds an entity, which the world owns from now on, to a layer from 0 to 6.
    void AddEntity(IEntity* entity, std::int32_t layer);

    /// Takes an entity out of the world and deletes it; one that is not in the world is only taken
    /// out of the first layer that holds it. Not from an entity's Update: queue a callback there.
    void RemoveEntity(IEntity* entity);

    /// A new terrain entity in layer 0, owned by the world.
    TerrainCellEntity* CreateTerrainCellEntity() VESK_EXCLUDES(worldLock);

    /// The tile under a world position among the loaded cells; 0 (water) elsewhere.
    std::uint8_t GetTileAt(Vec2i world) const;

    /// Queues a callback (not empty) for the main thread; it runs at the end of the next tick, in
    /// the order queued. Any thread, but no callback may call it.
    void QueueCallback(std::function<void()> callback) VESK_EXCLUDES(callbackLock);

    /// Hands an entity over: queues a callback that owns it and adds it to a layer. Any thread, but
    /// no callback may call it.
    void QueueEntity(std::unique_ptr<IEntity> entity, std::int32_t layer)
        VESK_EXCLUDES(callbackLock);

    PlayerEntity* player = nullptr;
    std::unique_ptr<CameraEntity> camera; ///< in no layer and not among the entities
    AnchoredBoatEntity* anchoredBoat = nullptr;
    MapEntity* map = nullptr;
    DebugMenuEntity* debugMenu = nullptr;
    std::vector<IEntity*> entities; ///< owned; in the order added and updated
    /// Seven; each in the order added and drawn.
    std::vector<std::vector<IEntity*>> layers{kLayerCount};
    Mutex worldLock; ///< held by Update from the entities on, and by Render
    CellGrid cellGrid;
    std::int32_t mapMode = 0; ///< 0 normal view, 1 map view
    Mutex callbackLock;
    std::vector<std::function<void()>> callbacks VESK_GUARDED_BY(callbackLock); ///< oldest first

    // Debug drawing, switched by the debug menu.
    bool renderCellBorder = false;
    bool renderDungeonRooms = false;
    bool renderMinSpanningTree = false;
    bool renderHallways = false;
    bool showPlayerInfo = false;
    bool showLoadedAssets = false;

private:
    void InitTerrainCells();
    void InitPlayer();
    void InitCamera();
    void ApplyToggles();
    void ToggleMap();
    void UpdateEntities();
    void DrainCallbacks() VESK_EXCLUDES(callbackLock);
};
