// Where the program's files are.
#pragma once

#include <string>

/// The executable's directory, ending in a separator; empty when SDL cannot tell. Main thread.
std::string GetBasePath();
