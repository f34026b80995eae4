// What tests under wine need of Windows itself.
//
//   console without FILE   runs a program that has no console and no standard streams, and ends as
//                          it does
//   console EVENT PROGRAM  tells the program of that name what happens to its console, by the
//                          system's number (0: Ctrl-C, 2: it is being closed), as the system does:
//                          by a thread in it that begins in the routine for such events
#include <windows.h>

#include <tlhelp32.h>

#include <string>

namespace {

int Run(const std::wstring& file) {
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, (L'"' + file + L'"').data(), nullptr, nullptr, FALSE,
                       DETACHED_PROCESS, nullptr, nullptr, &start, &process) == 0) {
        return 100;
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    return static_cast<int>(code);
}

DWORD Find(const std::wstring& program) {
    PROCESSENTRY32W process{};
    process.dwSize = sizeof process;
    const HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    BOOL found = Process32FirstW(all, &process);
    while (found != FALSE && program != process.szExeFile) {
        found = Process32NextW(all, &process);
    }
    return found != FALSE ? process.th32ProcessID : 0;
}

int Tell(INT_PTR number, DWORD id) {
    const HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, id);
    const FARPROC routine = GetProcAddress(GetModuleHandleA("kernelbase.dll"), "CtrlRoutine");
    void* const event = reinterpret_cast<void*>(number);
    const auto start = reinterpret_cast<LPTHREAD_START_ROUTINE>(reinterpret_cast<void*>(routine));
    return CreateRemoteThread(process, nullptr, 0, start, event, 0, nullptr) == nullptr ? 100 : 0;
}

} // namespace

int main() {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    const std::wstring what = count == 3 ? words[1] : L"";
    return what == L"without" ? Run(words[2]) : Tell(std::stoi(what), Find(words[2]));
}
