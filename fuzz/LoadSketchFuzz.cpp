// Fuzz target of the sketch load: arbitrary bytes loaded as an EPS file or a
// track file (the first byte chooses), through the whole finish with its
// clean-up, into the one sketch, with message boxes answered by a script.
//
// Seeds: tests/data/potrace/*.eps tests/data/cairo/*.eps
// Seed prefix: \000
// Max length: 65536

#include "elements/WElement.h"
#include "eps/LoadSketch.h"
#include "foundation/Platform.h"
#include "shell/WSettings.h"
#include "sketch/WSketch.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

MessageScript TheQuietScript; // keeps no texts, answers OK

bool Prepare() {
    TheMessageScript = &TheQuietScript;
    return CreateSettings() && CreateSketch() && CreateElement();
}

// What every load must leave, whatever the bytes.
void Check(bool loaded) {
    const WSketch& sketch = *TheSketch;
    if (sketch.PointCount < 0 || sketch.PointCount > sketch.Points.Count) std::abort();
    if (loaded && sketch.PointCount < 2) std::abort();
    if (loaded && sketch.Points[0].Kind != KindMove) std::abort();
    if (loaded && sketch.Modified) std::abort();
    for (int32_t i = 0; i < sketch.PointCount; i++)
        if (sketch.Points[i].Kind > KindCurve) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool ready = Prepare();
    if (!ready || size < 1 || size > (1u << 20)) return 0;
    TheQuietScript.Count = 0;
    MString path(data[0] & 1 ? u"fuzz.qo" : u"fuzz.eps");
    Check(LoadSketchMemory(path, data + 1, int32_t(size - 1)));
    return 0;
}
