// Written by scripts/build-art: the mean colours of the tiles' images.
#pragma once

#include "atlas/Picture.h"

inline constexpr Color kWaterTile{33, 98, 139};
inline constexpr Color kHallwayTile{105, 107, 115};
inline constexpr Color kRoomTile{160, 134, 80};
