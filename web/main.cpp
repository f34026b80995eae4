// The program's entry in a browser.
//
// A page must not block, so the browser calls each pass, one for every picture that it shows. There
// are no threads either: between two passes runs one of the jobs that workers would do.
#include "app/Application.h"
#include "common/CMN_TaskManager.h"
#include "common/Portability.h"
#include "entities/AnchoredBoatEntity.h"
#include "entities/CameraEntity.h"
#include "entities/PlayerEntity.h"
#include "world/WorldManager.h"

#include <SDL_main.h>
#include <SDL_timer.h>
#include <emscripten.h>

namespace {

void Pass() {
    CMN_TaskManager::GetInstance()->RunOne();
    RunPass(SDL_GetTicks());
    if (QuitRequested()) {
        emscripten_cancel_main_loop();
        ShutDown();
        emscripten_force_exit(0);
    }
}

// Where a game could start: while the player walks, at the boat that waits.
Vec2i ShipPosition() {
    const WorldManager& world = *WorldManager::GetInstance();
    return world.player->mode == PlayerEntity::kOnFoot ? world.anchoredBoat->position
                                                       : world.player->position;
}

} // namespace

// What the page asks while the program runs: where the ship is (world units), the magnification,
// and what the direction keys act on.
extern "C" {
EMSCRIPTEN_KEEPALIVE int PlaceX() {
    return ShipPosition().x;
}
EMSCRIPTEN_KEEPALIVE int PlaceY() {
    return ShipPosition().y;
}
EMSCRIPTEN_KEEPALIVE float Zoom() {
    return WorldManager::GetInstance()->camera->zoom;
}
EMSCRIPTEN_KEEPALIVE int IsMapOpen() {
    return WorldManager::GetInstance()->mapMode;
}
}

int main(int /*argc*/, char** /*argv*/) {
    PrepareProcess();
    StartOptions options;
    options.hardwareThreads = 1; // the page's own, so that the pool starts no worker
    if (!StartUp(options)) {
        return 1; // the page shows the line that was printed
    }
    emscripten_set_main_loop(Pass, 0, true);
    return 0;
}
