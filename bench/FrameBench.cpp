// One frame of a large sketch in the edit mode on the recording surface of
// an 800 by 600 window: the first frame of the process (the surface made,
// the recording grown from nothing), later frames into a recording that has
// room (median of five), and a run of frames that keeps the recording, as the
// frame loop does, with its slowest frame. Times are CPU time of the process.
// Usage: FrameBench [FILE.eps]   (without a file: the generated sketch of
// 10,000 records in bench/GeneratedSketch.h)

#include "bench/GeneratedSketch.h"
#include "drawing/MDrawSurface.h"
#include "eps/LoadSketch.h"
#include "foundation/Platform.h"
#include "shell/Frame.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "shell/Window.h"
#include "sketch/WSketch.h"
#include "view/WView.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

namespace {

MessageScript TheQuietScript; // keeps no texts, answers OK
int PretendWindow;

// The process's CPU time: other work on a shared machine does not count.
double CpuMilliseconds() {
    return double(std::clock()) * 1000.0 / CLOCKS_PER_SEC;
}

// The time of one frame, and the entries it added to the recording.
double TimedFrame(int32_t& entries) {
    int32_t before = TheSurface ? TheSurface->OperationCount : 0;
    double start = CpuMilliseconds();
    DrawFrame();
    double time = CpuMilliseconds() - start;
    entries = TheSurface ? TheSurface->OperationCount - before : 0;
    return time;
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 2) {
        std::fprintf(stderr, "usage: FrameBench [FILE.eps]\n");
        return 2;
    }
    TheMessageScript = &TheQuietScript;
    StartDebugCapture(); // the clean-up's and the surface's lines
    if (!CreateSettings() || !CreateSketch() || !CreateView()) return 1;
    const char* name = "generated";
    if (argc == 2) {
        name = "traced page";
        if (!LoadSketch(Narrow(argv[1]))) {
            std::fprintf(stderr, "could not load %s\n", argv[1]);
            return 1;
        }
    } else {
        MakeGeneratedSketch(*TheSketch, 10000);
    }
    TheSketch->Current = TheSketch->PointCount / 2;
    TheMainWindow = &PretendWindow;
    SetMainClientSize(800, 600);
    TheView->SetViewport(800, 600);
    TheView->FitToSketch();
    TheMode = ModeEditSketch;

    int32_t entries = 0;
    double first = TimedFrame(entries);
    std::vector<double> times;
    for (int run = 0; run < 5; run++) {
        TheSurface->OperationCount = 0;
        times.push_back(TimedFrame(entries));
    }
    std::sort(times.begin(), times.end());
    double later = times[2];
    // The frame loop itself never empties the recording.
    double slowest = 0;
    TheSurface->OperationCount = 0;
    for (int run = 0; run < 20; run++) {
        int32_t added = 0;
        slowest = std::max(slowest, TimedFrame(added));
    }

    char label[80];
    std::snprintf(label, sizeof label, "%s, %d points", name, TheSketch->PointCount);
    std::printf("frame, edit mode: %s (%d operations)\n", label, entries);
    std::printf("  %-32s %9.2f ms\n", "first frame of the process", first);
    std::printf("  %-32s %9.2f ms  (%.1f ns per operation)\n", "later frame, recording with room",
                later, later * 1e6 / entries);
    std::printf("  %-32s %9.2f ms\n", "slowest of 20, recording kept", slowest);
    DestroySurface();
    StopDebugCapture();
    return 0;
}
