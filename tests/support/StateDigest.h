// The state of the running game as a list of digests, one per part of it, for comparing runs.
//
// What depends on the timing of load jobs alone, as the order of different cells' enemies in their
// layer, is left out, and so is what is drawn anyway: menu, radar, flags. Main thread.
#pragma once

#include "WorldDigest.h"
#include "input/CMN_InputManager.h"
#include "world/IEntity.h"

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

void AddTo(Digest& digest, const CMN_InputManager::Timer& timer);
void AddTo(Digest& digest, const IEntity* entity);

using StateDigest = std::vector<std::pair<std::string_view, std::uint64_t>>;

/// What must be equal after every tick, whatever the loads are doing.
StateDigest DigestTick();

/// What must be equal as well whenever the world is at rest: slots with their dungeons, enemies and
/// markers, the layers, the reference counts.
StateDigest DigestRest();
