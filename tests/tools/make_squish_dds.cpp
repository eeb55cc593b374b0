// Makes DDS test files with libsquish, the independent BC encoder and
// decoder the picture tests are checked against. Built and run by
// tests/data/make_pictures.sh:
//
//   make_squish_dds MODE WIDTH HEIGHT INPUT.rgba OUTPUT.dds EXPECTED.rgba
//
// MODE is bc2, bc4 or bc5. INPUT.rgba holds WIDTH * HEIGHT pixels of red,
// green, blue, alpha. The DDS file has the legacy header with the FourCC
// "DXT3", "ATI1" or "ATI2" and one mip level; EXPECTED.rgba is what
// libsquish decodes from the same blocks. This libsquish encodes BC4 and BC5
// but cannot decode them; as a BC4 block (and each half of a BC5 block) is
// bit for bit the alpha block of BC3, the expected channels are what its BC3
// decoder makes of them put in the alpha place. The expected file holds them
// as the picture loader lays out BC4 and BC5: the channels in red (and
// green), blue 0, alpha 255.

#include <squish.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

void Put32(std::vector<uint8_t>& out, size_t at, uint32_t value) {
    for (int i = 0; i < 4; i++)
        out[at + i] = uint8_t(value >> (8 * i));
}

bool ReadAll(const char* path, std::vector<uint8_t>& bytes) {
    FILE* file = std::fopen(path, "rb");
    if (!file) return false;
    uint8_t buffer[4096];
    size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0)
        bytes.insert(bytes.end(), buffer, buffer + got);
    std::fclose(file);
    return true;
}

bool WriteAll(const char* path, const std::vector<uint8_t>& bytes) {
    FILE* file = std::fopen(path, "wb");
    if (!file) return false;
    bool done = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && done;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 7) {
        std::fprintf(stderr, "usage: make_squish_dds bc2|bc4|bc5 W H in.rgba out.dds out.rgba\n");
        return 2;
    }
    int flags;
    const char* fourCC;
    if (!std::strcmp(argv[1], "bc2")) {
        flags = squish::kDxt3;
        fourCC = "DXT3";
    } else if (!std::strcmp(argv[1], "bc4")) {
        flags = squish::kBc4;
        fourCC = "ATI1";
    } else if (!std::strcmp(argv[1], "bc5")) {
        flags = squish::kBc5;
        fourCC = "ATI2";
    } else {
        std::fprintf(stderr, "unknown mode %s\n", argv[1]);
        return 2;
    }
    int width = std::atoi(argv[2]), height = std::atoi(argv[3]);
    std::vector<uint8_t> rgba;
    if (width < 1 || height < 1 || !ReadAll(argv[4], rgba) ||
        rgba.size() != size_t(width) * size_t(height) * 4) {
        std::fprintf(stderr, "bad input %s\n", argv[4]);
        return 1;
    }
    flags |= squish::kColourIterativeClusterFit;
    int blockBytes = squish::GetStorageRequirements(width, height, flags);
    std::vector<uint8_t> blocks(static_cast<size_t>(blockBytes));
    squish::CompressImage(rgba.data(), width, height, blocks.data(), flags);
    std::vector<uint8_t> decoded(rgba.size());
    if (flags & squish::kDxt3) {
        squish::DecompressImage(decoded.data(), width, height, blocks.data(), flags);
    } else {
        int channels = (flags & squish::kBc5) ? 2 : 1;
        const uint8_t* block = blocks.data();
        for (int by = 0; by < height; by += 4)
            for (int bx = 0; bx < width; bx += 4)
                for (int c = 0; c < channels; c++, block += 8) {
                    uint8_t bc3[16] = {};
                    std::memcpy(bc3, block, 8);
                    uint8_t pixels[64];
                    squish::Decompress(pixels, bc3, squish::kDxt5);
                    for (int i = 0; i < 16; i++) {
                        int x = bx + i % 4, y = by + i / 4;
                        if (x >= width || y >= height) continue;
                        uint8_t* out = decoded.data() + (size_t(y) * width + x) * 4;
                        out[c] = pixels[i * 4 + 3];
                        if (c == 0) {
                            out[1] = out[2] = 0;
                            out[3] = 255;
                        }
                    }
                }
    }

    // The legacy header: size, flags (caps, height, width, pixel format,
    // linear size), height, width, linear size, depth 0, one mip level; the
    // pixel format with its FourCC; the texture caps.
    std::vector<uint8_t> file(4 + 124, 0);
    std::memcpy(file.data(), "DDS ", 4);
    Put32(file, 4, 124);
    Put32(file, 8, 0x1 | 0x2 | 0x4 | 0x1000 | 0x80000);
    Put32(file, 12, uint32_t(height));
    Put32(file, 16, uint32_t(width));
    Put32(file, 20, uint32_t(blockBytes));
    Put32(file, 28, 1);
    Put32(file, 76, 32);
    Put32(file, 80, 0x4);
    std::memcpy(file.data() + 84, fourCC, 4);
    Put32(file, 108, 0x1000);
    file.insert(file.end(), blocks.begin(), blocks.end());
    if (!WriteAll(argv[5], file) || !WriteAll(argv[6], decoded)) {
        std::fprintf(stderr, "cannot write\n");
        return 1;
    }
    return 0;
}
