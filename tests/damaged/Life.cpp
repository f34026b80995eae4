// A short life of the whole program that draws everything it can draw: every overlay, the menu, the
// map near and far, the ship, the figure, enemies and markers. Starts and ends as the game does,
// with a clock of its own; the test beside it damages the files that it finds.
#include "app/Application.h"
#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/MapEntity.h"
#include "entities/PlayerEntity.h"
#include "ui/DebugMenuEntity.h"
#include "world/WorldManager.h"

#include <SDL.h>

#include <cstdint>
#include <cstdio>

namespace {

constexpr std::uint32_t kDeadline = 120000; // ms

std::uint32_t Clock() {
    static std::uint32_t now = 0;
    now += 16;
    return now;
}

WorldManager& World() {
    return *WorldManager::GetInstance();
}

void Frames(int count) {
    for (int i = 0; i < count; ++i) {
        RunPass(Clock());
    }
}

void Push(std::uint32_t type, SDL_Keycode key) {
    SDL_Event event{};
    event.type = type;
    event.key.keysym.sym = key;
    SDL_PushEvent(&event);
}

void ShowEverything() {
    World().renderCellBorder = true;
    World().renderDungeonRooms = true;
    World().renderMinSpanningTree = true;
    World().renderHallways = true;
    World().showPlayerInfo = true;
    World().showLoadedAssets = true;
    World().map->showCompasses = true;
    World().debugMenu->active = true;
}

void LookAtMap() {
    Push(SDL_KEYDOWN, SDLK_BACKSPACE);
    Frames(3);
    Push(SDL_KEYUP, SDLK_BACKSPACE);
    Frames(2);
    World().map->zoom = World().map->detailZoom;
    Frames(2);
}

// Among the enemies, when there are any, with the ship's picture and with the figure's.
void WalkAbout() {
    if (!World().layers[kSpawnedLayer].empty()) {
        World().player->PlaceAt(World().layers[kSpawnedLayer].front()->position);
        World().camera->position = World().player->position;
    }
    for (const SDL_Keycode key : {SDLK_d, SDLK_w, SDLK_a, SDLK_s}) {
        Push(SDL_KEYDOWN, key);
        Frames(2);
        World().player->mode = PlayerEntity::kOnFoot;
        World().anchoredBoat->active = true;
        Frames(2);
        World().player->mode = PlayerEntity::kSailing;
    }
}

} // namespace

int main(int /*argc*/, char** /*argv*/) {
    if (!StartUp()) {
        std::getchar();
        return 1;
    }
    Frames(2);
    if (!World().cellGrid.WaitForLoads(kDeadline)) {
        std::puts("a load does not end");
        return 3;
    }
    Frames(2);
    ShowEverything();
    Frames(2);
    LookAtMap();
    WalkAbout();
    Push(SDL_KEYDOWN, SDLK_ESCAPE);
    RunLoop(Clock);
    ShutDown();
    return 0;
}
