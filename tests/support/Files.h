// Golden files: reading, comparing and writing what was found instead.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

inline std::string ReadFile(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// The values of a golden file, of which each ends with a semicolon or its line, behind the line's
/// number. The last one tells the end.
inline std::vector<std::string> GoldenValues(const std::string& text) {
    std::vector<std::string> values;
    std::istringstream lines(text + "\nthe end");
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        const std::string place = "line " + std::to_string(++number) + ": ";
        std::istringstream parts(line);
        for (std::string part; std::getline(parts, part, ';');) {
            values.push_back(place + part);
        }
    }
    return values;
}

/// The first value that differs from a golden file's, with what was expected; empty when none does.
/// All that was found is kept under the build folder.
inline std::string CompareGolden(const std::filesystem::path& golden, const std::string& found) {
    std::filesystem::create_directories(VESK_FOUND);
    std::ofstream(std::filesystem::path(VESK_FOUND) / golden.filename()) << found;
    const std::vector<std::string> left = GoldenValues(ReadFile(golden));
    const std::vector<std::string> right = GoldenValues(found);
    const auto [a, b] = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
    return a == left.end() ? "" : *b + "; expected " + *a;
}
