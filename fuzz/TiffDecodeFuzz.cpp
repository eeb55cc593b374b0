// Fuzz target of the native build's TIFF decoding: arbitrary bytes behind
// the TIFF mark, decoded from memory as a loaded file would be.
//
// Seeds: tests/data/pictures/*.tif
// Max length: 65536

#include "PictureFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return FuzzPictureDecoder(data, size, "II*\0", 4);
}
