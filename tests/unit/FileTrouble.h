#pragma once
// Files and folders in trouble, for the tests of failing writes: a file held
// by another program, and (natively, where mounting is permitted) a small
// disk of its own that can be filled up or turned read-only.

#include <filesystem>
#include <string>

#ifdef _WIN32
#include <windows.h>
#else
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <unistd.h>
#endif

namespace trouble {

namespace fs = std::filesystem;

// Holds a file the way another program can: opened with no sharing on
// Windows, under an exclusive lock here, which every reader of the program
// respects (root included).
struct ForeignLock {
#ifdef _WIN32
    HANDLE Handle = INVALID_HANDLE_VALUE;
    explicit ForeignLock(const fs::path& path) {
        Handle = CreateFileW(path.wstring().c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                             OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    bool Held() const {
        return Handle != INVALID_HANDLE_VALUE;
    }
    ~ForeignLock() {
        if (Held()) CloseHandle(Handle);
    }
#else
    int Descriptor = -1;
    explicit ForeignLock(const fs::path& path) {
        Descriptor = open(path.c_str(), O_RDWR);
        if (Descriptor >= 0 && flock(Descriptor, LOCK_EX | LOCK_NB) != 0) {
            close(Descriptor);
            Descriptor = -1;
        }
    }
    bool Held() const {
        return Descriptor >= 0;
    }
    ~ForeignLock() {
        if (Held()) close(Descriptor);
    }
#endif
};

// A tmpfs of the given size mounted on an empty folder, unmounted at the
// end. Mounting needs the right to mount (root here); Mounted() tells.
// Windows has no such thing: Mounted() is false there.
struct SmallDisk {
    fs::path Folder;
    std::string Options;
    bool Mounted() const { return IsMounted; }
    bool IsMounted = false;

#ifdef _WIN32
    SmallDisk(const fs::path& folder, int kilobytes) : Folder(folder) {
        (void)kilobytes;
    }
    bool MakeReadOnly() {
        return false;
    }
    bool Fill() {
        return false;
    }
#else
    SmallDisk(const fs::path& folder, int kilobytes) : Folder(folder) {
        std::error_code ignored;
        fs::create_directories(folder, ignored);
        Options = "size=" + std::to_string(kilobytes) + "k";
        IsMounted = mount("tmpfs", folder.c_str(), "tmpfs", 0, Options.c_str()) == 0;
    }
    ~SmallDisk() {
        if (IsMounted) umount2(Folder.c_str(), MNT_DETACH);
    }
    // The disk becomes read-only: nothing can be created, changed or
    // deleted on it.
    bool MakeReadOnly() {
        return IsMounted && mount(nullptr, Folder.c_str(), nullptr, MS_REMOUNT | MS_RDONLY,
                                  Options.c_str()) == 0;
    }
    // A filler file takes every free byte of the disk.
    bool Fill() {
        if (!IsMounted) return false;
        FILE* file = std::fopen((Folder / "filler").c_str(), "wb");
        if (!file) return false;
        static const char block[4096] = {};
        while (std::fwrite(block, 1, sizeof block, file) == sizeof block) {
        }
        for (int i = 0; i < 4096 && std::fputc(0, file) != EOF; i++) {
        }
        std::fclose(file);
        return true;
    }
#endif
};

} // namespace trouble
