// What common/Portability.h promises, on Windows.
#include "common/Portability.h"

#include "Console.h"

#include <SDL_events.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <io.h>
#include <windows.h>

namespace {

void OpenStandardStreams() {
    // In this order each takes the descriptor that is missing. Without a console there are none.
    for (std::FILE* stream : {stdin, stdout, stderr}) {
        const int descriptor = _fileno(stream);
        if (descriptor < 0 || _get_osfhandle(descriptor) < 0) {
            static_cast<void>(std::freopen("NUL", stream == stdin ? "r" : "w", stream));
        }
    }
}

// Called on a thread of its own. When the console goes, the system ends the process as soon as this
// returns, or after some seconds.
BOOL WINAPI EndWithConsole(DWORD event) {
    SDL_Event quit{};
    quit.type = SDL_QUIT;
    if (SDL_PushEvent(&quit) != 1) {
        return FALSE; // no game runs, and the system does what it does
    }
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        Sleep(INFINITE);
    }
    return TRUE;
}

std::wstring WidePath(const std::string& path) {
    const int size = MultiByteToWideChar(CP_UTF8, 0, path.c_str(), -1, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, path.c_str(), -1, wide.data(), size);
    wide.resize(wide.find(L'\0'));
    return wide;
}

} // namespace

void PrepareProcess() {
    OpenStandardStreams();
    PrepareConsole();
    SetConsoleCtrlHandler(EndWithConsole, TRUE);
}

int OpenFile(std::FILE** file, const std::string& path, const char* mode) {
    *file = nullptr;
    const std::wstring name = WidePath(path);
    std::error_code ignored;
    return std::filesystem::is_regular_file(name, ignored)
               ? _wfopen_s(file, name.c_str(), WidePath(mode).c_str())
               : ENOENT;
}
