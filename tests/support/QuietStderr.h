// Keeps the generator's progress lines off standard error for the length of a scope.
#pragma once

#include <iostream>
#include <streambuf>

class QuietStderr {
public:
    QuietStderr() : former(std::cerr.rdbuf(&nothing)) {}
    ~QuietStderr() { std::cerr.rdbuf(former); }
    QuietStderr(const QuietStderr&) = delete;
    QuietStderr& operator=(const QuietStderr&) = delete;

private:
    // Unbuffered and stateless, so any number of threads may write to it.
    class NullBuffer : public std::streambuf {
    protected:
        int overflow(int c) override { return traits_type::not_eof(c); }
        std::streamsize xsputn(const char* /*text*/, std::streamsize count) override {
            return count;
        }
    };

    NullBuffer nothing;
    std::streambuf* former;
};
