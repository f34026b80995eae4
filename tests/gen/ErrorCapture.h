// Keeps standard error out of the test log, and its text for the test to look at.
#pragma once

#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>

/// Sends standard error to a buffer while it lives. One at a time.
class ErrorRedirect {
public:
    explicit ErrorRedirect(std::streambuf* buffer) : before(std::cerr.rdbuf(buffer)) {}
    ~ErrorRedirect() { std::cerr.rdbuf(before); }
    ErrorRedirect(const ErrorRedirect&) = delete;
    ErrorRedirect& operator=(const ErrorRedirect&) = delete;

private:
    std::streambuf* before;
};

/// Collects what one thread writes while it lives.
struct ErrorCapture {
    std::string Text() const { return text.str(); }

    std::ostringstream text;
    ErrorRedirect redirect{text.rdbuf()};
};

/// Drops what any number of threads write while it lives.
struct ErrorDrop {
    struct Nowhere : std::streambuf {
        std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
        int_type overflow(int_type c) override { return traits_type::not_eof(c); }
    };

    Nowhere nowhere;
    ErrorRedirect redirect{&nowhere};
};
