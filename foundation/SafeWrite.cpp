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

} // namespace

// A write that runs out of room still "succeeds" as far as the open goes, so
// the side file is measured before it may replace anything.
bool ReplaceTextFile(const MString& text, const MString& path, int32_t encoding) {
    if (text.IsEmpty()) return true;
    if (path.IsEmpty()) return false;
    MString side = path + ".saving";
    int64_t expected = EncodedSize(text, encoding);
    bool written = expected > 0 && WriteTextFile(text, side, encoding);
    if (written) {
        MFile check;
        written = check.Open(side, false, false) && check.FileSize() == expected;
        check.Close();
    }
    if (written && PlatformMoveFileOver(side, path)) return true;
    PlatformDeleteFile(side);
    return false;
}
