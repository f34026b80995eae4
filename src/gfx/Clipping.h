// What of a rectangle or line lies in a window, in arithmetic that cannot overflow.
//
// SDL computes in 32-bit integers inside, where coordinates from far outside the window overflow;
// these tests keep such coordinates from reaching it. SDL coordinates (y down); any thread.
#pragma once

#include <cstdint>

#include <SDL_rect.h>

#include "gfx/Vec2.h"

/// True when some pixel of the rectangle lies in a window of this size. A rectangle without area
/// touches nothing.
bool FillTouchesWindow(const SDL_Rect& rect, Vec2i windowSize);

/// True when an outline of the rectangle, as SDL draws it, may show in a window of this size. SDL
/// draws outlines of empty and negative rectangles too, as far as one pixel before their corner.
bool OutlineTouchesWindow(const SDL_Rect& rect, Vec2i windowSize);

/// Shortens a line whose ends lie so far outside the window that SDL would overflow; a nearer line
/// stays as it is, so that its pixels do not change. False when nothing of it can show.
bool ClipLine(Vec2i& from, Vec2i& to, Vec2i windowSize);
