// A log of the drawing calls that the game makes, in place of pixels: as strict, readable, and the
// same with every version of SDL and of the font.
//
// The linker sends SDL's calls through here (its option --wrap) in every program that links the
// test support. One line a call: the number of SDL locks that the thread holds, the call, what it
// draws (a texture by its file, "text" for rendered text), where, and the colour:
//
//   2 copy ships.png 0,64,32,32 -> 308,228,24,24
//   2 line 0,12 -> 640,12 in 255,0,0,255
//
// What lies wholly outside the window, or has no area, is left out. A clear tells its colour only
// when it is not the one of the first clear.
#pragma once

#include <string>

/// The lines since the last call.
std::string TakeDrawLog();

/// Forgets lines and the colour of the first clear.
void ResetDrawLog();

/// How many SDL locks this thread holds.
int LocksHeld();
