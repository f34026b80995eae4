// Keeps standard error out of the test log, and its text for the test to look at.
#pragma once

#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>

/// Collects what is written while it lives. One at a time, and only while no other thread writes.
class ErrorCapture {
public:
    ErrorCapture() : before(std::cerr.rdbuf(text.rdbuf())) {}
    ~ErrorCapture() { std::cerr.rdbuf(before); }
    ErrorCapture(const ErrorCapture&) = delete;
    ErrorCapture& operator=(const ErrorCapture&) = delete;

    std::string Text() const { return text.str(); }

private:
    std::ostringstream text;
    std::streambuf* before;
};

/// Drops what is written while it lives, by any number of threads.
class ErrorDrop {
public:
    ErrorDrop() : before(std::cerr.rdbuf(&nowhere)) {}
    ~ErrorDrop() { std::cerr.rdbuf(before); }
    ErrorDrop(const ErrorDrop&) = delete;
    ErrorDrop& operator=(const ErrorDrop&) = delete;

private:
    class Nowhere : public std::streambuf {
    protected:
        std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
        int_type overflow(int_type c) override { return traits_type::not_eof(c); }
    };

    Nowhere nowhere;
    std::streambuf* before;
};
