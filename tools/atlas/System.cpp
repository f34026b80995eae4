#include "atlas/System.h"

#include <csignal>

#include <unistd.h>

// Without SA_RESTART, so that the program does not wait on for the other end of a pipe.
void PrepareSystem(void (*note)(int)) {
    struct sigaction action {};
    action.sa_handler = note;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before {};
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
            sigaction(signal, &action, nullptr);
        }
    }
    std::signal(SIGPIPE, SIG_IGN);
}

bool IsWritable(const std::filesystem::path& path) {
    return access(path.c_str(), W_OK) == 0;
}

std::FILE* OpenToWrite(const std::filesystem::path& path, bool isNew) {
    return std::fopen(path.c_str(), isNew ? "wbx" : "wb");
}
