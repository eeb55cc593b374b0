#pragma once
// The bitmap tracer: the alpha shape of a picture as closed pixel outlines,
// polygons whose corners lie on the grid between the pixels. Outer borders
// and holes come out alike. The tracer fits no curves; the trace flow hands
// each outline to the freehand recorder for that. It makes no file or OS
// calls beyond loading the picture.
//
// Coordinates: the mask has a border of one empty cell, so the picture's
// pixel (x, y) is cell (x + 1, y + 1). Cell (x, y) spans the corners x - 1
// to x and y - 1 to y; corner (x, y) thus lies at the picture's pixel edge
// x, y, and the picture's whole rectangle runs from corner (0, 0) to corner
// (Width - 2, Height - 2).

#include "foundation/MString.h"
#include "foundation/MVector.h"

#include <cstdint>

struct MPicture;

// The largest side a traced picture (and the Spaghetti mask) keeps.
enum { LargestPictureSide = 2048 };

// Scales a picture with a side over LargestPictureSide down by
// min(2048 / width, 2048 / height), each new side truncated, through
// MPicture::Resample in the picture's own format. True when the picture was
// replaced; a failed resample leaves it as it was.
bool ScaleDownLargePicture(MPicture& picture);

// False when a format of 3 or 4 bytes a pixel has rows shorter than its
// width needs; other formats always pass.
bool RowsHoldWidth(const MPicture& picture);

struct WTracePoint {
    int32_t x = 0, y = 0; // a corner of the pixel grid
};

struct WTraceOutline {
    int32_t Closed = 0; // 1 when the walk came back to its first point
    int32_t PointCount = 0;
    MVector<WTracePoint> Points; // growth step 1000

    // Adds corner p: closes the outline when p is the first point, moves the
    // last point to p when p continues a straight run or repeats the last
    // step, appends it otherwise. False when the array cannot grow.
    bool AddPoint(WTracePoint p);
};

// A byte map of the tracer: an MVector of bytes in all but where its block
// comes from, which is the picture blocks' allocator (huge pages natively):
// two fresh maps of 4 MB in small pages cost more in page faults than the
// whole trace of a 2048 x 2048 logo.
struct WTracerMap {
    int32_t Count = 0;       // bytes
    uint8_t* Data = nullptr; // owned; null when Count is 0

    WTracerMap() = default;
    WTracerMap(const WTracerMap&) = delete;
    WTracerMap& operator=(const WTracerMap&) = delete;
    ~WTracerMap();

    uint8_t& operator[](int32_t index) { return Data[index]; }
    const uint8_t& operator[](int32_t index) const { return Data[index]; }
    // As MVector::SetCount: exactly count bytes, the first min(old, new)
    // kept and new ones 0; on a failed allocation Count is 0 and false.
    bool SetCount(int32_t count);
};

struct WTracer {
    uint32_t Detail = 0; // simplification: 0 tolerance 4, 1 tolerance 2, else 1
    int32_t Width = 0;   // mask cells: the picture's pixels plus 2
    int32_t Height = 0;
    WTracerMap Mask;                  // Width * Height, row by row; 1 inside
    WTracerMap Visited;               // same size; scratch of one outline
    int32_t SearchX = 0, SearchY = 0; // where the search for the next outline resumes
    int32_t Direction = 0;            // start direction found by the search
    MVector<WTraceOutline*> Outlines; // owned; a slot may be null
    int32_t OutlineCount = 0;
    bool AllOutside = true, AllInside = true;
    MVector<WTracePoint> Seeds;       // fill starts of one outline; 2000 from the start
    int32_t ExtentX = 0, ExtentY = 0; // the result's size in cells, for callers

    // ---- Not part of the result: scratch of the faster way. The rows of
    // Visited that the outline in hand has set, each as the span of its
    // leftmost to its rightmost set cell, so that clearing the map and wiping
    // the shape touch only those rows and columns. The fill's stack is kept
    // from outline to outline. With Straightforward the whole maps are cleared
    // and scanned each time and every simplification pass starts again at the
    // first point instead, which gives the same outlines, only slower.
    MVector<int32_t> SpanLeft, SpanRight; // per row; left > right when the row has none
    int32_t SpanTop = 0, SpanBottom = -1; // rows that may hold a span
    MVector<WTracePoint> FillStack;
    bool Straightforward = false;

    WTracer();
    ~WTracer();
    WTracer(const WTracer&) = delete;
    WTracer& operator=(const WTracer&) = delete;

    // Loads the picture file, scales it down to the largest side and builds
    // the mask. False when the picture cannot be loaded or its row size is
    // too small for its width.
    bool Load(const MString& path);
    // The mask of a picture already in memory (after the scale-down, which
    // this does not do). False for a picture that is not usable or whose row
    // size is too small for its width.
    bool LoadPicture(const MPicture& picture);
    // Fills Outlines from the mask. Always true.
    bool Trace();

    // ---- The stages, public for tests.
    void Despeckle();
    bool Search();
    bool Follow();
    bool Simplify(WTraceOutline& outline, int32_t window, float tolerance) const;
    // Simplify with the starts before from known to fail: those whose whole
    // window lies before the last cut are passed over. After a cut, from
    // becomes the first start that the cut may have changed.
    bool SimplifyFrom(WTraceOutline& outline, int32_t window, float tolerance, int32_t& from) const;
    void Fill(WTracePoint seed);
    void Visit(int32_t x, int32_t y);
    template <typename Body> void ForSpans(Body body);
    void TraceSmall();
    void FreeOutlines();
};
