// Fuzz target of the native build's GIF decoding: arbitrary bytes behind
// the GIF mark, decoded from memory as a loaded file would be.
//
// Seeds: tests/data/pictures/*.gif tests/data/fuzz/*.gif
// Max length: 65536

#include "PictureFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return FuzzPictureDecoder(data, size, "GIF89a", 6);
}
