// The batch program's entry point in the native build: the arguments arrive
// as UTF-8.

#include "batch/BatchRun.h"

int main(int argc, char** argv) {
    std::vector<MString> args;
    for (int i = 1; i < argc; i++) {
        MString arg;
        arg.AssignNarrow(argv[i], 65001);
        args.push_back(arg);
    }
    return RunBatch(args);
}
