// A file that is there when it is whole, and else not at all.
#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

/// Writes beside its target, under a name of its own, and takes the target's place at the end. A
/// link stays one: what it leads to is replaced. Devices, pipes and "-", the standard output, are
/// written straight. One thread at a time.
class OutputFile {
public:
    /// Opens the file. Throws std::system_error, as do the others, when the system refuses, with
    /// the target's name; an interrupted program throws Interrupted.
    explicit OutputFile(std::string target);
    /// Removes what was written unless it is in its place.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void Write(const void* bytes, std::size_t count);
    void Write(std::string_view text) { Write(text.data(), text.size()); }
    /// Ends the writing. Several files are all closed before the first is put in its place.
    void Close();
    /// Puts the closed file in its place.
    void PutInPlace();

private:
    using Handle = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

    [[noreturn]] void Fail(int error) const;
    Handle Open(const std::filesystem::path& path) const;

    std::string target;          // as it was given
    std::filesystem::path place; // where links lead to; empty for what is written straight
    std::filesystem::path draft;
    Handle file;
};

/// Whether two targets are one file, by whatever names.
bool IsSameFile(const std::string& a, const std::string& b);
