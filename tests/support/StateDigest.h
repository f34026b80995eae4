// The state of the running game as a list of digests, one per part of it, for comparing runs.
//
// What depends on the timing of load jobs alone, as the order of different cells' enemies in their
// layer, is left out; everything else takes part. Main thread.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

using StateDigest = std::vector<std::pair<std::string_view, std::uint64_t>>;

/// What must be equal after every tick, whatever the loads are doing.
StateDigest DigestTick();

/// What must be equal as well whenever the world is at rest: slots with their dungeons, enemies and
/// markers, the layers, the reference counts.
StateDigest DigestRest();
