// The player's ship and, on land, the player on foot.
//
// Moves from tile centre to tile centre in four directions. Sailing onto land leaves the ship
// anchored on the last water tile; only that tile leads back to the water. Main thread; owned by
// the world manager.
#pragma once

#include "gen/GridKey.h"
#include "gfx/Sprite.h"
#include "world/IEntity.h"

#include <array>
#include <cstdint>
#include <vector>

class PlayerEntity : public IEntity {
public:
    static constexpr std::int32_t kSailing = 0;
    static constexpr std::int32_t kOnFoot = 1;

    /// Cuts the sprites, which the graphics manager owns, and puts the ship on tile (0, 0).
    void Init();

    /// Puts the player on the centre of the tile that holds a world position, and ends a move that
    /// is under way.
    void PlaceAt(Vec2i world);

    void Update() override;
    void Render() override;

    float waterSpeed = 1200.0f;           ///< world units per second
    float landSpeed = 120.0f;             ///< world units per second
    std::int32_t direction = 3;           ///< of `Direction`: 0 up, 1 down, 2 left, 3 right
    std::array<Sprite*, 4> shipSprites{}; ///< by direction
    std::array<Sprite*, 4> walkSprites{}; ///< by direction
    Vec2f exactPosition;                  ///< world units; `position` is its truncation
    Vec2i targetTile;                     ///< centre of the tile the move goes to, world units
    Vec2f moveVector;                     ///< unit vector of the move
    std::uint8_t tileType = 0;            ///< tile value the player is on
    std::int32_t mode = kSailing;         ///< kSailing or kOnFoot
    float speed = 0.0f;                   ///< world units per second
    bool idle = true;                     ///< no move is under way

private:
    bool IsOnTileCenter() const;
    void StartMove(std::int32_t newDirection);
    void EnterTile(std::uint8_t tile);
    void BoardShip();
    void LeaveShip();
    void Advance();
    void RenderInfo() const;
    static void RenderNeighborLinks(Vec2i from, const std::vector<GridKey>& neighbors);
};
