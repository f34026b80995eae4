#include "MemorySample.h"

#include <fstream>

#if defined(__GLIBC__)
#include <malloc.h>
#endif
#include <unistd.h>

namespace {

std::size_t ResidentBytes() {
    std::ifstream file("/proc/self/statm");
    std::size_t total = 0;
    std::size_t resident = 0;
    file >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// Sanitizers replace the allocator, and its own book says 0 then.
std::size_t HeapBytes() {
#if defined(__GLIBC__)
    const struct mallinfo2 book = mallinfo2();
    return book.uordblks + book.hblkhd;
#else
    return 0;
#endif
}

} // namespace

MemorySample TakeMemorySample() {
    return {ResidentBytes(), HeapBytes()};
}
