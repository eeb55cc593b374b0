#pragma once
// Decoders of the block-compressed DDS formats BC1 to BC5 and BC7. Each takes
// one block of 4 by 4 pixels and writes 16 pixels of red, green, blue, alpha
// (R8G8B8A8 order), row by row, to rgba.

#include <cstdint>

// BC1: 8 bytes. With allowThreeColour (BC1 itself) a first colour not above
// the second selects the three-colour mode whose fourth entry is
// transparent black; BC2 and BC3 always use four colours.
void DecodeBc1Block(const uint8_t* block, uint8_t* rgba, bool allowThreeColour = true);
// BC2: 16 bytes, explicit 4-bit alpha and a BC1 colour block.
void DecodeBc2Block(const uint8_t* block, uint8_t* rgba);
// BC3: 16 bytes, an interpolated alpha block and a BC1 colour block.
void DecodeBc3Block(const uint8_t* block, uint8_t* rgba);
// BC4: 8 bytes, one interpolated channel: gray, the value in red, green and
// blue, alpha 255.
void DecodeBc4Block(const uint8_t* block, uint8_t* rgba);
// BC5: 16 bytes, two interpolated channels: red and green, blue 0, alpha 255.
void DecodeBc5Block(const uint8_t* block, uint8_t* rgba);
// BC7: 16 bytes in one of eight modes; a block without a mode (first byte 0)
// decodes to transparent black.
void DecodeBc7Block(const uint8_t* block, uint8_t* rgba);

// One interpolated channel block of BC3, BC4 and BC5 (8 bytes): 16 values
// written to out, stride bytes apart.
void DecodeChannelBlock(const uint8_t* block, uint8_t* out, int32_t stride);
