// The bitmap tracer: mask building, and for large pictures the border walk
// with despeckle, search, follow, simplify and fill; for small pictures the
// squares of the set cells joined by the outline builder.

#include "eps/WTracer.h"

#include "drawing/MPicture.h"
#include "eps/MOutlineBuilder.h"

#include <cstdlib>
#include <cstring>

namespace {

enum { SeedLimit = 2000, PointStep = 1000, SimplifyWindowLimit = 500 };

// The smallest bounding box, in corners, that the large branch keeps.
enum { SmallestArea = 11 };

// Scratch arrays double, so that a fill of millions of cells copies little.
int32_t GrowthStep(int32_t count) {
    return count < 4096 ? 4096 : count;
}

float ToleranceOf(uint32_t detail) {
    if (detail == 0) return 4.0f;
    if (detail == 1) return 2.0f;
    return 1.0f;
}

} // namespace

bool ScaleDownLargePicture(MPicture& picture) {
    int64_t width = int64_t(picture.Width), height = picture.Height;
    if (width <= LargestPictureSide && height <= LargestPictureSide) return false;
    double fx = double(LargestPictureSide) / double(width);
    double fy = double(LargestPictureSide) / double(height);
    double f = fx < fy ? fx : fy;
    MPicture scaled;
    if (!scaled.Resample(picture, int32_t(double(width) * f), int32_t(double(height) * f),
                         picture.Format) ||
        !scaled.IsUsable())
        return false;
    picture = static_cast<MPicture&&>(scaled);
    return true;
}

bool RowsHoldWidth(const MPicture& picture) {
    int32_t bytes = PictureBytesPerPixel(picture.Format);
    return (bytes != 3 && bytes != 4) || uint64_t(picture.Pitch) >= uint64_t(bytes) * picture.Width;
}

// ---- Byte maps

WTracerMap::~WTracerMap() {
    std::free(Data);
}

bool WTracerMap::SetCount(int32_t count) {
    if (count == Count) return true;
    uint8_t* block = nullptr;
    if (count > 0) {
        block = static_cast<uint8_t*>(AllocatePictureBlock(uint64_t(count)));
        if (!block) {
            std::free(Data);
            Data = nullptr;
            Count = 0;
            return false;
        }
        int32_t keep = Count < count ? Count : count;
        if (keep > 0) std::memcpy(block, Data, size_t(keep));
        std::memset(block + keep, 0, size_t(count - keep));
    }
    std::free(Data);
    Data = block;
    Count = count > 0 ? count : 0;
    return true;
}

// ---- Outlines

// Closing is tested first, so the first point never moves; the merge of a
// straight run keeps only its ends.
bool WTraceOutline::AddPoint(WTracePoint p) {
    if (PointCount > 0 && p.x == Points[0].x && p.y == Points[0].y) {
        Closed = 1;
        return true;
    }
    if (PointCount >= 2) {
        WTracePoint q = Points[PointCount - 2], r = Points[PointCount - 1];
        bool horizontal = q.y == r.y && r.y == p.y;
        bool vertical = q.x == r.x && r.x == p.x;
        bool sameStep = p.x - r.x == r.x - q.x && p.y - r.y == r.y - q.y;
        if (horizontal || vertical || sameStep) {
            Points[PointCount - 1] = p;
            return true;
        }
    }
    if (!Points.Grow(PointCount + 1, PointStep)) {
        PointCount = 0;
        return false;
    }
    Points[PointCount++] = p;
    return true;
}

// ---- The tracer

WTracer::WTracer() {
    Seeds.SetCount(SeedLimit);
}

WTracer::~WTracer() {
    FreeOutlines();
}

void WTracer::FreeOutlines() {
    for (int32_t i = 0; i < OutlineCount && i < Outlines.Count; i++)
        delete Outlines[i];
    Outlines.SetCount(0);
    OutlineCount = 0;
}

