// Written by scripts/build-art: what shows where nothing is drawn.
#pragma once

#include <SDL_pixels.h>

/// The mean colour of the water tile.
inline constexpr SDL_Color kSeaColor{28, 88, 128, 255};
