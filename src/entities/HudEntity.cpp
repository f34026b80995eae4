#include "entities/HudEntity.h"

#include "entities/PlayerEntity.h"
#include "gen/GridKey.h"
#include "gfx/GFX_GraphicsManager.h"
#include "world/ASM_AssetManager.h"
#include "world/WorldManager.h"

#include <cmath>

namespace {

constexpr std::int32_t kMargin = 10; // window pixels
constexpr std::int32_t kReach = 3;   // cells to each side of the player's

Vec2i SizeOf(const TextureInfo* texture) {
    return texture == nullptr ? Vec2i{} : Vec2i{texture->width, texture->height};
}

} // namespace

bool HudEntity::Init() {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    compassTexture = graphics.GetTexture("hud_compass.png");
    islandTexture = graphics.GetTexture("island_icon.png");
    const Vec2i half = SizeOf(compassTexture) * 0.5f;
    position = {WrapSub(graphics.width, half.x + kMargin), half.y + kMargin};
    icons.reserve(10);
    return true;
}

void HudEntity::Update() {
    const Vec2i player = WorldManager::GetInstance()->player->position;
    constexpr auto cellSize = static_cast<float>(kCellSize);
    const Vec2f inCells{static_cast<float>(player.x) / cellSize,
                        static_cast<float>(player.y) / cellSize};
    const Vec2f shifted = inCells - Vec2f{0.5f, 0.5f}; // a whole number at a cell's centre
    const Vec2i coords = player / kCellSize;
    icons.clear();
    for (std::int32_t x = coords.x - kReach; x <= coords.x + kReach; ++x) {
        for (std::int32_t y = coords.y - kReach; y <= coords.y + kReach; ++y) {
            if (ASM_AssetManager::GetInstance()->IsLand({x, y})) {
                icons.push_back(IconFor({x, y}, shifted));
            }
        }
    }
}

Vec2i HudEntity::IconFor(Vec2i coords, Vec2f playerInCells) const {
    Vec2f offset = ToVec2f(coords) - playerInCells;
    offset.y = -offset.y; // the window's y grows downward
    offset = offset * pixelsPerCell;
    const float length = std::sqrt(offset.x * offset.x + offset.y * offset.y);
    if (length > radius) {
        offset = offset * (radius / length);
    }
    return position + ToVec2i(offset);
}

void HudEntity::Render() {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    graphics.DrawTextureCentered(compassTexture, position);
    for (const Vec2i& icon : icons) {
        graphics.DrawTextureCentered(islandTexture, icon);
    }
}
