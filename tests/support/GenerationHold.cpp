#include "support/GenerationHold.h"

#include <iostream>

GenerationHold::GenerationHold() : former(std::cerr.rdbuf(this)) {}

GenerationHold::~GenerationHold() {
    Open();
    std::cerr.rdbuf(former);
}

GenerationHold::int_type GenerationHold::overflow(int_type c) {
    Pass();
    return traits_type::not_eof(c);
}

std::streamsize GenerationHold::xsputn(const char* /*text*/, std::streamsize count) {
    Pass();
    return count;
}

void GenerationHold::Set(bool state) {
    {
        const std::lock_guard guard(lock);
        open = state;
    }
    opened.notify_all();
}

void GenerationHold::Pass() {
    if (std::this_thread::get_id() != owner) {
        std::unique_lock guard(lock);
        opened.wait(guard, [this] { return open; });
    }
}
