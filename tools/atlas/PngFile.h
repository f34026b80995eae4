// Writes pictures as PNG files.
#pragma once

#include <string>

#include "atlas/Picture.h"

/// Writes the picture with a palette of the colours that it uses and nothing besides (no time, no
/// text), so that equal pictures make equal files. Returns an empty text, or why the file could not
/// be written; then there is none.
std::string WritePng(const Picture& picture, const std::string& file);
