// Time of a trace by the built-in tracer, outlines and the freehand fit as
// "Trace bitmap..." runs them, against Debian's potrace on the same bitmap,
// and the ratio of the two (ours / potrace; the goal is at most 1.0).
// tools/bench-tracer.sh makes the pictures and runs this.
//
//   TracerBench [--start TINY.png TINY.bmp] NAME RGBA.png BILEVEL.png BILEVEL.bmp
//               RGB24.bmp [NAME ...]
//   TracerBench --trace PICTURE       (one trace in this process, for timing)
//
// Each picture comes in four files of the same pixels: for the built-in
// tracer, which reads the shape from alpha, a PNG of 32 bits a pixel and a
// PNG of one bit a pixel with a transparent palette entry; for potrace,
// which reads brightness, a black on white BMP of one bit a pixel and the
// 24-bit BMP that the program itself hands the external tracer. Like is
// compared with like: the one-bit files with each other, and the full-colour
// files with each other.
//
// Both sides are timed the same way: a new process per run, started without
// a shell, its processor time (user and system) taken from the ended child,
// the best of five runs (the machine is shared, and waiting for a processor
// is no part of either tracer's cost). So each side's time holds its process
// start, reading its file from disk (from the file cache, warm for both),
// decoding it, tracing and fitting; potrace's holds writing its EPS file as
// well, ours finishing the sketch (centre, scale, clean-up) as a trace does.
// With --start, both trace a picture of one pixel too: that time is mostly
// the process start, and the ratios are also given net of it. The built-in
// tracer is also timed inside this process, without a process start, and with the straightforward
// way of its scratch maps (one run, as it is slow), whose outlines must be the same.

#include "eps/TraceFlow.h"
#include "eps/WTracer.h"
#include "foundation/Platform.h"
#include "shell/WSettings.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "view/WView.h"

#include <cstdio>
#include <cstdlib>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace {

const int Runs = 5;

double Milliseconds(const timeval& t) {
    return t.tv_sec * 1e3 + t.tv_usec / 1e3;
}

// Processor time of this process and of its ended children, milliseconds.
double ProcessorMilliseconds() {
    timespec self;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &self);
    rusage children;
    getrusage(RUSAGE_CHILDREN, &children);
    return self.tv_sec * 1e3 + self.tv_nsec / 1e6 + Milliseconds(children.ru_utime) +
           Milliseconds(children.ru_stime);
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

