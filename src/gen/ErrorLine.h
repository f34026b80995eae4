// Lines on standard error.
#pragma once

#include <iostream>
#include <string>

/// Writes the text and the end of the line. Any thread may call: each line goes out in one write,
/// so that the lines of several threads do not mix.
inline void WriteErrorLine(std::string text) {
    text += '\n';
    std::cerr.write(text.data(), static_cast<std::streamsize>(text.size()));
}
