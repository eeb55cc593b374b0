// Running a command on Windows: the command interpreter through the shell,
// hidden, and a wait on its process with no time limit.

#include "foundation/Process.h"

#include <windows.h>

#include <shellapi.h>

bool PlatformRunCommand(const MString& text) {
    MString parameters = MString(u"/c \"") + text + MString(u"\"");
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof(info);
    info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
    info.lpVerb = L"open";
    info.lpFile = L"cmd.exe";
    info.lpParameters = reinterpret_cast<const wchar_t*>(parameters.Chars());
    info.nShow = SW_HIDE;
    if (!ShellExecuteExW(&info)) return false;
    if (!info.hProcess) return false;
    WaitForSingleObject(info.hProcess, INFINITE);
    CloseHandle(info.hProcess);
    return true;
}
