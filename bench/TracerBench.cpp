// Time of a trace by the built-in tracer, outlines and the freehand fit as
// "Trace bitmap..." runs them, against Debian's potrace on the same bitmap,
// and the ratio of the two. Each picture is given as a PNG whose alpha is
// the shape, for the built-in tracer, and for potrace as a black on white
// BMP of one bit a pixel and as the 24-bit BMP that the program itself hands
// the external tracer. tools/bench-tracer.sh makes the pictures and runs
// this.
//
//   TracerBench NAME PICTURE.png PICTURE.bmp PICTURE24.bmp [NAME ...]
//
// Times are processor times (user and system), the best of three runs: the
// machine is shared, and waiting for a processor is no part of either
// tracer's cost. The tracer alone is timed twice more, with the visited map
// cleared where the last outline touched it and cleared whole (one run, as
// it is slow), to show what the faster clearing saves.

#include "eps/TraceFlow.h"
#include "eps/WTracer.h"
#include "foundation/Platform.h"
#include "shell/WSettings.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "view/WView.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/resource.h>
#include <time.h>

namespace {

const int Runs = 3;

// Processor time of this process and of its ended children, milliseconds.
double ProcessorMilliseconds() {
    timespec self;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &self);
    rusage children;
    getrusage(RUSAGE_CHILDREN, &children);
    auto ms = [](const timeval& t) { return t.tv_sec * 1e3 + t.tv_usec / 1e3; };
    return self.tv_sec * 1e3 + self.tv_nsec / 1e6 + ms(children.ru_utime) + ms(children.ru_stime);
}

template <typename Body> double BestMilliseconds(Body body, int runs = Runs) {
    double best = 1e30;
    for (int run = 0; run < runs; run++) {
        double start = ProcessorMilliseconds();
        body();
        double ms = ProcessorMilliseconds() - start;
        if (ms < best) best = ms;
    }
    return best;
}

MString Wide(const char* text) {
    MString result;
    result.AssignNarrow(text, 65001);
    return result;
}

int PresentOutlines(const WTracer& tracer) {
    int count = 0;
    for (int32_t i = 0; i < tracer.OutlineCount; i++)
        count += tracer.Outlines[i] != nullptr;
    return count;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 5 || (argc - 1) % 4 != 0) {
        std::fprintf(stderr, "usage: TracerBench NAME PICTURE.png PICTURE.bmp PICTURE24.bmp ...\n");
        return 2;
    }
    MessageScript quiet; // no boxes in a benchmark
    TheMessageScript = &quiet;
    if (!CreateSettings() || !CreateSketch() || !CreateRecording() || !CreateView()) return 1;
    TheView->SetViewport(800, 600);
    std::string eps = std::string(std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "/tmp") +
                      "/tracer-bench-" + std::to_string(std::rand()) + ".eps";

    std::printf("%-6s %8s %7s %8s %10s %10s %8s %8s\n", "", "outlines", "points", "ours ms",
                "potrace ms", "(24-bit)", "ratio", "(24-bit)");
    bool ok = true;
    for (int i = 1; i + 3 < argc; i += 4) {
        MString png = Wide(argv[i + 1]);
        std::string command = std::string("potrace -c -q -o '") + eps + "' '";

        bool traced = true;
        double ours = BestMilliseconds([&] { traced = TraceInternal(png) && traced; });
        double theirs = BestMilliseconds([&] {
            if (std::system((command + argv[i + 2] + "'").c_str()) != 0) traced = false;
        });
        double theirs24 = BestMilliseconds([&] {
            if (std::system((command + argv[i + 3] + "'").c_str()) != 0) traced = false;
        });
        int outlines = 0;
        double touched = BestMilliseconds([&] {
            WTracer tracer;
            tracer.Detail = 2;
            if (tracer.Load(png)) tracer.Trace();
            outlines = PresentOutlines(tracer);
        });
        double whole = BestMilliseconds(
            [&] {
                WTracer tracer;
                tracer.Detail = 2;
                tracer.Straightforward = true;
                if (tracer.Load(png)) tracer.Trace();
            },
            1);
        std::printf("%-6s %8d %7d %8.1f %10.1f %10.1f %8.2f %8.2f\n", argv[i], outlines,
                    int(TheSketch->PointCount), ours, theirs, theirs24, ours / theirs,
                    ours / theirs24);
        std::printf("%-6s the tracer alone: %.1f ms, with the visited map cleared whole %.1f ms "
                    "(%.1f times as long)\n",
                    argv[i], touched, whole, whole / touched);
        ok = ok && traced;
    }
    std::remove(eps.c_str());
    DestroyView();
    DestroyRecording();
    DestroySketch();
    DestroySettings();
    return ok ? 0 : 1;
}
