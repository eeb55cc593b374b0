// Fuzz target of the text stream: lines, tokens and escapes from arbitrary
// bytes, read with the encoding its mark gives and then with each of the four
// encodings forced, plus the whole-text decoder.
//
// Seeds: tests/data/settings/*.txt tests/data/cairo/*.txt
// Max length: 4096

#include "foundation/MTextFile.h"

#include <cstddef>
#include <cstdint>

namespace {

// Reads every line and takes everything a parser would take from it.
void ReadEverything(MTextFile& file) {
    while (file.ReadLine()) {
        MString line = file.Line();
        int32_t count = file.TokenCount();
        for (int32_t i = -1; i <= count; i++) {
            MString token = file.Token(i);
            file.TokenBool(i);
            ParseFloat(token);
            ParseInteger(token);
            // The writer's escaping must take any text a reader can give.
            file.AppendText(token);
        }
        file.OutLine = MString();
        if (line.Length < 0) __builtin_trap();
    }
    if (file.TokenCount() != 0) __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > 1 << 20) return 0;
    int32_t length = int32_t(size);
    {
        MTextFile file(data, length);
        ReadEverything(file);
    }
    for (int32_t encoding = Encoding8Bit; encoding <= EncodingUtf8; encoding++) {
        MTextFile file(data, length);
        file.Encoding = encoding;
        file.File.Seek(0);
        ReadEverything(file);
    }
    ReadTextMemory(data, length);
    return 0;
}
