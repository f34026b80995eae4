// Written by scripts/build-art: the mean colours of the tiles' images.
#pragma once

#include "atlas/Picture.h"

inline constexpr Color kWaterTile{28, 88, 128};
inline constexpr Color kHallwayTile{126, 121, 115};
inline constexpr Color kRoomTile{108, 135, 67};
