// The platform half of MFile on Windows: file handles of kernel32.

#include "foundation/MFile.h"

#include <windows.h>

namespace {

HANDLE Win32Handle(void* handle) {
    return static_cast<HANDLE>(handle);
}

} // namespace

// For writing the old file is deleted first and the new one created with
// CREATE_ALWAYS, so a file that could not be deleted is still emptied rather
// than partly overwritten. Nobody else may open a file being written; a file
// being read may be read by others too.
void* PlatformFileOpen(const MString& path, bool forWriting) {
    if (path.Length <= 0) return nullptr;
    const wchar_t* name = reinterpret_cast<const wchar_t*>(path.Text);
    HANDLE handle;
    if (forWriting) {
        DeleteFileW(name);
        handle = CreateFileW(name, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                             nullptr);
    } else {
        handle = CreateFileW(name, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    if (handle == INVALID_HANDLE_VALUE) return nullptr;
    return handle;
}

void PlatformFileClose(void* handle) {
    if (handle) CloseHandle(Win32Handle(handle));
}

int64_t PlatformFileRead(void* handle, void* buffer, uint32_t size) {
    DWORD done = 0;
    if (!ReadFile(Win32Handle(handle), buffer, size, &done, nullptr)) return -1;
    return int64_t(done);
}

int64_t PlatformFileWrite(void* handle, const void* buffer, uint32_t size) {
    DWORD done = 0;
    if (!WriteFile(Win32Handle(handle), buffer, size, &done, nullptr)) return -1;
    return int64_t(done);
}

int64_t PlatformFileSeek(void* handle, int32_t position) {
    DWORD result = SetFilePointer(Win32Handle(handle), LONG(position), nullptr, FILE_BEGIN);
    return result == INVALID_SET_FILE_POINTER ? -1 : int64_t(result);
}

int64_t PlatformFileTell(void* handle) {
    DWORD result = SetFilePointer(Win32Handle(handle), 0, nullptr, FILE_CURRENT);
    return result == INVALID_SET_FILE_POINTER ? -1 : int64_t(result);
}

int64_t PlatformFileSize(void* handle) {
    DWORD size = GetFileSize(Win32Handle(handle), nullptr);
    return size == INVALID_FILE_SIZE ? -1 : int64_t(size);
}
