// The program's clock. Main thread. Only main writes it; it stands still while a tick runs.
#pragma once

#include "app/CMN_Singleton.h"

#include <cstdint>

class CMN_TimeManager : public CMN_Singleton<CMN_TimeManager> {
public:
    std::uint32_t currentTime = 0;  ///< ms since SDL's initialisation, at the start of the pass
    std::uint32_t tickInterval = 0; ///< length of a tick in ms, the time step of all movement
    std::uint32_t lastTickTime = 0; ///< `currentTime` of the pass that ran the last tick
};