// Runs a program with its arguments, no shell between; true when it ended
// with status 0.
bool Run(const std::vector<std::string>& arguments) {
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    pid_t child = 0;
    if (posix_spawnp(&child, argv[0], nullptr, nullptr, argv.data(), environ) != 0) return false;
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

MString Wide(const char* text) {
    MString result;
    result.AssignNarrow(text, 65001);
    return result;
}

bool CreateObjects() {
    static MessageScript quiet; // no boxes in a benchmark
    TheMessageScript = &quiet;
    if (!CreateSettings() || !CreateSketch() || !CreateRecording() || !CreateView()) return false;
    TheView->SetViewport(800, 600);
    return true;
}

void DestroyObjects() {
    DestroyView();
    DestroyRecording();
    DestroySketch();
    DestroySettings();
}

struct Traced {
    std::vector<std::vector<WTracePoint>> Outlines; // null slots as empty lists
    int Present = 0;
};

Traced TraceOutlines(const MString& picture, bool straightforward) {
    WTracer tracer;
    tracer.Detail = 2;
    tracer.Straightforward = straightforward;
    if (tracer.Load(picture)) tracer.Trace();
    Traced traced;
    for (int32_t i = 0; i < tracer.OutlineCount; i++) {
        const WTraceOutline* outline = tracer.Outlines[i];
        traced.Outlines.emplace_back();
        if (!outline) continue;
        traced.Present++;
        traced.Outlines.back().assign(outline->Points.Data,
                                      outline->Points.Data + outline->PointCount);
    }
    return traced;
}

bool Same(const Traced& a, const Traced& b) {
    if (a.Outlines.size() != b.Outlines.size()) return false;
    for (size_t i = 0; i < a.Outlines.size(); i++) {
        if (a.Outlines[i].size() != b.Outlines[i].size()) return false;
        for (size_t k = 0; k < a.Outlines[i].size(); k++)
            if (a.Outlines[i][k].x != b.Outlines[i][k].x ||
                a.Outlines[i][k].y != b.Outlines[i][k].y)
                return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::string(argv[1]) == "--trace") {
        if (!CreateObjects()) return 1;
        bool traced = TraceInternal(Wide(argv[2]));
        DestroyObjects();
        return traced ? 0 : 1;
    }
    const char *tinyPng = nullptr, *tinyBmp = nullptr;
    if (argc > 3 && std::string(argv[1]) == "--start") {
        tinyPng = argv[2];
        tinyBmp = argv[3];
        argv += 3;
        argc -= 3;
    }
    if (argc < 6 || (argc - 1) % 5 != 0) {
        std::fprintf(stderr, "usage: TracerBench [--start TINY.png TINY.bmp] NAME RGBA.png "
                             "BILEVEL.png BILEVEL.bmp RGB24.bmp "
                             "...\n       TracerBench --trace PICTURE\n");
        return 2;
    }
    if (!CreateObjects()) return 1;
    std::string eps = std::string(std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "/tmp") +
                      "/tracer-bench-" + std::to_string(getpid()) + ".eps";
    std::string self = "/proc/self/exe";

    bool ok = true;
    auto ours = [&](const char* picture) {
        return BestMilliseconds([&] { ok = Run({self, "--trace", picture}) && ok; });
    };
    auto theirs = [&](const char* picture) {
        return BestMilliseconds([&] {
            ok = Run({"potrace", "-c", "-q", "-o", eps, picture}) && ok;
        });
    };
    double oursStart = 0, theirsStart = 0;
    if (tinyPng) {
        oursStart = ours(tinyPng);
        theirsStart = theirs(tinyBmp);
        std::printf("start-up (a trace of one pixel): ours %.1f ms, potrace %.1f ms\n", oursStart,
                    theirsStart);
    }
    for (int i = 1; i + 4 < argc; i += 5) {
        const char* name = argv[i];
        const char *rgba = argv[i + 1], *bilevel = argv[i + 2];
        const char *bilevelBmp = argv[i + 3], *rgbBmp = argv[i + 4];
        double oursBilevel = ours(bilevel), theirsBilevel = theirs(bilevelBmp);
        double oursRgba = ours(rgba), theirsRgb = theirs(rgbBmp);
        double inProcess = BestMilliseconds([&] { ok = TraceInternal(Wide(bilevel)) && ok; });
        int32_t points = TheSketch->PointCount;
        double inProcessRgba = BestMilliseconds([&] { ok = TraceInternal(Wide(rgba)) && ok; });
        ok = ok && TheSketch->PointCount == points;

        Traced fast = TraceOutlines(Wide(bilevel), false);
        Traced fromRgba = TraceOutlines(Wide(rgba), false);
        Traced plain;
        double straightforward =
            BestMilliseconds([&] { plain = TraceOutlines(Wide(bilevel), true); }, 1);
        bool sameFiles = Same(fast, fromRgba), sameWays = Same(fast, plain);
        ok = ok && sameFiles && sameWays;

        std::printf("%s: %d outlines, %d points in the sketch\n", name, fast.Present, int(points));
        std::printf("%s  1-bit:  ours %7.1f ms (PNG)   potrace %7.1f ms (BMP)   ratio %.2f\n", name,
                    oursBilevel, theirsBilevel, oursBilevel / theirsBilevel);
        std::printf("%s  colour: ours %7.1f ms (PNG32) potrace %7.1f ms (BMP24) ratio %.2f\n", name,
                    oursRgba, theirsRgb, oursRgba / theirsRgb);
        std::printf("%s  mixed:  ours (PNG32) / potrace (1-bit BMP) %.2f\n", name,
                    oursRgba / theirsBilevel);
        if (tinyPng)
            std::printf("%s  net of start-up: 1-bit ratio %.2f, colour ratio %.2f\n", name,
                        (oursBilevel - oursStart) / (theirsBilevel - theirsStart),
                        (oursRgba - oursStart) / (theirsRgb - theirsStart));
        std::printf("%s  in this process, no process start: %.1f ms (1-bit PNG), %.1f ms (PNG32)\n",
                    name, inProcess, inProcessRgba);
        std::printf("%s  the tracer alone the straightforward way: %.1f ms; outlines the same: "
                    "%s; from both PNGs the same: %s\n",
                    name, straightforward, sameWays ? "yes" : "NO", sameFiles ? "yes" : "NO");
    }
    std::remove(eps.c_str());
    DestroyObjects();
    return ok ? 0 : 1;
}