bool WTracer::Load(const MString& path) {
    MPicture picture;
    if (!picture.Load(path)) return false;
    if (!RowsHoldWidth(picture)) return false;
    ScaleDownLargePicture(picture);
    return LoadPicture(picture);
}

// A picture without an alpha channel is its whole rectangle; otherwise alpha
// 128 or over is inside. The mask is filled while the flags are found; a
// picture that turns out all inside or all outside leaves it empty again.
bool WTracer::LoadPicture(const MPicture& picture) {
    if (!picture.IsUsable() || !RowsHoldWidth(picture)) return false;
    int32_t width = int32_t(picture.Width), height = picture.Height;
    Width = width + 2;
    Height = height + 2;
    int32_t cells = Width * Height;
    // Spans of an earlier mask are dropped; the first outline makes new ones.
    SpanLeft.SetCount(0);
    SpanRight.SetCount(0);
    if (!Mask.SetCount(0) || !Mask.SetCount(cells) || !Visited.SetCount(0) ||
        !Visited.SetCount(cells))
        return false;
    AllOutside = true;
    AllInside = true;
    if (!PictureHasAlpha(picture.Format)) {
        AllOutside = false;
        return true;
    }
    // The or and the and of all cells tell whether any is inside and whether
    // all are; kept branch-free, the loops go many pixels at a time.
    uint8_t any = 0, all = 1;
    for (int32_t y = 0; y < height; y++) {
        uint8_t* row = &Mask[(y + 1) * Width + 1];
        if (picture.Format == PictureBgra8) {
            const uint8_t* alpha = picture.Pixels + uint64_t(y) * picture.Pitch + 3;
            for (int32_t x = 0; x < width; x++)
                row[x] = alpha[4 * x] >> 7; // 1 for an alpha of 128 or over
        } else {
            for (int32_t x = 0; x < width; x++)
                row[x] = ReadPixel(picture.PixelAddress(x, y), picture.Format).a >= 128 ? 1 : 0;
        }
        for (int32_t x = 0; x < width; x++) {
            any |= row[x];
            all &= row[x];
        }
    }
    bool anyInside = any != 0, anyOutside = all == 0;
    AllOutside = !anyInside;
    AllInside = !anyOutside;
    if (AllOutside || AllInside) std::memset(Mask.Data, 0, size_t(cells));
    return true;
}

bool WTracer::Trace() {
    FreeOutlines();
    if (AllOutside) return true;
    if (AllInside) {
        WTraceOutline* outline = new WTraceOutline;
        WTracePoint corners[4] = {{0, 0}, {0, Height - 2}, {Width - 2, Height - 2}, {Width - 2, 0}};
        outline->Points.SetCount(4);
        for (int32_t i = 0; i < 4; i++)
            outline->Points[i] = corners[i];
        outline->PointCount = 4;
        outline->Closed = 1;
        if (Outlines.SetCount(1)) {
            Outlines[0] = outline;
            OutlineCount = 1;
        } else {
            delete outline;
        }
        ExtentX = Width;
        ExtentY = Height;
        return true;
    }
    if (Width < 35 && Height < 35) {
        TraceSmall();
        return true;
    }

    Despeckle();
    SearchX = 1;
    SearchY = 1;
    while (Follow()) {
    }
    // The bounding box counts corners on each axis, after simplification.
    for (int32_t i = 0; i < OutlineCount; i++) {
        WTraceOutline* outline = Outlines[i];
        if (!outline) continue;
        bool keep = outline->Closed && outline->PointCount > 0;
        if (keep) {
            int32_t minX = outline->Points[0].x, maxX = minX;
            int32_t minY = outline->Points[0].y, maxY = minY;
            for (int32_t k = 1; k < outline->PointCount; k++) {
                WTracePoint p = outline->Points[k];
                if (p.x < minX) minX = p.x;
                if (p.x > maxX) maxX = p.x;
                if (p.y < minY) minY = p.y;
                if (p.y > maxY) maxY = p.y;
            }
            keep = int64_t(maxX - minX + 1) * (maxY - minY + 1) >= SmallestArea;
        }
        if (!keep) {
            delete outline;
            Outlines[i] = nullptr;
        }
    }
    return true;
}

