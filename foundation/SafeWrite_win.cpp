// The platform half of the safe replacement of a file on Windows.

#include "foundation/SafeWrite.h"

#include <windows.h>

// A target held open by another program is not replaced: Windows refuses
// the move, but Wine does not, so the target is first opened with no
// sharing, which fails while anyone else has it open.
bool PlatformMoveFileOver(const MString& from, const MString& to) {
    if (from.Length <= 0 || to.Length <= 0) return false;
    HANDLE held = CreateFileW(reinterpret_cast<const wchar_t*>(to.Text), GENERIC_READ, 0, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (held == INVALID_HANDLE_VALUE && GetLastError() == ERROR_SHARING_VIOLATION) return false;
    if (held != INVALID_HANDLE_VALUE) CloseHandle(held);
    return MoveFileExW(reinterpret_cast<const wchar_t*>(from.Text),
                       reinterpret_cast<const wchar_t*>(to.Text),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

bool PlatformDeleteFile(const MString& path) {
    if (path.Length <= 0) return false;
    return DeleteFileW(reinterpret_cast<const wchar_t*>(path.Text)) != 0;
}
