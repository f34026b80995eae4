#include "common/Portability.h"

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

void OpenStandardStreams() {
    // A file takes the lowest free descriptor, so each of these takes the place that is missing.
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
            open("/dev/null", O_RDWR);
        }
    }
}

// Workers write to standard error. A write that blocks on a full pipe would keep them from being
// joined at the end, so the pipe is made not to block. It is opened anew, because an open file's
// flags are shared with other processes.
void LeaveFullPipes() {
    struct stat status {};
    if (fstat(STDERR_FILENO, &status) == 0 && S_ISFIFO(status.st_mode)) {
        const int reopened = open("/proc/self/fd/2", O_WRONLY | O_NONBLOCK);
        if (reopened != -1) {
            dup2(reopened, STDERR_FILENO);
            close(reopened);
        }
    }
}

void PassOnHangUp() {
    struct sigaction current {};
    sigaction(SIGHUP, nullptr, &current);
    if (current.sa_handler == SIG_DFL) { // not when it is ignored, as under nohup
        struct sigaction action {};
        action.sa_handler = [](int) { std::raise(SIGTERM); };
        sigaction(SIGHUP, &action, nullptr);
    }
}

} // namespace

void PrepareProcess() {
    OpenStandardStreams();
    LeaveFullPipes();
    std::signal(SIGPIPE, SIG_IGN);
    PassOnHangUp();
}

int OpenFile(std::FILE** file, const std::string& path, const char* mode) {
    *file = nullptr;
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored)) {
        return ENOENT;
    }
    *file = std::fopen(path.c_str(), mode);
    return *file == nullptr ? errno : 0;
}