// ---- Despeckle

// One pass in place, top to bottom: later cells see the earlier changes.
// Eight cells whose neighbourhoods are all clear or all set would stay as
// they are, so such a group is passed over at once.
void WTracer::Despeckle() {
    const uint64_t ones = 0x0101010101010101ull;
    for (int32_t y = 1; y < Height - 1; y++) {
        uint8_t* above = &Mask[(y - 1) * Width];
        uint8_t* here = &Mask[y * Width];
        uint8_t* below = &Mask[(y + 1) * Width];
        int32_t x = 1;
        while (x < Width - 1) {
            if (x + 9 <= Width) {
                uint64_t a, b, c, d, e, f;
                std::memcpy(&a, above + x - 1, 8);
                std::memcpy(&b, above + x + 1, 8);
                std::memcpy(&c, here + x - 1, 8);
                std::memcpy(&d, here + x + 1, 8);
                std::memcpy(&e, below + x - 1, 8);
                std::memcpy(&f, below + x + 1, 8);
                if ((a | b | c | d | e | f) == 0 ||
                    (a == ones && b == ones && c == ones && d == ones && e == ones && f == ones)) {
                    x += 8;
                    continue;
                }
            }
            int32_t set = (above[x - 1] != 0) + (above[x] != 0) + (above[x + 1] != 0) +
                          (here[x - 1] != 0) + (here[x + 1] != 0) + (below[x - 1] != 0) +
                          (below[x] != 0) + (below[x + 1] != 0);
            if (set == 0)
                here[x] = 0;
            else if (set == 8)
                here[x] = 1;
            x++;
        }
    }
}

// ---- Search

// Down each column from where the last search stopped. The cell found is
// kept, and tested again next time: by then its outline has been wiped.
// Mask cells hold 0 or 1, so a cell differs from its right neighbour where
// their exclusive or is 1. Past the first column the columns are taken
// eight at a time, one eight-byte exclusive or per row: the first column of
// the eight with a difference, at the first row it has one, is the cell
// that the search column by column would find.
bool WTracer::Search() {
    auto found = [this](int32_t x, int32_t y) {
        Direction = Mask[y * Width + x] ? 0 : 2;
        SearchX = x;
        SearchY = y;
        return true;
    };
    int32_t x = SearchX;
    if (x <= Width - 2 && !Straightforward) {
        for (int32_t y = SearchY; y <= Height - 2; y++)
            if (Mask[y * Width + x] != Mask[y * Width + x + 1]) return found(x, y);
        for (x++; x + 8 <= Width - 1; x += 8) {
            uint64_t candidates = ~uint64_t(0); // bytes of the columns still in question
            int32_t bestColumn = 8, bestRow = 0;
            for (int32_t y = 1; y <= Height - 2 && candidates; y++) {
                uint64_t here, right;
                std::memcpy(&here, &Mask[y * Width + x], 8);
                std::memcpy(&right, &Mask[y * Width + x + 1], 8);
                uint64_t differ = (here ^ right) & candidates;
                if (!differ) continue;
                // The lowest byte in memory is the leftmost column.
                int32_t column = 0;
                while (!((differ >> (8 * column)) & 0xff))
                    column++;
                bestColumn = column;
                bestRow = y;
                candidates = column == 0 ? 0 : (uint64_t(1) << (8 * column)) - 1;
            }
            if (bestColumn < 8) return found(x + bestColumn, bestRow);
        }
    }
    for (; x <= Width - 2; x++) {
        for (int32_t y = (x == SearchX ? SearchY : 1); y <= Height - 2; y++) {
            uint8_t here = Mask[y * Width + x], right = Mask[y * Width + x + 1];
            if (here && !right) {
                Direction = 0;
            } else if (!here && right) {
                Direction = 2;
            } else {
                continue;
            }
            SearchX = x;
            SearchY = y;
            return true;
        }
    }
    SearchX = Width;
    SearchY = 1;
    return false;
}

