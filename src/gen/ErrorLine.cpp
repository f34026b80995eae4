#include "gen/ErrorLine.h"

#include <iostream>

void WriteErrorLine(std::string text) {
    text += '\n';
    std::cerr.write(text.data(), static_cast<std::streamsize>(text.size()));
}
