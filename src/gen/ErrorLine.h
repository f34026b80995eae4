// Lines on standard error. Any thread may call: each line goes out in one write, so that lines of
// several threads do not mix.
#pragma once

#include <string>

/// Writes the text and the end of the line.
void WriteErrorLine(std::string text);
