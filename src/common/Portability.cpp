#include "common/Portability.h"

#include <SDL_filesystem.h>
#include <SDL_stdinc.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <memory>
#include <system_error>

#if defined(_WIN32)
#include <io.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

#if defined(_WIN32)

void OpenStandardStreams() {
    // In this order each takes the descriptor that is missing. Without a console there are none.
    for (std::FILE* stream : {stdin, stdout, stderr}) {
        const int descriptor = _fileno(stream);
        if (descriptor < 0 || _get_osfhandle(descriptor) < 0) {
            static_cast<void>(std::freopen("NUL", stream == stdin ? "r" : "w", stream));
        }
    }
}

// Called on a thread of its own. The system ends the process when this returns, or after some
// seconds.
BOOL WINAPI EndWithConsole(DWORD event) {
    if (event != CTRL_CLOSE_EVENT && event != CTRL_LOGOFF_EVENT && event != CTRL_SHUTDOWN_EVENT) {
        return FALSE;
    }
    std::raise(SIGTERM);
    Sleep(INFINITE);
    return TRUE;
}

std::wstring WidePath(const std::string& path) {
    const int size = MultiByteToWideChar(CP_UTF8, 0, path.c_str(), -1, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, path.c_str(), -1, wide.data(), size);
    wide.resize(wide.find(L'\0'));
    return wide;
}

#else

void OpenStandardStreams() {
    // A file takes the lowest free descriptor, so each of these takes the place that is missing.
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
            open("/dev/null", O_RDWR);
        }
    }
}

// The workers print here, and one that waits for the reader of a full pipe would hold the end of
// the program. The pipe is opened anew, where the system has a path to it, because others may share
// the open file and with it the flag.
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

#endif

} // namespace

void PrepareProcess() {
    OpenStandardStreams();
#if defined(_WIN32)
    SetConsoleCtrlHandler(EndWithConsole, TRUE);
#else
    LeaveFullPipes();
    std::signal(SIGPIPE, SIG_IGN);
    PassOnHangUp();
#endif
}

std::string GetBasePath() {
    const std::unique_ptr<char, decltype(&SDL_free)> path(SDL_GetBasePath(), SDL_free);
    return path ? path.get() : "";
}

int OpenFile(std::FILE** file, const std::string& path, const char* mode) {
    *file = nullptr;
#if defined(_WIN32)
    const std::wstring name = WidePath(path);
#else
    const std::string& name = path;
#endif
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(name, ignored)) {
        return ENOENT;
    }
#if defined(_WIN32)
    return _wfopen_s(file, name.c_str(), WidePath(mode).c_str());
#else
    *file = std::fopen(name.c_str(), mode);
    return *file == nullptr ? errno : 0;
#endif
}
