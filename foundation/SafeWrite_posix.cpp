// The platform half of the safe replacement of a file on POSIX systems. As
// in MFile_posix.cpp, a file another process of the program holds (under
// its advisory lock) counts as open elsewhere and is not replaced.

#include "foundation/SafeWrite.h"

#include "foundation/Platform.h"

#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <unistd.h>

namespace {

// The path in UTF-8; empty when it cannot be converted.
std::string SystemPath(const MString& path) {
    if (path.Length <= 0) return std::string();
    std::string bytes(size_t(path.Length) * 3 + 1, '\0');
    int32_t count =
        WideToNarrow(65001, path.Text, path.Length, &bytes[0], int32_t(bytes.size()) - 1);
    if (count <= 0) return std::string();
    bytes.resize(size_t(count));
    return bytes;
}

} // namespace

bool PlatformMoveFileOver(const MString& from, const MString& to) {
    std::string source = SystemPath(from), target = SystemPath(to);
    if (source.empty() || target.empty()) return false;
    // The lock is held across the rename, so nobody starts reading the old
    // file in between.
    int old = open(target.c_str(), O_RDONLY | O_CLOEXEC);
    if (old >= 0 && flock(old, LOCK_EX | LOCK_NB) != 0) {
        close(old);
        return false;
    }
    bool moved = std::rename(source.c_str(), target.c_str()) == 0;
    if (old >= 0) close(old);
    return moved;
}

bool PlatformDeleteFile(const MString& path) {
    std::string name = SystemPath(path);
    return !name.empty() && unlink(name.c_str()) == 0;
}
