// Folders of the native build. The user's folders follow the freedesktop
// habits: the configuration folder ($XDG_CONFIG_HOME, else ~/.config) stands
// for the roaming application data, ~/Documents for the documents.

#include "foundation/Folders.h"

#include "foundation/MVector.h"
#include "foundation/Platform.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

const char16_t PathSeparator = u'/';

namespace {

// The path as a zero-terminated UTF-8 text in name; false when it is empty or
// cannot be converted.
bool Utf8(const MString& path, MVector<char>& name) {
    if (path.Length <= 0) return false;
    int32_t size = path.Length * 3 + 1; // a UTF-16 unit takes at most three bytes
    if (!name.SetCount(size)) return false;
    int32_t count = WideToNarrow(65001, path.Text, path.Length, name.Data, size - 1);
    if (count <= 0) return false;
    name.Data[count] = 0;
    return true;
}

MString FromUtf8(const char* text) {
    MString result;
    if (text && *text) result.AssignNarrow(text, 65001);
    return result;
}

MString HomeFolder() {
    const char* home = std::getenv("HOME");
    if (home && home[0] == '/') return FromUtf8(home);
    struct passwd* entry = getpwuid(getuid());
    return entry ? FromUtf8(entry->pw_dir) : MString();
}

} // namespace

MString PlatformModulePath() {
    char buffer[PATH_MAX + 1];
    ssize_t length = readlink("/proc/self/exe", buffer, PATH_MAX);
    if (length <= 0) return MString();
    buffer[length] = 0;
    return FromUtf8(buffer);
}

MString PlatformUserFolder(FolderKind kind) {
    if (kind == FolderAppData) {
        const char* config = std::getenv("XDG_CONFIG_HOME");
        if (config && config[0] == '/') return FromUtf8(config);
        MString home = HomeFolder();
        return home.IsEmpty() ? home : JoinPath(home, MString(u".config"));
    }
    if (kind == FolderDocuments) {
        MString home = HomeFolder();
        return home.IsEmpty() ? home : JoinPath(home, MString(u"Documents"));
    }
    return MString();
}

PathKind PlatformPathKind(const MString& path) {
    MVector<char> name;
    struct stat info;
    if (!Utf8(path, name) || stat(name.Data, &info) != 0) return PathMissing;
    return S_ISDIR(info.st_mode) ? PathFolder : PathFile;
}

bool PlatformCreateFolder(const MString& path) {
    MVector<char> name;
    return Utf8(path, name) && mkdir(name.Data, 0777) == 0;
}

bool DeleteFileAt(const MString& path) {
    MVector<char> name;
    if (!Utf8(path, name)) return false;
    return unlink(name.Data) == 0;
}

int64_t PlatformSizeOfFile(const MString& path) {
    MVector<char> name;
    if (!Utf8(path, name)) return -1;
    int descriptor = open(name.Data, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return -1;
    struct stat info;
    int64_t size =
        fstat(descriptor, &info) == 0 && !S_ISDIR(info.st_mode) ? int64_t(info.st_size) : -1;
    close(descriptor);
    return size;
}
