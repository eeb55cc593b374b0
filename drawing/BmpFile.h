#pragma once
// Windows bitmaps for the native build, which has no imaging component of the
// platform to read and write them. The formats follow what that component
// delivers: 24-bit files as format 4, everything else as format 7.

#include "drawing/MPicture.h"

// Reads an uncompressed or bit-field BMP of 1, 4, 8, 16, 24 or 32 bits into
// an empty picture, rows top-down. Run-length-encoded files fail.
bool ReadBmp(MPicture& picture, const uint8_t* bytes, int32_t size);
// The picture as a 24-bit bottom-up BMP file in bytes (fill in size).
bool WriteBmp(const MPicture& picture, MVector<uint8_t>& bytes, int32_t& size);
