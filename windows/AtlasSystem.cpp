// What atlas/System.h promises, on Windows.
#include "atlas/System.h"

#include "Console.h"

#include <csignal>

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <windows.h>

namespace {

void (*noteInterrupt)(int) = nullptr;

// Called on a thread of its own. When the console goes, the system ends the process as soon as this
// returns, or after some seconds.
BOOL WINAPI PassOn(DWORD event) {
    const bool isKey = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT;
    noteInterrupt(isKey ? SIGINT : SIGTERM);
    if (!isKey) {
        Sleep(INFINITE);
    }
    return TRUE;
}

} // namespace

void PrepareSystem(void (*note)(int)) {
    PrepareConsole();
    _setmode(_fileno(stdout), _O_BINARY); // a picture may go there
    noteInterrupt = note;
    SetConsoleCtrlHandler(PassOn, TRUE);
}

bool IsWritable(const std::filesystem::path& path) {
    return _waccess(path.c_str(), 2) == 0;
}

std::FILE* OpenToWrite(const std::filesystem::path& path, bool isNew) {
    int file = -1;
    const int how = isNew ? _O_CREAT | _O_EXCL : _O_CREAT | _O_TRUNC;
    _wsopen_s(&file, path.c_str(), how | _O_WRONLY | _O_BINARY, _SH_DENYNO, _S_IREAD | _S_IWRITE);
    return file < 0 ? nullptr : _fdopen(file, "wb");
}
