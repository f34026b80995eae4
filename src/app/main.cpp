#include "app/Application.h"
#include "common/Portability.h"

#include <SDL_main.h>
#include <SDL_timer.h>

#include <cstdio>

int main(int /*argc*/, char** /*argv*/) {
    PrepareProcess();
    if (!StartUp()) {
        // Leaves the error readable in a console window that closes with the program.
        std::getchar();
        return 1;
    }
    RunLoop(SDL_GetTicks);
    ShutDown();
    return 0;
}
