// The state of the running game as a list of short digests, one per part of it, for comparing runs.
//
// What depends on the timing of load jobs alone, as the order of different cells' enemies in their
// layer, is left out; everything else takes part. Main thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct DigestPart {
    std::string_view name; ///< a literal
    std::uint64_t value = 0;

    friend bool operator==(const DigestPart&, const DigestPart&) = default;
};

using StateDigest = std::vector<DigestPart>;

/// What must be equal after every tick, whatever the loads are doing.
StateDigest DigestTick();

/// What must be equal as well whenever the world is at rest: slots with their dungeons, enemies and
/// markers, the layers, the reference counts.
StateDigest DigestRest();

/// The names of the parts that differ, separated by commas.
std::string DifferingParts(const StateDigest& a, const StateDigest& b);
