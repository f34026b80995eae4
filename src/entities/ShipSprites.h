// The four views of the ship, sailing and anchored alike.
#pragma once

#include <array>
#include <cstdint>

#include "gfx/Sprite.h"

/// Where a ship or figure heads; the world's y grows upward.
enum Direction : std::int32_t { kUp, kDown, kLeft, kRight };

/// New sprites by `Direction`; null where the image is missing. The
/// graphics manager owns them. Main thread.
std::array<const Sprite*, 4> CutShipSprites();
