// The few runtime-library calls whose names differ between systems, in one place.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

/// The character between the parts of a path on this system.
#if defined(_WIN32)
inline constexpr char kPathSeparator = '\\';
#else
inline constexpr char kPathSeparator = '/';
#endif

/// Opens a file as fopen_s does: 0 on success, an error number otherwise, *file null then. A
/// directory counts as an error on every system. The caller owns the file and closes it with
/// fclose.
int OpenFile(std::FILE** file, const std::string& path, const char* mode);

/// True when both texts are equal but for the case of ASCII letters.
bool EqualIgnoringCase(std::string_view a, std::string_view b);
