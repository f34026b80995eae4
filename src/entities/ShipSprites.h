// The four views of the ship, sailing and anchored alike.
#pragma once

#include <array>

#include "gfx/Sprite.h"

/// New sprites by direction: 0 up, 1 down, 2 left, 3 right; null where the image is missing. The
/// graphics manager owns them. Main thread.
std::array<const Sprite*, 4> CutShipSprites();
