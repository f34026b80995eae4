// The state of the running game in words, one text per part of it, for comparing runs.
//
// What is too much for a line ends in a digest, as "content 1a2b". What depends on the timing of
// load jobs alone, as the order of different cells' enemies in their layer, is left out, and so is
// what is drawn anyway: menu, radar, flags. Main thread.
#pragma once

#include "WorldDigest.h"

#include <iomanip>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using WorldState = std::vector<std::pair<std::string_view, std::string>>;

/// What must be equal after every tick, whatever the loads are doing.
WorldState DescribeTick();

/// What must be equal as well whenever the world is at rest: slots with their dungeons, enemies and
/// markers, the layers, the reference counts.
WorldState DescribeRest();

std::ostream& operator<<(std::ostream& out, Vec2i v);
std::ostream& operator<<(std::ostream& out, Vec2f v);

/// The values one after the other, floats exactly.
template <typename... Values>
std::string Text(const Values&... values) {
    std::ostringstream text;
    text << std::setprecision(9);
    (text << ... << values);
    return text.str();
}

/// Four hexadecimal digits for values of any number.
template <typename... Values>
std::string Short(const Values&... values) {
    const std::uint64_t digest = Digest().Add(values...).Value() >> 40U & 0xffffU;
    return Text(std::hex, std::setw(4), std::setfill('0'), digest);
}
