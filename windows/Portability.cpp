// What common/Portability.h promises, on Windows.
#include "common/Portability.h"

#include "Console.h"

#include <SDL.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <thread>

#include <io.h>
#include <windows.h>

#include <imm.h>

namespace {

// How long the system is kept waiting for the game to end, in ms; it loses patience after 5 s.
// Waiting without a limit would be in vain after a start that failed, where nobody takes the event.
constexpr DWORD kPatience = 3000;

void OpenStandardStreams() {
    // In this order each takes the descriptor that is missing. Without a console there are none.
    for (std::FILE* stream : {stdin, stdout, stderr}) {
        const int descriptor = _fileno(stream);
        if (descriptor < 0 || _get_osfhandle(descriptor) < 0) {
            static_cast<void>(std::freopen("NUL", stream == stdin ? "r" : "w", stream));
        }
    }
}

// Ends the game in its next tick. False when SDL takes no events. Any thread.
bool PushQuit() {
    SDL_Event quit{};
    quit.type = SDL_QUIT;
    return SDL_WasInit(SDL_INIT_EVENTS) != 0 && SDL_PushEvent(&quit) == 1;
}

// Called on a thread of its own. When the console goes, the system ends the process as soon as this
// returns.
BOOL WINAPI EndWithConsole(DWORD event) {
    if (!PushQuit()) {
        return FALSE; // the system does what it does
    }
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        Sleep(kPatience);
    }
    return TRUE;
}

// As with the console, when the user logs off or the machine is shut down.
LRESULT CALLBACK EndWithSession(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_ENDSESSION && first != FALSE && PushQuit()) {
        Sleep(kPatience);
    }
    return DefWindowProcW(window, message, first, second);
}

// A program with windows hears of the session's end by them only, and SDL's own takes no notice.
// This one is never shown; one for messages alone would not be told.
void WatchSession() {
    WNDCLASSW kind{};
    kind.lpfnWndProc = EndWithSession;
    kind.hInstance = GetModuleHandleW(nullptr);
    kind.lpszClassName = L"Session";
    RegisterClassW(&kind);
    CreateWindowW(kind.lpszClassName, nullptr, 0, 0, 0, 0, 0, nullptr, nullptr, kind.hInstance,
                  nullptr);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
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
    // Input methods would make words of the keys, in windows of their own: off for all threads.
    ImmDisableIME(static_cast<DWORD>(-1));
    std::thread(WatchSession).detach(); // the main one ends the game while it waits
}

int OpenFile(std::FILE** file, const std::string& path, const char* mode) {
    *file = nullptr;
    const std::wstring name = WidePath(path);
    std::error_code ignored;
    return std::filesystem::is_regular_file(name, ignored)
               ? _wfopen_s(file, name.c_str(), WidePath(mode).c_str())
               : ENOENT;
}
