// Keeps away from SDL what would overflow its 32-bit clipping.
//
// SDL clips in 32-bit integers. Coordinates from far outside the window would overflow there. SDL
// coordinates (y down); any thread.
#pragma once

#include "gfx/Vec2.h"

#include <SDL_rect.h>

/// True when some pixel of the rectangle lies in a window of this size. A rectangle without area
/// touches nothing.
bool TouchesWindow(const SDL_Rect& rect, Vec2i windowSize);

/// True when SDL's own clipping of the rectangle, whatever its sides, does not overflow.
bool SuitsClipping(const SDL_Rect& rect);

/// Shortens a line whose ends lie so far outside the window that SDL would overflow; a nearer line
/// stays as it is, so that its pixels do not change. False when nothing of it can show.
bool ClipLine(Vec2i& from, Vec2i& to, Vec2i windowSize);
