// Fuzz target of the Spaghetti project reader: arbitrary bytes read from
// memory as a project, the tag count and the parameters checked afterwards.
// Not built by CMake; build and run it with clang's libFuzzer from the
// repository root:
//
//   clang++ -std=c++17 -g -O1 -fsanitize=fuzzer,address,undefined -I. \
//       fuzz/SpaghettiProjectFuzz.cpp spaghetti/ProjectReader.cpp \
//       foundation/MTextFile.cpp foundation/MFile.cpp foundation/MFile_posix.cpp \
//       foundation/MString.cpp foundation/Platform.cpp foundation/Platform_posix.cpp \
//       -o build/SpaghettiProjectFuzz
//   build/SpaghettiProjectFuzz -max_total_time=60 -max_len=4096

#include "spaghetti/WSpaghetti.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > (1u << 20)) return 0;
    WSpaghetti tool;
    int32_t tags = ReadProjectMemory(data, int32_t(size), tool);
    if (tags < 0 || size_t(tags) > size) __builtin_trap();
    // Not-a-number never survives the reading of a number.
    for (float value : {tool.Radius, tool.MarginMin, tool.MarginMax, tool.CurveLengthMin,
                        tool.CurveLengthMax, tool.Depth, tool.BezierMin, tool.BezierMax})
        if (std::isnan(value)) __builtin_trap();
    if (tool.Picture || tool.CurveCount != 0 || tool.ShapePointCount != 0) __builtin_trap();
    return 0;
}
