// The rule that finds the data directory; pure, so that it can be tested with any base and system.
#pragma once

#include <cstdint>
#include <string>

/// The data directory, ending in `separator`. `base` is the executable's directory with a separator
/// at its end. Mode 0: data/ beside the executable. Mode 1: data/ three directories above it, found
/// by cutting `base` four times before its last separator (a text without one stays as it is). Any
/// other mode: empty.
std::string DataPath(std::string base, std::int32_t mode, char separator);
