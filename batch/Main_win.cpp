// The batch program's entry point in the Windows build: a console program
// with wide arguments. COM is started for the picture decoders.

#include "batch/BatchRun.h"

#include <objbase.h>

int wmain(int argc, wchar_t** argv) {
    bool com = SUCCEEDED(CoInitialize(nullptr));
    std::vector<MString> args;
    for (int i = 1; i < argc; i++)
        args.push_back(MString(reinterpret_cast<const char16_t*>(argv[i])));
    int result = RunBatch(args);
    if (com) CoUninitialize();
    return result;
}
