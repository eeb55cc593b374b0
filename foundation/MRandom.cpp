// The generator's constants and its scale of 10000 are part of what the
// system produces: the same seed must give the same trees and strings.

#include "foundation/MRandom.h"

uint32_t MRandomSeed = 0;

namespace {

// One step of the generator: 15 bits of the new state.
int32_t Draw() {
    MRandomSeed = MRandomSeed * 214013u + 2531011u;
    return int32_t((MRandomSeed >> 16) & 0x7FFF);
}

} // namespace

// A draw has only 15 bits, so large ranges are reached by scaling a draw of
// 10000 in 32-bit floats; most values of such a range never come out.
int32_t MRandomInt(int32_t n) {
    if (n < 2) {
        Draw();
        return 0;
    }
    if (n <= 32766) return Draw() % n;
    float scaled = float(MRandomInt(10000)) * float(n);
    scaled = scaled * 0.0001f;
    return int32_t(scaled);
}

// Arithmetic in 32-bit floats, one rounding per operation.
float MRandomRange(float a, float b) {
    if (b < a) {
        float swap = a;
        a = b;
        b = swap;
    }
    float span = b - a;
    if (span <= 0) {
        Draw();
        return a;
    }
    float scaled = float(MRandomInt(10000)) * span;
    scaled = scaled * 0.0001f;
    return scaled + a;
}
