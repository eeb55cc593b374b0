// The portable half of the safe replacement of a file.

#include "foundation/SafeWrite.h"

#include "foundation/MFile.h"
#include "foundation/MTextFile.h"
#include "foundation/Platform.h"

namespace {

// The bytes WriteTextFile puts on the disk for text: the mark and the units.
int64_t EncodedSize(const MString& text, int32_t encoding) {
    switch (encoding) {
    case Encoding8Bit:
        return text.Length;
    case EncodingUtf16LE:
    case EncodingUtf16BE:
        return 2 + 2 * int64_t(text.Length);
    case EncodingUtf8:
        return 3 + WideToNarrow(65001, text.Text, text.Length, nullptr, 0);
    default:
        return -1;
    }
}

// The side file takes the place of the file at path when it was written and
// holds the expected bytes; otherwise it is removed and path stays as it was.
bool MoveSideFileOver(bool written, const MString& side, const MString& path, int64_t expected) {
    if (written) {
        MFile check;
        written = check.Open(side, false, false) && check.FileSize() == expected;
        check.Close();
    }
    if (written && PlatformMoveFileOver(side, path)) return true;
    PlatformDeleteFile(side);
    return false;
}

} // namespace

// A write that runs out of room still "succeeds" as far as the open goes, so
// the side file is measured before it may replace anything.
bool ReplaceTextFile(const MString& text, const MString& path, int32_t encoding) {
    if (text.IsEmpty()) return true;
    if (path.IsEmpty()) return false;
    MString side = path + ".saving";
    int64_t expected = EncodedSize(text, encoding);
    bool written = expected > 0 && WriteTextFile(text, side, encoding);
    return MoveSideFileOver(written, side, path, expected);
}

bool ReplaceFileBytes(const void* bytes, int32_t size, const MString& path) {
    if (size <= 0) return true;
    if (!bytes || path.IsEmpty()) return false;
    MString side = path + ".saving";
    MFile file;
    bool written = file.Open(side, true, false) && file.Write(bytes, uint32_t(size));
    written = file.Flush() && written;
    file.Close();
    return MoveSideFileOver(written, side, path, size);
}
