// Keeps what is written to standard error while it lives, so that a test can look at it and the
// test log stays short. One at a time, and only while no other thread writes.
#pragma once

#include <iostream>
#include <sstream>
#include <string>

class ErrorCapture {
public:
    ErrorCapture() : before(std::cerr.rdbuf(text.rdbuf())) {}
    ~ErrorCapture() { std::cerr.rdbuf(before); }
    ErrorCapture(const ErrorCapture&) = delete;
    ErrorCapture& operator=(const ErrorCapture&) = delete;

    std::string Text() const { return text.str(); }
    void Clear() { text.str({}); }

private:
    std::ostringstream text;
    std::streambuf* before;
};
