#include "FuzzGame.h"

#include "app/CMN_TimeManager.h"
#include "entities/PlayerEntity.h"

bool FuzzGame::Follow() {
    return model.Follow(game.World().player->position);
}

void FuzzGame::Pass(std::uint32_t milliseconds) {
    const CMN_TimeManager& time = *CMN_TimeManager::GetInstance();
    if (game.Now() + milliseconds >= time.tickInterval + time.lastTickTime) {
        Follow();
    }
    game.Pass(milliseconds);
}

void FuzzGame::Tick(std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
        Follow();
        game.TickOnly();
    }
}

void FuzzGame::Rest() {
    bool moved = true;
    while (moved) {
        moved = Follow();
        game.Settle();
    }
    CheckWorldAtRest(model);
}
