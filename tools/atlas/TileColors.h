// Written by scripts/build-art: the mean colours of the tiles' images.
#pragma once

#include "atlas/Picture.h"

inline constexpr Color kWaterTile{33, 98, 139};
inline constexpr Color kHallwayTile{123, 118, 112};
inline constexpr Color kRoomTile{105, 132, 64};
