#include "FuzzGame.h"

#include "app/CMN_TimeManager.h"
#include "entities/PlayerEntity.h"

namespace {

GridKey PlayerCell() {
    return CellKeyAt(WorldManager::GetInstance()->player->position);
}

} // namespace

void FuzzGame::Pass(std::uint32_t milliseconds) {
    const GridKey cell = PlayerCell();
    const CMN_TimeManager& time = *CMN_TimeManager::GetInstance();
    const bool ticks = game.Now() + milliseconds >= time.tickInterval + time.lastTickTime;
    game.Pass(milliseconds);
    if (ticks) {
        StreamAround(cell);
    }
}

void FuzzGame::Tick(std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
        StreamAround(PlayerCell());
        game.TickOnly();
    }
}

void FuzzGame::Rest() {
    bool moved = true;
    while (moved) {
        moved = StreamAround(PlayerCell());
        game.Settle();
    }
    CheckWorldAtRest(model);
}

bool FuzzGame::StreamAround(const GridKey& cell) {
    // Far apart, two cells can share an id; the world takes them for one then.
    if (cell.id == lastCellId) {
        return false;
    }
    lastCellId = cell.id;
    model.MoveTo({cell.x, cell.y});
    return true;
}
