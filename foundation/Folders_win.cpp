// Folders of the Windows build: the module's file name, the shell's folders
// 26 (roaming application data) and 5 (personal documents), and file
// attributes.

#include "foundation/Folders.h"

#include <windows.h>

#include <shlobj.h>

const char16_t PathSeparator = u'\\';

namespace {

const wchar_t* Wide(const MString& text) {
    return reinterpret_cast<const wchar_t*>(text.Chars());
}

MString FromWide(const wchar_t* text) {
    return MString(reinterpret_cast<const char16_t*>(text));
}

} // namespace

// The system gives the path into a buffer of 260 characters, cut short if it
// is longer.
MString PlatformModulePath() {
    wchar_t buffer[MAX_PATH] = {};
    if (GetModuleFileNameW(nullptr, buffer, MAX_PATH) == 0) return MString();
    buffer[MAX_PATH - 1] = 0;
    return FromWide(buffer);
}

MString PlatformUserFolder(FolderKind kind) {
    int folder = kind == FolderAppData     ? CSIDL_APPDATA
                 : kind == FolderDocuments ? CSIDL_PERSONAL
                                           : -1;
    if (folder < 0) return MString();
    wchar_t buffer[MAX_PATH + 1] = {};
    if (FAILED(SHGetFolderPathW(nullptr, folder, nullptr, 0, buffer))) return MString();
    return FromWide(buffer);
}

PathKind PlatformPathKind(const MString& path) {
    DWORD attributes = GetFileAttributesW(Wide(path));
    if (attributes == INVALID_FILE_ATTRIBUTES) return PathMissing;
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) ? PathFolder : PathFile;
}

bool PlatformCreateFolder(const MString& path) {
    return CreateDirectoryW(Wide(path), nullptr) != 0;
}

bool DeleteFileAt(const MString& path) {
    return !path.IsEmpty() && DeleteFileW(Wide(path)) != 0;
}

int64_t PlatformSizeOfFile(const MString& path) {
    HANDLE file = CreateFileW(Wide(path), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return -1;
    LARGE_INTEGER size;
    int64_t result = GetFileSizeEx(file, &size) ? int64_t(size.QuadPart) : -1;
    CloseHandle(file);
    return result;
}
