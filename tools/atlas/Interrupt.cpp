#include "atlas/Interrupt.h"

#include "atlas/System.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

namespace {

std::atomic<int> noted = 0;
static_assert(std::atomic<int>::is_always_lock_free); // so a handler may write it

} // namespace

void NoteInterrupts() {
    PrepareSystem([](int signal) { noted = signal; });
}

void CheckInterrupted() {
    if (noted != 0) {
        throw Interrupted{noted};
    }
}

void EndBy(const Interrupted& interrupted) {
    std::signal(interrupted.signal, SIG_DFL);
    std::raise(interrupted.signal);
    std::abort(); // not reached
}
