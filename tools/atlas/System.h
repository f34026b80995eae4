// What differs between systems; System.cpp does it for most, windows/AtlasSystem.cpp for Windows.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

/// Makes the process fit to write files. From now on `note` is called with the number of the signal
/// when one asks for the program's end, unless it was ignored before: in a handler or on a thread
/// of its own. A closed pipe is an error of the writer.
void PrepareSystem(void (*note)(int));

/// The path that a text names, in UTF-8 where the system has an encoding of its own for paths.
inline std::filesystem::path PathOf(const std::string& text) {
    return std::u8string(text.begin(), text.end());
}

/// Whether a file that is there may be written; if not, errno tells why.
bool IsWritable(const std::filesystem::path& path);

/// Opens a file to write bytes to, which must not be there yet if it is to be new. Null when the
/// system refuses; errno tells why. The caller closes it.
std::FILE* OpenToWrite(const std::filesystem::path& path, bool isNew);
