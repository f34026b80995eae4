#include "gen/ErrorLine.h"

#include <iostream>

void WriteErrorLine(std::string text) {
    text += '\n';
    std::cerr << text;
}
