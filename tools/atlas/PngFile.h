// Writes pictures as PNG files.
#pragma once

#include "atlas/OutputFile.h"
#include "atlas/Picture.h"

/// Writes the picture, row by row, with a palette of the colours that it uses and nothing besides
/// (no time, no text), so that equal pictures make equal files. Throws what the file throws, and
/// std::bad_alloc.
void WritePng(const Picture& picture, OutputFile& file);
