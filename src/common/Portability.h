// What differs between systems, and where the program's files are. On Windows,
// windows/Portability.cpp takes the place of Portability.cpp.
#pragma once

#include <SDL_filesystem.h>
#include <SDL_stdinc.h>

#include <cstdio>
#include <memory>
#include <string>

/// The character between the parts of a path on this system.
#if defined(_WIN32)
inline constexpr char kPathSeparator = '\\';
#else
inline constexpr char kPathSeparator = '/';
#endif

/// Makes the process fit to run; first of all, on the main thread. Standard streams that are
/// closed are opened on the null device, so that no file or connection opened later takes their
/// place and receives what is printed. Output that nobody reads is lost: a closed pipe does not end
/// the program, and, except on Windows, a full one on standard error does not block it. A hang-up
/// (the terminal or the console's window closes, or on Windows the session ends) ends it as the
/// termination signal does.
void PrepareProcess();

/// The executable's directory, ending in a separator; empty when SDL cannot tell. Main thread.
inline std::string GetBasePath() {
    const std::unique_ptr<char, decltype(&SDL_free)> path(SDL_GetBasePath(), SDL_free);
    return path ? path.get() : "";
}

/// Opens a regular file, whose path is UTF-8 on Windows, as fopen_s does: 0 on success, an error
/// number otherwise, *file null then. Anything else, such as a directory, a pipe or a device,
/// counts as missing. The caller owns the file and closes it with fclose. Any thread.
int OpenFile(std::FILE** file, const std::string& path, const char* mode);
