// Fuzz target of the native build's PNG decoding: arbitrary bytes behind
// the PNG mark, decoded from memory as a loaded file would be.
//
// Seeds: tests/data/pictures/*.png
// Max length: 65536

#include "PictureFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return FuzzPictureDecoder(data, size, "\x89PNG\r\n\x1a\n", 8);
}
