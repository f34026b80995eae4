// Keeps the generator's progress lines off standard error for the length of a scope.
#pragma once

#include <iostream>
#include <streambuf>

/// Unbuffered and stateless, so any number of threads may write to it. Made and destroyed while no
/// other thread does.
class QuietStderr : private std::streambuf {
public:
    QuietStderr() : former(std::cerr.rdbuf(this)) {}
    ~QuietStderr() override { std::cerr.rdbuf(former); }
    QuietStderr(const QuietStderr&) = delete;
    QuietStderr& operator=(const QuietStderr&) = delete;

private:
    /// Called for everything that is said, on the thread that says it.
    virtual void OnOutput() {}

    int overflow(int c) override {
        OnOutput();
        return traits_type::not_eof(c);
    }

    std::streamsize xsputn(const char* /*text*/, std::streamsize count) override {
        OnOutput();
        return count;
    }

    std::streambuf* former;
};
