// The platform half of MFile on POSIX systems: file descriptors, with the
// path turned into UTF-8 for the system calls.
//
// Windows shares files by open mode; here the same rules are kept among the
// processes of this program with advisory flock locks: a reader holds a
// shared lock, a writer an exclusive one, and a writer first tries the
// exclusive lock on the file it is about to delete, so a file being read is
// neither replaced nor truncated under its reader. Other programs that take
// no locks are not held off.

#include "foundation/MFile.h"
#include "foundation/Platform.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The descriptor is kept one above its value so that descriptor 0 is never
// mistaken for "no file".
void* HandleOf(int descriptor) {
    return reinterpret_cast<void*>(intptr_t(descriptor) + 1);
}
int DescriptorOf(void* handle) {
    return int(reinterpret_cast<intptr_t>(handle) - 1);
}

// The path in UTF-8 into target (room for size bytes); false if it does not
// fit or the path is empty.
bool Utf8Path(const MString& path, char* target, int32_t size) {
    if (path.Length <= 0) return false;
    int32_t count = WideToNarrow(65001, path.Text, path.Length, target, size - 1);
    if (count <= 0) return false;
    target[count] = 0;
    return true;
}

} // namespace

void* PlatformFileOpen(const MString& path, bool forWriting) {
    // A UTF-16 unit never takes more than three bytes of UTF-8.
    int32_t size = path.Length * 3 + 1;
    MVector<char> name;
    if (!name.SetCount(size) || !Utf8Path(path, name.Data, size)) return nullptr;

    int descriptor = -1;
    if (forWriting) {
        int old = open(name.Data, O_RDONLY | O_CLOEXEC);
        if (old >= 0) {
            bool inUse = flock(old, LOCK_EX | LOCK_NB) != 0;
            close(old);
            if (inUse) return nullptr;
            unlink(name.Data);
        }
        descriptor = open(name.Data, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        if (descriptor < 0) return nullptr;
        if (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
            close(descriptor);
            return nullptr;
        }
    } else {
        descriptor = open(name.Data, O_RDONLY | O_CLOEXEC);
        if (descriptor < 0) return nullptr;
        // A folder opens here but not on Windows; neither is a file to read.
        struct stat info;
        if (fstat(descriptor, &info) != 0 || S_ISDIR(info.st_mode) ||
            flock(descriptor, LOCK_SH | LOCK_NB) != 0) {
            close(descriptor);
            return nullptr;
        }
    }
    return HandleOf(descriptor);
}

void PlatformFileClose(void* handle) {
    if (handle) close(DescriptorOf(handle));
}

int64_t PlatformFileRead(void* handle, void* buffer, uint32_t size) {
    char* target = static_cast<char*>(buffer);
    int64_t done = 0;
    while (done < int64_t(size)) {
        ssize_t count = read(DescriptorOf(handle), target + done, size_t(size - done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return -1;
        if (count == 0) break;
        done += count;
    }
    return done;
}

int64_t PlatformFileWrite(void* handle, const void* buffer, uint32_t size) {
    const char* source = static_cast<const char*>(buffer);
    int64_t done = 0;
    while (done < int64_t(size)) {
        ssize_t count = write(DescriptorOf(handle), source + done, size_t(size - done));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return done > 0 ? done : -1;
        done += count;
    }
    return done;
}

int64_t PlatformFileSeek(void* handle, int32_t position) {
    off_t result = lseek(DescriptorOf(handle), off_t(position), SEEK_SET);
    return result < 0 ? -1 : int64_t(result);
}

int64_t PlatformFileTell(void* handle) {
    off_t result = lseek(DescriptorOf(handle), 0, SEEK_CUR);
    return result < 0 ? -1 : int64_t(result);
}

int64_t PlatformFileSize(void* handle) {
    struct stat info;
    if (fstat(DescriptorOf(handle), &info) != 0) return -1;
    return int64_t(info.st_size);
}