// ---- Follow

namespace {

const int32_t StepX[4] = {0, 1, 0, -1};
const int32_t StepY[4] = {-1, 0, 1, 0};

} // namespace

// Marks corner or cell (x, y), inside the mask, as visited by the outline in
// hand, and widens its row's span.
void WTracer::Visit(int32_t x, int32_t y) {
    Visited[y * Width + x] = 1;
    if (Straightforward) return;
    if (x < SpanLeft[y]) SpanLeft[y] = x;
    if (x > SpanRight[y]) SpanRight[y] = x;
    if (y < SpanTop) SpanTop = y;
    if (y > SpanBottom) SpanBottom = y;
}

// Calls body(first index, count) for the span of each row of Visited that
// the outline in hand has set.
template <typename Body> void WTracer::ForSpans(Body body) {
    for (int32_t y = SpanTop; y <= SpanBottom; y++)
        if (SpanLeft[y] <= SpanRight[y])
            body(y * Width + SpanLeft[y], SpanRight[y] - SpanLeft[y] + 1);
}

bool WTracer::Follow() {
    if (!Outlines.Grow(OutlineCount + 1, 1)) return false;
    WTraceOutline* outline = new WTraceOutline;
    Outlines[OutlineCount++] = outline;
    if (!Search()) return false;

    // ---- Clear the scratch of the last outline: the whole map, or the rows
    // it set, which leaves the spans empty again.
    if (!Straightforward && SpanLeft.Count != Height) {
        // The first outline of this mask: the spans are made, all empty.
        if (SpanLeft.SetCount(Height) && SpanRight.SetCount(Height)) {
            SpanTop = 0;
            SpanBottom = Height - 1;
        } else {
            Straightforward = true;
        }
    }
    if (Straightforward) {
        std::memset(Visited.Data, 0, size_t(Visited.Count));
    } else {
        ForSpans(
            [this](int32_t from, int32_t count) { std::memset(&Visited[from], 0, size_t(count)); });
    }
    for (int32_t y = SpanTop; y <= SpanBottom; y++) {
        SpanLeft[y] = Width;
        SpanRight[y] = -1;
    }
    SpanTop = Height;
    SpanBottom = -1;
    auto cell = [this](int32_t x, int32_t y) -> uint8_t {
        if (x < 0 || y < 0 || x >= Width || y >= Height) return 0;
        return Mask[y * Width + x];
    };

    // ---- Walk with the inside on the left.
    int32_t x = SearchX, y = Direction == 0 ? SearchY : SearchY - 1;
    int32_t direction = Direction;
    int32_t seedCount = 0;
    int64_t bound = int64_t(4) * Width * Height;
    for (int64_t step = 0; step < bound; step++) {
        uint8_t a, b;
        switch (direction) {
        case 0:
            a = cell(x, y), b = cell(x + 1, y);
            break;
        case 1:
            a = cell(x + 1, y), b = cell(x + 1, y + 1);
            break;
        case 2:
            a = cell(x + 1, y + 1), b = cell(x, y + 1);
            break;
        default:
            a = cell(x, y + 1), b = cell(x, y);
            break;
        }
        if (a && !b) {
        } else if (!a && !b) {
            direction = (direction + 3) & 3;
        } else {
            direction = (direction + 1) & 3;
        }
        x += StepX[direction];
        y += StepY[direction];
        if (!outline->AddPoint(WTracePoint{x, y})) break;
        if (outline->Closed) break;
        if (x >= 0 && y >= 0 && x < Width && y < Height) Visit(x, y);
        if (seedCount < SeedLimit) {
            // The cell on the inner side of the step, where the border allows.
            WTracePoint seed{x, y};
            bool tested = false;
            if (direction == 0 && x >= 2)
                seed.x = x - 1, tested = true;
            else if (direction == 1 && y > 1)
                seed.y = y - 1, tested = true;
            else if (direction == 2 && x < Width - 1)
                seed.x = x + 1, tested = true;
            else if (direction == 3 && y < Height - 1)
                seed.y = y + 1, tested = true;
            if (tested && cell(seed.x, seed.y)) Seeds[seedCount++] = seed;
        }
    }

    // ---- Simplify, the window narrowing from a quarter of the points.
    int32_t quarter = outline->PointCount / 4;
    if (quarter >= 3) {
        float tolerance = ToleranceOf(Detail);
        for (int32_t window = quarter < SimplifyWindowLimit ? quarter : SimplifyWindowLimit;
             window >= 2; window--)
            for (int32_t from = 1; SimplifyFrom(*outline, window, tolerance, from);)
                if (Straightforward) from = 1;
    }
    if (outline->PointCount > 0) outline->Points.SetCount(outline->PointCount);

    // ---- Wipe the shape: the walked ring is set, its inside filled from the
    // seeds, and everything visited inverted, so that holes become shapes.
    // Mask and Visited hold only 0 and 1, so setting is an or and inverting an
    // exclusive or.
    auto setVisited = [this](int32_t from, int32_t count) {
        for (int32_t i = from; i < from + count; i++)
            Mask[i] |= Visited[i];
    };
    auto invertVisited = [this](int32_t from, int32_t count) {
        for (int32_t i = from; i < from + count; i++)
            Mask[i] ^= Visited[i];
    };
    if (Straightforward)
        setVisited(0, Visited.Count);
    else
        ForSpans(setVisited);
    if (outline->PointCount > 0)
        for (int32_t i = 0; i < seedCount; i++) {
            WTracePoint seed = Seeds[i];
            if (!Visited[seed.y * Width + seed.x]) Fill(seed);
        }
    if (Straightforward)
        invertVisited(0, Visited.Count);
    else
        ForSpans(invertVisited);
    return true;
}

