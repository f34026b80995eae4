// How much memory the process uses at a moment.
#pragma once

#include <cstddef>

struct MemorySample {
    std::size_t resident = 0; ///< bytes in the machine's memory
    std::size_t heap = 0;     ///< bytes allocated and not freed; 0 where the system does not tell
};

MemorySample TakeMemorySample();
