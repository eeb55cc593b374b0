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

// Writes are gathered in Pending and handed to the system a block at a time
// (a text stream writes a character per call). A block that fills up is
// written at once; one at least as large as the block goes straight through
// after what is pending. The file holds the same bytes in the same order as
// with one system call per Write.

// True only if exactly size bytes were written, or taken into the block; a
// write that the system refuses, now or when the block is handed over, gives
// false and its bytes are dropped. A memory copy is read-only.
bool MFile::WriteBlocks(const void* buffer, uint32_t size) {
    // A file opened for reading refuses every write, as its handle would.
    if (!IsOpen || InMemory || !ForWriting || !buffer) return false;
    if (size == 0) return true;
    if (size >= uint32_t(WriteBlock)) {
        bool flushed = Flush();
        return PlatformFileWrite(Handle, buffer, size) == int64_t(size) && flushed;
    }
    if (Pending.Count < WriteBlock && !Pending.SetCount(WriteBlock)) {
        PendingCount = 0;
        return PlatformFileWrite(Handle, buffer, size) == int64_t(size);
    }
    bool flushed = true;
    if (PendingCount + int64_t(size) > WriteBlock) flushed = Flush();
    std::memcpy(Pending.Data + PendingCount, buffer, size);
    PendingCount += int32_t(size);
    if (PendingCount == WriteBlock) flushed = Flush() && flushed;
    return flushed;
}

// Hands the pending bytes to the system. True if there were none or all were
// written; on a failure they are dropped, as a failed write drops its bytes.
bool MFile::Flush() {
    if (PendingCount == 0) return true;
    int32_t count = PendingCount;
    PendingCount = 0;
    if (!IsOpen || !Handle) return false;
    return PlatformFileWrite(Handle, Pending.Data, uint32_t(count)) == int64_t(count);
}

// The read position in memory mode, else the platform's file pointer; -1 for
// a closed file.
int32_t MFile::Tell() {
    if (!IsOpen) return -1;
    if (InMemory) return Position;
    if (PendingCount > 0) Flush();
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
    if (PendingCount > 0) Flush();
    return PlatformFileSeek(Handle, position) == position;
}

// The file's size in bytes (also kept in Size), or -1 when it cannot be had.
int32_t MFile::FileSize() {
    if (!IsOpen) return -1;
    if (!InMemory) {
        if (PendingCount > 0) Flush();
        int64_t size = PlatformFileSize(Handle);
        Size = size < 0 || size > INT32_MAX ? -1 : int32_t(size);
    }
    return Size;
}

// Pending bytes are written before the handle is closed; a caller that must
// know whether they reached the file calls Flush first.
void MFile::Close() {
    Flush();
    Pending.SetCount(0);
    if (Handle) PlatformFileClose(Handle);
    Handle = nullptr;
    IsOpen = false;
    ForWriting = false;
    InMemory = false;
    Memory.SetCount(0);
    Position = 0;
    Size = -1;
}