// ---- Simplify

// The squared distance of p from the line through a and b, or from a when
// they coincide: c * c / L2 in integers, then one float division.
static float SquaredDistance(WTracePoint a, WTracePoint b, WTracePoint p) {
    int64_t dx = b.x - a.x, dy = b.y - a.y;
    int64_t px = p.x - a.x, py = p.y - a.y;
    int64_t length2 = dx * dx + dy * dy;
    if (length2 == 0) return float(px * px + py * py);
    int64_t c = dx * py - dy * px;
    return float(c * c) / float(length2);
}

bool WTracer::Simplify(WTraceOutline& outline, int32_t window, float tolerance) const {
    int32_t from = 1;
    return SimplifyFrom(outline, window, tolerance, from);
}

// A start whose window, both chord ends included, lies wholly before the
// first point cut is unchanged by the cut and fails again: such starts are
// the ones passed over after a cut.
bool WTracer::SimplifyFrom(WTraceOutline& outline, int32_t window, float tolerance,
                           int32_t& from) const {
    int32_t count = outline.PointCount;
    if (count < 3 || window < 2) return false;
    WTracePoint* points = outline.Points.Data;
    float budget = float(window - 1) * tolerance;
    float single = 2.0f * tolerance;
    int32_t inside = window - 1; // points between the chord's ends
    // Indices wrap by subtraction: every sum below stays under a few times
    // the point count, and a division per point would cost more than the
    // distance itself.
    auto wrap = [count](int32_t index) {
        while (index >= count)
            index -= count;
        return index;
    };
    int32_t middle = inside / 2;
    for (int32_t s = from < 1 ? 1 : from; s <= count; s++) {
        WTracePoint start = points[wrap(s - 1)];
        WTracePoint end = points[wrap(s + window - 1)];
        float sum = 0.0f;
        bool fits = true;
        for (int32_t j = 0, offset = middle; j < inside; j++, offset++) {
            if (offset == inside) offset = 0;
            float d = SquaredDistance(start, end, points[wrap(s + offset)]);
            if (d > single) {
                fits = false;
                break;
            }
            sum += d;
            if (sum >= budget) {
                fits = false;
                break;
            }
        }
        if (!fits) continue;
        int32_t first = wrap(s), last = wrap(s + window - 2);
        if (first == 0 || last < first) continue;
        int32_t removed = last - first + 1;
        for (int32_t i = last + 1; i < count; i++)
            points[i - removed] = points[i];
        outline.PointCount = count - removed;
        from = first - window + 1;
        return true;
    }
    return false;
}

