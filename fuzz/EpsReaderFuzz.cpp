// Fuzz target of the PostScript reader: arbitrary bytes read as an EPS file,
// once as they are and once behind a cairo creator line and the end of a
// page setup, so that the byte rewrite of cairo's page content always runs;
// and the rewrite alone on a copy of the bytes.
//
// Seeds: tests/data/potrace/*.eps tests/data/cairo/*.eps
// Max length: 65536

#include "eps/EpsReader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

// What every result must satisfy, whatever the bytes.
void Check(const MEpsPath& path) {
    if (path.Used < 0 || path.Used > path.Records.Count) std::abort();
    if (path.MaxLinesPerCurve <= 0) std::abort();
    for (int32_t i = 0; i < path.Used; i++) {
        uint32_t kind = path.Records[i].Kind;
        if (kind < EpsMoveOpen || kind > EpsCurve) std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > (1u << 20)) return 0;
    Check(ReadEpsMemory(data, int32_t(size)));

    static const char prefix[] = "%%Creator: cairo\n/l/lineto\n/c/curveto\n"
                                 "/cm { 6 array astore concat } bind def\n%%EndPageSetup\n";
    std::vector<uint8_t> cairo(prefix, prefix + sizeof prefix - 1);
    cairo.insert(cairo.end(), data, data + size);
    Check(ReadEpsMemory(cairo.data(), int32_t(cairo.size())));

    std::vector<uint8_t> bytes(data, data + size);
    MCairo::RewritePage(bytes.data(), int32_t(bytes.size()));
    return 0;
}
