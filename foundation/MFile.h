#pragma once
// A thin binary file over the platform's file handles that can also serve its
// reads from a full copy of the file in memory, and gathers its writes into
// blocks. Sizes and positions are 32-bit throughout: the files of the system
// are small.

#include "foundation/MString.h"
#include "foundation/MVector.h"

#include <cstdint>
#include <cstring>

struct MFile {
    static const int32_t WriteBlock = 64 * 1024; // bytes gathered before a system write

    bool IsOpen = false;
    void* Handle = nullptr; // the platform's handle; null when closed or in memory
    bool ForWriting = false;
    bool InMemory = false;    // reads are served from Memory
    MVector<uint8_t> Memory;  // the file's contents in memory mode
    int32_t Position = 0;     // read position in Memory, bytes
    int32_t Size = -1;        // the file's size in bytes; -1 until known
    MVector<uint8_t> Pending; // writes not yet handed to the system; Count is the capacity
    int32_t PendingCount = 0; // bytes of Pending in use

    MFile() = default;
    MFile(const MFile&) = delete;
    MFile& operator=(const MFile&) = delete;
    ~MFile() { Close(); }

    bool Open(const MString& path, bool forWriting, bool toMemory);
    bool OpenMemory(const void* bytes, int32_t size);
    bool Read(void* buffer, uint32_t size);
    // A text stream writes a character per call, so the common case, a few
    // bytes that fit in the block without filling it, is taken here.
    bool Write(const void* buffer, uint32_t size) {
        if (size > 0 && size < uint32_t(WriteBlock) && PendingCount + int64_t(size) < WriteBlock &&
            Pending.Count == WriteBlock && ForWriting && IsOpen && !InMemory && buffer) {
            std::memcpy(Pending.Data + PendingCount, buffer, size);
            PendingCount += int32_t(size);
            return true;
        }
        return WriteBlocks(buffer, size);
    }
    bool WriteBlocks(const void* buffer, uint32_t size);
    bool Flush();
    int32_t Tell();
    bool Seek(int32_t position);
    int32_t FileSize();
    void Close();
};

// ---- The platform half, defined in MFile_win.cpp and MFile_posix.cpp. A
// handle is opaque here; null stands for "no file".

// Opens for writing (an existing file is deleted first, the new one is
// shared with nobody) or for reading (shared with other readers, must
// exist). Returns null on failure.
void* PlatformFileOpen(const MString& path, bool forWriting);
void PlatformFileClose(void* handle);
// Each returns the number of bytes moved, or -1 on failure.
int64_t PlatformFileRead(void* handle, void* buffer, uint32_t size);
int64_t PlatformFileWrite(void* handle, const void* buffer, uint32_t size);
// The file pointer after moving it to position (absolute), or -1 on failure.
int64_t PlatformFileSeek(void* handle, int32_t position);
int64_t PlatformFileTell(void* handle); // -1 on failure
int64_t PlatformFileSize(void* handle); // -1 on failure
