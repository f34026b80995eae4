#include "common/Portability.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace {

char LowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

int OpenFile(std::FILE** file, const std::string& path, const char* mode) {
    *file = nullptr;
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        return EISDIR;
    }
#if defined(_WIN32)
    return fopen_s(file, path.c_str(), mode);
#else
    *file = std::fopen(path.c_str(), mode);
    return *file == nullptr ? errno : 0;
#endif
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}
