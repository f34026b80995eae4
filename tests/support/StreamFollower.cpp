#include "support/StreamFollower.h"

#include "entities/PlayerEntity.h"
#include "world/WorldManager.h"

bool StreamFollower::BeforeTick() {
    const GridKey cell = CellKeyAt(WorldManager::GetInstance()->player->position);
    // Far apart, two cells can share an id; the world takes them for one then.
    if (cell.id == lastCellId) {
        return false;
    }
    lastCellId = cell.id;
    model.MoveTo({cell.x, cell.y});
    return true;
}
