// A file that lives as long as its object.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& content) {
        std::ofstream(path, std::ios::binary) << content;
    }
    ~TemporaryFile() {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    std::string Path() const { return path.string(); }

private:
    inline static int count = 0;
    std::filesystem::path path =
        std::filesystem::temp_directory_path() /
        ("vesk-test-" + std::to_string(getpid()) + "-" + std::to_string(++count) + ".ini");
};
