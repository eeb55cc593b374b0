// Fuzz target of the bitmap tracer: random small masks through both
// branches. The first two bytes give the width and height (1 to 48 pixels,
// so both the small branch, up to 32, and the large one are reached), the
// third byte the detail, and the remaining bits the pixels, opaque or
// transparent, row by row. Every result must be an outline that is closed,
// with its corners on the grid of the mask: inside the picture, or on the
// mask's border ring when a fill has run out of a walk that closed early at
// a corner where two shapes touch and the ring was turned into a shape. A
// hang shows up as libFuzzer's timeout. The faster clearing is compared with
// the straightforward one on every input. Not built by CMake; build and run it with clang's
// libFuzzer from the repository root:
//
//   clang++ -std=c++17 -g -O1 -fsanitize=fuzzer,address,undefined -I. \
//       fuzz/TracerFuzz.cpp eps/WTracer.cpp eps/MOutlineBuilder.cpp \
//       drawing/MPicture.cpp drawing/Resample.cpp drawing/TgaReader.cpp \
//       drawing/DdsReader.cpp drawing/DdsWriter.cpp drawing/BlockDecode.cpp \
//       drawing/BmpFile.cpp drawing/PictureDecode_posix.cpp view/Geometry.cpp \
//       foundation/MFile.cpp foundation/MFile_posix.cpp foundation/MString.cpp \
//       foundation/Platform.cpp foundation/Platform_posix.cpp \
//       -lpng -ljpeg -lgif -ltiff -o build/TracerFuzz
//   build/TracerFuzz -max_total_time=120 -max_len=300 -timeout=10 -close_fd_mask=2
//
// The last option silences the debug output of the outline builder.

#include "drawing/MPicture.h"
#include "eps/WTracer.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void Check(const WTracer& tracer, int32_t width, int32_t height) {
    if (tracer.OutlineCount < 0) std::abort();
    if (tracer.OutlineCount > 0 && tracer.OutlineCount > tracer.Outlines.Count) std::abort();
    for (int32_t i = 0; i < tracer.OutlineCount; i++) {
        const WTraceOutline* outline = tracer.Outlines[i];
        if (!outline) continue;
        if (outline->PointCount < 0 || outline->PointCount > outline->Points.Count) std::abort();
        if (outline->PointCount == 0) continue;
        if (outline->Closed != 1) std::abort();
        for (int32_t k = 0; k < outline->PointCount; k++) {
            WTracePoint p = outline->Points[k];
            if (p.x < -1 || p.y < -1 || p.x > width + 1 || p.y > height + 1) std::abort();
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 3) return 0;
    int32_t width = 1 + data[0] % 48, height = 1 + data[1] % 48;
    MPicture picture;
    if (!picture.Allocate(width, height, PictureBgra8)) return 0;
    size_t bit = 0, bits = (size - 3) * 8;
    for (int32_t y = 0; y < height; y++)
        for (int32_t x = 0; x < width; x++, bit++) {
            bool opaque = bit < bits && (data[3 + bit / 8] >> (bit % 8)) & 1;
            picture.PixelAddress(x, y)[3] = opaque ? 255 : 0;
        }
    WTracer tracer;
    tracer.Detail = data[2] % 4;
    if (!tracer.LoadPicture(picture)) std::abort();
    tracer.Trace();
    Check(tracer, width, height);

    // The faster clearing must give what the straightforward one gives.
    WTracer plain;
    plain.Detail = tracer.Detail;
    plain.Straightforward = true;
    plain.LoadPicture(picture);
    plain.Trace();
    if (plain.OutlineCount != tracer.OutlineCount) std::abort();
    for (int32_t i = 0; i < plain.OutlineCount; i++) {
        const WTraceOutline* a = plain.Outlines[i];
        const WTraceOutline* b = tracer.Outlines[i];
        if (!a != !b) std::abort();
        if (!a) continue;
        if (a->PointCount != b->PointCount) std::abort();
        for (int32_t k = 0; k < a->PointCount; k++)
            if (a->Points[k].x != b->Points[k].x || a->Points[k].y != b->Points[k].y) std::abort();
    }
    return 0;
}
