// What MFile does the same on every platform: the choice between the handle
// and the memory copy, and the checks on sizes and positions.

#include "foundation/MFile.h"

#include <cstring>

// Opens path. For writing an existing file is replaced; for reading it must
// exist. With toMemory (reading only) the whole file is read into Memory and
// the handle closed at once; if that fails in any way the file simply stays
// in handle mode, so callers never need to know which mode they got. An empty
// file stays in handle mode too, as it has no block to hold. Any earlier file
// of this object is closed first. Returns IsOpen.
bool MFile::Open(const MString& path, bool forWriting, bool toMemory) {
    Close();
    Handle = PlatformFileOpen(path, forWriting);
    if (!Handle) return false;
    IsOpen = true;
    ForWriting = forWriting;
    if (!toMemory || forWriting) return true;

    int32_t size = FileSize();
    if (size <= 0) return true;
    if (!Memory.SetCount(size)) return true;
    if (PlatformFileRead(Handle, Memory.Data, uint32_t(size)) != size) {
        Memory.SetCount(0);
        PlatformFileSeek(Handle, 0);
        return true;
    }
    PlatformFileClose(Handle);
    Handle = nullptr;
    InMemory = true;
    Position = 0;
    return true;
}

// Opens a copy of size bytes for reading, as if a file of those bytes had
// been opened with toMemory. This is how parsers read text that never was a
// file (fuzzing, tests, text built in memory). A size of 0 gives an open file
// from which every read fails.
bool MFile::OpenMemory(const void* bytes, int32_t size) {
    Close();
    if (size < 0 || (size > 0 && !bytes)) return false;
    if (size > 0) {
        if (!Memory.SetCount(size)) return false;
        std::memcpy(Memory.Data, bytes, size_t(size));
    }
    IsOpen = true;
    InMemory = true;
    Position = 0;
    Size = size;
    return true;
}

// True only if exactly size bytes were delivered. In memory mode a read that
// would pass the end delivers nothing and leaves Position alone.
bool MFile::Read(void* buffer, uint32_t size) {
    if (!IsOpen || !buffer || size == 0) return false;
    if (InMemory) {
        if (int64_t(Position) + int64_t(size) > int64_t(Memory.Count)) return false;
        std::memcpy(buffer, Memory.Data + Position, size);
        Position += int32_t(size);
        return true;
    }
    return PlatformFileRead(Handle, buffer, size) == int64_t(size);
}

// True only if exactly size bytes were written; a memory copy is read-only.
bool MFile::Write(const void* buffer, uint32_t size) {
    if (!IsOpen || InMemory || !buffer) return false;
    if (size == 0) return true;
    return PlatformFileWrite(Handle, buffer, size) == int64_t(size);
}

// The read position in memory mode, else the platform's file pointer; -1 for
// a closed file.
int32_t MFile::Tell() {
    if (!IsOpen) return -1;
    if (InMemory) return Position;
    return int32_t(PlatformFileTell(Handle));
}

// Moves to an absolute position. A file on disk may be positioned past its
// end (the next read then fails); the memory copy only to an existing byte,
// so seeking to its very end fails and leaves Position where it was.
bool MFile::Seek(int32_t position) {
    if (!IsOpen || position < 0) return false;
    if (InMemory) {
        if (position >= Memory.Count) return false;
        Position = position;
        return true;
    }
    return PlatformFileSeek(Handle, position) == position;
}

// The file's size in bytes (also kept in Size), or -1 when it cannot be had.
int32_t MFile::FileSize() {
    if (!IsOpen) return -1;
    if (!InMemory) {
        int64_t size = PlatformFileSize(Handle);
        Size = size < 0 || size > INT32_MAX ? -1 : int32_t(size);
    }
    return Size;
}

void MFile::Close() {
    if (Handle) PlatformFileClose(Handle);
    Handle = nullptr;
    IsOpen = false;
    ForWriting = false;
    InMemory = false;
    Memory.SetCount(0);
    Position = 0;
    Size = -1;
}
