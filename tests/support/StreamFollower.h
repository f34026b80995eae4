// Keeps the model of the streamed cells in step with a running game, tick by tick. Main thread.
#pragma once

#include <cstdint>

#include "gen/GridKey.h"
#include "support/WorldInvariants.h"

class StreamFollower {
public:
    /// To be called before every tick: the tick streams around the place where the player is now.
    /// True when that is another cell than in the tick before.
    bool BeforeTick();

    const SlotModel& Model() const { return model; }

private:
    SlotModel model;
    std::int32_t lastCellId = kUnsetId;
};
