// Writes pictures as PNG files.
#pragma once

#include "atlas/Picture.h"

#include <string>

/// Writes the picture with a palette of the colours that it uses and nothing besides (no time, no
/// text), so that equal pictures make equal files. Returns an empty text, or why the file could not
/// be written; then there is none.
std::string WritePng(const Picture& picture, const std::string& file);