// ---- Fill

// A column scanline fill over Visited with a stack of its own: up from the
// seed to a visited cell or the edge, then down marking, pushing one seed
// for each new run of free cells beside the column on either side. It covers
// the border ring as well.
void WTracer::Fill(WTracePoint seed) {
    int32_t depth = 0;
    if (!FillStack.Grow(1, 1024)) return;
    FillStack[depth++] = seed;
    auto isFree = [this](int32_t x, int32_t y) { return !Visited[y * Width + x]; };
    while (depth > 0) {
        WTracePoint p = FillStack[--depth];
        if (!isFree(p.x, p.y)) continue;
        int32_t y = p.y;
        while (y > 0 && isFree(p.x, y - 1))
            y--;
        bool leftRun = false, rightRun = false;
        for (; y < Height && isFree(p.x, y); y++) {
            Visit(p.x, y);
            for (int32_t side = 0; side < 2; side++) {
                int32_t x = side == 0 ? p.x - 1 : p.x + 1;
                bool& run = side == 0 ? leftRun : rightRun;
                if (x < 0 || x >= Width) continue;
                if (isFree(x, y)) {
                    if (!run) {
                        if (!FillStack.Grow(depth + 1, GrowthStep(FillStack.Count))) return;
                        FillStack[depth++] = WTracePoint{x, y};
                        run = true;
                    }
                } else {
                    run = false;
                }
            }
        }
    }
}

// ---- Small pictures

// Squares of the set cells in mask order, joined by the outline builder. No
// despeckle, no size limit and no simplification here; each loop's corners
// merge through AddPoint, and the first corner comes again to close it.
void WTracer::TraceSmall() {
    MOutlineBuilder builder;
    int32_t minX = Width, maxX = -1, minY = Height, maxY = -1;
    for (int32_t y = 0; y < Height; y++)
        for (int32_t x = 0; x < Width; x++) {
            if (!Mask[y * Width + x]) continue;
            if (!builder.AddSquare(float(x - 1), float(x), float(y - 1), float(y))) return;
            if (x < minX) minX = x;
            if (x > maxX) maxX = x;
            if (y < minY) minY = y;
            if (y > maxY) maxY = y;
        }
    if (maxX < 0) return;
    ExtentX = maxX - minX + 1;
    ExtentY = maxY - minY + 1;
    if (!builder.Build(0)) return;

    for (int32_t i = 0; i < builder.LoopCount; i++) {
        if (!Outlines.Grow(OutlineCount + 1, PointStep)) continue;
        WTraceOutline* outline = new WTraceOutline;
        int32_t first = builder.Loops[i].FirstEdge, e = first;
        bool stored = true;
        for (int32_t steps = 0; steps <= builder.EdgeCount && stored; steps++) {
            MPoint2 p = builder.Edges[e].Start;
            stored = outline->AddPoint(WTracePoint{int32_t(p.x), int32_t(p.y)});
            e = builder.Edges[e].Next;
            if (e == first) break;
        }
        MPoint2 p = builder.Edges[first].Start;
        if (stored) stored = outline->AddPoint(WTracePoint{int32_t(p.x), int32_t(p.y)});
        if (!stored) {
            delete outline;
            continue;
        }
        Outlines[OutlineCount++] = outline;
    }
}
