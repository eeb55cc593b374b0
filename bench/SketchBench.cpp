// What users wait for with a large sketch: its load, its save and one frame
// in the edit mode on the recording surface, each the median of five runs,
// and the first frame of a fresh surface. Times are CPU time of the process.
// Usage: SketchBench FILE.eps SCRATCH_FOLDER

#include "drawing/MDrawSurface.h"
#include "elements/WElement.h"
#include "eps/EpsWriter.h"
#include "eps/LoadSketch.h"
#include "foundation/MFile.h"
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
#include <string>
#include <vector>

namespace {

const int Runs = 5;

MessageScript TheQuietScript; // keeps no texts, answers OK
int PretendWindow;

// The process's CPU time in milliseconds: on a machine shared with other
// work the wall clock says more about the others than about this program.
double CpuMilliseconds() {
    timespec now;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1000.0 + double(now.tv_nsec) / 1e6;
}

double Milliseconds(double start) {
    return CpuMilliseconds() - start;
}

template <typename Body> double Median(Body body) {
    std::vector<double> times;
    for (int run = 0; run < Runs; run++) {
        double start = CpuMilliseconds();
        body();
        times.push_back(Milliseconds(start));
    }
    std::sort(times.begin(), times.end());
    return times[Runs / 2];
}

int32_t FileBytes(const MString& path) {
    MFile file;
    if (!file.Open(path, false, false)) return -1;
    return file.FileSize();
}

void Print(const char* what, double ms, int32_t bytes) {
    if (bytes > 0)
        std::printf("%-34s %9.2f ms  %8.2f MB/s  (%d bytes)\n", what, ms, bytes / ms / 1000.0,
                    bytes);
    else
        std::printf("%-34s %9.2f ms\n", what, ms);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: SketchBench FILE.eps SCRATCH_FOLDER\n");
        return 2;
    }
    TheMessageScript = &TheQuietScript;
    StartDebugCapture(); // the clean-up's and the surface's lines
    if (!CreateSettings() || !CreateSketch() || !CreateElement() || !CreateView()) return 1;
    MString source = Narrow(argv[1]);
    MString target = Narrow((std::string(argv[2]) + "/saved.eps").c_str());

    bool loaded = true;
    double load = Median([&] { loaded = LoadSketch(source) && loaded; });
    if (!loaded) {
        std::fprintf(stderr, "could not load %s\n", argv[1]);
        return 1;
    }
    Print("LoadSketch", load, FileBytes(source));
    std::printf("%-34s %9d points\n", "  after load", TheSketch->PointCount);

    double text = Median([&] { MakeSketchEps(*TheSketch, *TheSettings); });
    Print("  building the EPS text", text, 0);
    bool saved = true;
    double save = Median([&] {
        MString path = target;
        saved = SaveEps(path) && saved;
    });
    if (!saved) {
        std::fprintf(stderr, "could not save %s\n", argv[2]);
        return 1;
    }
    Print("SaveEps", save, FileBytes(target));

    TheMainWindow = &PretendWindow;
    SetMainClientSize(800, 600);
    TheMode = ModeEditSketch;
    double start = CpuMilliseconds();
    DrawFrame();
    double first = Milliseconds(start);
    int32_t operations = TheSurface ? TheSurface->OperationCount : 0;
    Print("first frame, edit mode", first, 0);
    // Later frames draw into a recording that already has room.
    double frame = Median([] {
        TheSurface->OperationCount = 0;
        DrawFrame();
    });
    Print("one frame, edit mode, with room", frame, 0);
    std::printf("%-34s %9d operations\n", "  in one frame", operations);
    DestroySurface();
    StopDebugCapture();
    return 0;
}
