#include "atlas/Interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

namespace {

std::atomic<int> noted = 0;
static_assert(std::atomic<int>::is_always_lock_free); // so a handler may write it

} // namespace

// Without SA_RESTART, so that the program does not wait on for the other end of a pipe.
void NoteInterrupts() {
    struct sigaction note {};
    note.sa_handler = [](int signal) { noted = signal; };
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before {};
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
            sigaction(signal, &note, nullptr);
        }
    }
    std::signal(SIGPIPE, SIG_IGN);
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
