// Golden files: reading, comparing and writing what was found instead.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

inline std::string ReadFile(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// Keeps what a test has found under the build folder.
inline void WriteFound(const std::string& name, const std::string& text) {
    std::filesystem::create_directories(VESK_FOUND);
    std::ofstream(VESK_FOUND + ('/' + name)) << text;
}

/// The first lines that differ; empty when none does.
inline std::string FirstDifference(const std::string& expected, const std::string& found) {
    std::istringstream left(expected);
    std::istringstream right(found);
    int line = 1;
    for (std::string a, b; !left.eof() || !right.eof(); a.clear(), b.clear(), ++line) {
        std::getline(left, a);
        std::getline(right, b);
        if (a != b) {
            return "line " + std::to_string(line) + "\nexpected " + a + "\nfound " + b;
        }
    }
    return "";
}
