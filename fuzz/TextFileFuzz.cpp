// Fuzz target of the text stream: lines, tokens and escapes from arbitrary
// bytes, read with the encoding its mark gives and then with each of the four
// encodings forced, plus the whole-text decoder. Not built by CMake; build
// and run it with clang's libFuzzer from the repository root:
//
//   clang++ -std=c++17 -g -O1 -fsanitize=fuzzer,address,undefined -I. \
//       fuzz/TextFileFuzz.cpp foundation/MTextFile.cpp foundation/MFile.cpp \
//       foundation/MFile_posix.cpp foundation/MString.cpp foundation/Platform.cpp \
//       foundation/Platform_posix.cpp -o build/TextFileFuzz
//   build/TextFileFuzz -max_total_time=60 -max_len=4096

#include "foundation/MTextFile.h"

#include <cstddef>
#include <cstdint>

// The message box title of the platform layer lives with the shell, which
// this small program leaves out.
extern const char16_t* const TheProgramName;
const char16_t* const TheProgramName = u"Quillmere";

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
