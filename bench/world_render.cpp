// A frame full of tiles beside a bare loop that makes the same SDL calls under the same lock.
#include "app/Application.h"
#include "entities/CameraEntity.h"
#include "entities/TerrainCellEntity.h"
#include "gfx/GFX_GraphicsManager.h"
#include "support/BenchGame.h"
#include "world/WorldManager.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

struct Copy {
    SDL_Texture* texture;
    SDL_Rect source;
    SDL_Rect destination;
};

// What the frame copies, worked out beforehand: the tiles of one cell around the window's centre.
std::vector<Copy> TileCopies(BenchGame& game) {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    const CameraEntity& camera = *game.World().camera;
    const Sprite* water = graphics.CreateSprite("image.png", 100, 0, 16, 16);
    const Sprite* hallway = graphics.CreateSprite("image.png", 100, 100, 16, 16);
    const Sprite* room = graphics.CreateSprite("terrain_transition.png", 48, 64, 16, 16);
    const Sprite* sprites[] = {water, hallway, room};
    const Vec2i cell = camera.position / kCellSize;
    const TerrainCellEntity::View view = game.World().cellGrid.FindLoaded(cell)->GetView();
    const Vec2i low = (camera.position - graphics.screenCenter - CellOrigin(cell)) / kTileSize;
    const Vec2i high = (camera.position + graphics.screenCenter - CellOrigin(cell)) / kTileSize;
    std::vector<Copy> copies;
    for (std::int32_t y = low.y; y <= high.y; ++y) {
        for (std::int32_t x = low.x; x <= high.x; ++x) {
            const Vec2i center = CellOrigin(cell) + Vec2i{x, y} * kTileSize + Vec2i{12, 12};
            const Vec2i corner =
                graphics.WorldToScreen(center, camera.position, 1.0f) - Vec2i{12, 12};
            const Sprite* sprite =
                sprites[view.dungeon == nullptr ? 0 : view.dungeon->TileAt(x, y)];
            copies.push_back(
                {sprite->texture->texture,
                 {sprite->source.x, sprite->source.y, sprite->source.w, sprite->source.h},
                 {corner.x, corner.y, kTileSize, kTileSize}});
        }
    }
    return copies;
}

// A land cell's room in the middle of the window, terrain alone active.
void LookAtLand(BenchGame& game) {
    for (std::size_t layer = 1; layer < kLayerCount; ++layer) {
        for (IEntity* entity : game.World().layers[layer]) {
            entity->active = false;
        }
    }
    game.World().camera->zoom = 1.0f;
}

void RenderWorld(benchmark::State& state) {
    BenchGame game({81756, 38940});
    LookAtLand(game);
    for (auto _ : state) {
        game.World().Render();
    }
}

void RenderBareLoop(benchmark::State& state) {
    BenchGame game({81756, 38940});
    LookAtLand(game);
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    const std::vector<Copy> copies = TileCopies(game);
    for (auto _ : state) {
        {
            const MutexLock lock(graphics.renderLock);
            SDL_RenderClear(graphics.renderer);
        }
        for (const Copy& copy : copies) {
            const MutexLock lock(graphics.renderLock);
            SDL_RenderCopy(graphics.renderer, copy.texture, &copy.source, &copy.destination);
        }
        const MutexLock lock(graphics.renderLock);
        SDL_RenderPresent(graphics.renderer);
    }
    state.counters["tiles"] = static_cast<double>(copies.size());
}

BENCHMARK(RenderBareLoop)->Unit(benchmark::kMicrosecond);
BENCHMARK(RenderWorld)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
