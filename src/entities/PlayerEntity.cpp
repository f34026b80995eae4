#include "entities/PlayerEntity.h"

#include "app/CMN_TimeManager.h"
#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/TerrainCellEntity.h"
#include "gen/GridKey.h"
#include "gfx/Colors.h"
#include "gfx/DebugText.h"
#include "gfx/GFX_GraphicsManager.h"
#include "input/CMN_InputManager.h"
#include "world/WorldManager.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace {

constexpr float kInputThreshold = 0.8f;
constexpr std::int32_t kHalfTile = kTileSize / 2;

constexpr std::array<Vec2f, 4> kMoveVectors{Vec2f{0, 1}, Vec2f{0, -1}, Vec2f{-1, 0}, Vec2f{1, 0}};
static_assert(kMoveVectors[Direction::Up].y > 0 && kMoveVectors[Direction::Down].y < 0 &&
              kMoveVectors[Direction::Left].x < 0 && kMoveVectors[Direction::Right].x > 0);

float Length(Vec2f v) {
    return std::sqrt(v.x * v.x + v.y * v.y);
}

// The direction that the player asks for, or -1. A horizontal input wins over a vertical one.
std::int32_t ChosenDirection() {
    const CMN_InputManager& input = *CMN_InputManager::GetInstance();
    const float horizontal = input.ActionValue(InputAction::MoveHorizontal);
    const float vertical = input.ActionValue(InputAction::MoveVertical);
    if (horizontal < -kInputThreshold) {
        return Direction::Left;
    }
    if (horizontal > kInputThreshold) {
        return Direction::Right;
    }
    if (vertical > kInputThreshold) {
        return Direction::Up;
    }
    return vertical < -kInputThreshold ? Direction::Down : -1;
}

Vec2i CellCenter(const GridKey& key) {
    constexpr Vec2i half{kCellSize / 2, kCellSize / 2};
    return CellOrigin(key.Coords()) + half;
}

} // namespace

void PlayerEntity::Init() {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    shipSprites = CutShipSprites();
    walkSprites[Direction::Down] = graphics.CreateSprite("link_raw.png", 0, 0, 16, 16);
    walkSprites[Direction::Left] = graphics.CreateSprite("link_raw.png", 30, 0, 16, 16);
    walkSprites[Direction::Up] = graphics.CreateSprite("link_raw.png", 62, 0, 16, 16);
    walkSprites[Direction::Right] = graphics.CreateSprite("link_raw.png", 91, 0, 16, 16);
    position = {kHalfTile, kHalfTile};
    exactPosition = ToVec2f(position);
    speed = waterSpeed;
}

void PlayerEntity::PlaceAt(Vec2i world) {
    const Vec2i withinTile{world.x % kTileSize, world.y % kTileSize};
    position = world - withinTile + Vec2i{kHalfTile, kHalfTile};
    exactPosition = ToVec2f(position);
    tileType = WorldManager::GetInstance()->GetTileAt(position);
    idle = true;
}

void PlayerEntity::Update() {
    if (IsOnTileCenter()) {
        const std::int32_t chosen = ChosenDirection();
        if (chosen >= 0) {
            StartMove(chosen);
        }
    }
    if (!idle) {
        Advance();
    }
}

bool PlayerEntity::IsOnTileCenter() const {
    // The remainder keeps the coordinate's sign, so no negative position is on a tile centre.
    return position.x % kTileSize == kHalfTile && position.y % kTileSize == kHalfTile;
}

void PlayerEntity::StartMove(std::int32_t newDirection) {
    direction = newDirection;
    moveVector = kMoveVectors[static_cast<std::size_t>(direction)];
    idle = false;
    targetTile = position + ToVec2i(moveVector) * kTileSize;
    const std::uint8_t tile = WorldManager::GetInstance()->GetTileAt(targetTile);
    if (tile != tileType) {
        EnterTile(tile);
    }
}

void PlayerEntity::EnterTile(std::uint8_t tile) {
    if (tile == kTileEmpty) {
        if (WorldManager::GetInstance()->anchoredBoat->position == targetTile) {
            BoardShip();
        } else {
            idle = true; // turned, but the water is in the way
        }
    } else if (tile == kTileHallway || tile == kTileRoom) {
        if (tileType == kTileEmpty) {
            LeaveShip();
        }
        tileType = tile;
    }
}

void PlayerEntity::BoardShip() {
    WorldManager::GetInstance()->anchoredBoat->active = false;
    speed = waterSpeed;
    mode = kSailing;
    tileType = kTileEmpty;
}

void PlayerEntity::LeaveShip() {
    AnchoredBoatEntity& boat = *WorldManager::GetInstance()->anchoredBoat;
    boat.position = position;
    boat.direction = direction;
    boat.active = true;
    speed = landSpeed;
    mode = kOnFoot;
}

void PlayerEntity::Advance() {
    const std::uint32_t interval = CMN_TimeManager::GetInstance()->tickInterval;
    const float distance = static_cast<float>(interval) * speed * 0.001f;
    const Vec2f step = moveVector * distance;
    const Vec2f remaining = exactPosition - ToVec2f(targetTile);
    if (Length(step) > Length(remaining)) {
        idle = true;
        exactPosition = ToVec2f(targetTile);
    } else {
        exactPosition = exactPosition + step;
    }
    position = ToVec2i(exactPosition);
}

void PlayerEntity::Render() {
    const WorldManager& world = *WorldManager::GetInstance();
    const auto& sprites = mode == kSailing ? shipSprites : walkSprites;
    GFX_GraphicsManager::GetInstance()->DrawSpriteSized(
        sprites[static_cast<std::size_t>(direction)], position, world.camera->position,
        world.camera->zoom, kTileSize);
    if (world.showPlayerInfo) {
        RenderInfo();
    }
}

void PlayerEntity::RenderInfo() const {
    const GridKey key = CellKeyAt(position);
    const GridKey cluster = ClusterKeyOfCell(key.Coords());
    DrawDebugLine(0, "World Position %d %d", position.x, position.y);
    DrawDebugLine(1, "Cell Id %d (%d %d)", key.id, key.x, key.y);
    DrawDebugLine(2, "Cluster Id %d (%d %d)", cluster.id, cluster.x, cluster.y);
    const TerrainCellEntity* entity =
        WorldManager::GetInstance()->cellGrid.FindLoaded(key.Coords());
    if (entity != nullptr) {
        const std::vector<GridKey> neighbors = entity->GetNeighbors();
        DrawDebugLine(3, "Neighbors %zd", static_cast<std::ptrdiff_t>(neighbors.size()));
        RenderNeighborLinks(CellCenter(entity->GetView().key), neighbors);
    }
}

void PlayerEntity::RenderNeighborLinks(Vec2i from, const std::vector<GridKey>& neighbors) {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    const CameraEntity& camera = *WorldManager::GetInstance()->camera;
    const DrawColorScope scope(graphics.renderer, kWhite);
    for (const GridKey& neighbor : neighbors) {
        const MutexLock lock(graphics.renderLock);
        graphics.DrawScreenLine(
            graphics.WorldToScreen(from, camera.position, camera.zoom),
            graphics.WorldToScreen(CellCenter(neighbor), camera.position, camera.zoom));
    }
}
