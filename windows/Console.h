// How both programs set up the console that they write to.
#pragma once

#include <cstdlib>

#include <windows.h>

/// Lets the console show UTF-8 until the program ends. In a console of its own, a click must not
/// mark text: whoever writes would be held up until the mark is gone.
inline void PrepareConsole() {
    static const UINT before = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    std::atexit([] { SetConsoleOutputCP(before); });
    DWORD processes[2];
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    DWORD mode = 0;
    if (GetConsoleProcessList(processes, 2) == 1 && GetConsoleMode(input, &mode) != 0) {
        mode &= ~static_cast<DWORD>(ENABLE_QUICK_EDIT_MODE);
        SetConsoleMode(input, mode | ENABLE_EXTENDED_FLAGS);
    }
}
