#include "FuzzGame.h"

#include "app/CMN_TimeManager.h"

void FuzzGame::Pass(std::uint32_t milliseconds) {
    const CMN_TimeManager& time = *CMN_TimeManager::GetInstance();
    if (game.Now() + milliseconds >= time.tickInterval + time.lastTickTime) {
        follower.BeforeTick();
    }
    game.Pass(milliseconds);
}

void FuzzGame::Tick(std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
        follower.BeforeTick();
        game.TickOnly();
    }
}

void FuzzGame::Rest() {
    bool moved = true;
    while (moved) {
        moved = follower.BeforeTick();
        game.Settle();
    }
    CheckWorldAtRest(follower.Model());
}
