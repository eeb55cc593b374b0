// Fuzz target of the native build's JPEG decoding: arbitrary bytes behind
// the JPEG mark, decoded from memory as a loaded file would be.
//
// Seeds: tests/data/pictures/*.jpg tests/data/fuzz/*.jpg
// Max length: 65536

#include "PictureFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return FuzzPictureDecoder(data, size, "\xff\xd8\xff", 3);
}
