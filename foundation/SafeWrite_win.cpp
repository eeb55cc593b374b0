// The platform half of the safe replacement of a file on Windows.

#include "foundation/SafeWrite.h"

#include <windows.h>

// A target held open by another program without delete sharing cannot be
// replaced, and the move fails with both files as they were.
bool PlatformMoveFileOver(const MString& from, const MString& to) {
    if (from.Length <= 0 || to.Length <= 0) return false;
    return MoveFileExW(reinterpret_cast<const wchar_t*>(from.Text),
                       reinterpret_cast<const wchar_t*>(to.Text),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

bool PlatformDeleteFile(const MString& path) {
    if (path.Length <= 0) return false;
    return DeleteFileW(reinterpret_cast<const wchar_t*>(path.Text)) != 0;
}
