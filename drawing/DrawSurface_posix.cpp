// The native surface draws nothing: each call that would reach the platform
// becomes an entry of Operations, so that tests can state exactly what a
// frame drew, in device pixels and with the colour of the brush in place.
// Its "objects" are markers: a non-null pointer says the brush, stroke style
// or text format exists, so that the caches behave as on the platform.

#include "drawing/DrawSurfacePlatform.h"
#include "drawing/MDrawSurface.h"
#include "drawing/MPicture.h"
#include "foundation/Program.h"

#include <cstdlib>
#include <new>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

// ---- The recording

// A block of this many slots stays well inside the range of its counts.
static const int32_t MaxRecordedEntries = 1 << 28;
// Slots whose pages are made ready at a time, a quarter of a megabyte.
static const int32_t ReadyStep = 8192;

// Doubling from 256 slots keeps a frame of any size to a few growths, and
// realloc keeps the slots where it can; on failure the block stands.
bool MDrawRecording::Grow(int32_t needed) {
    if (needed <= Count) return true;
    if (needed > MaxRecordedEntries) return false;
    int32_t count = Count < 256 ? 256 : Count;
    while (count < needed)
        count *= 2;
    if (count > MaxRecordedEntries) count = MaxRecordedEntries;
    void* block = std::realloc(Data, size_t(count) * sizeof(MDrawSlot));
    if (!block) return false;
    Data = static_cast<MDrawSlot*>(block);
    Count = count;
    return true;
}

// The pages of the next slots are asked of the system in one call rather
// than met one fault at a time as the slots are written; in a virtual
// machine a fault costs many times the writing of its page. Only the pages
// about to be written are made ready, so that a doubling of a long recording
// costs no single frame more than its own entries.
static void MakeReady(MDrawRecording& recording, int32_t from) {
    int32_t to = from + ReadyStep < recording.Count ? from + ReadyStep : recording.Count;
    recording.Ready = to;
#if defined(MADV_POPULATE_WRITE)
    static const uintptr_t page = uintptr_t(sysconf(_SC_PAGESIZE));
    uintptr_t start = reinterpret_cast<uintptr_t>(recording.Data + from) & ~(page - 1);
    uintptr_t end = reinterpret_cast<uintptr_t>(recording.Data + to);
    // A kernel without the advice, or memory it will not give now, leaves
    // the faults to come as they would.
    madvise(reinterpret_cast<void*>(start), end - start, MADV_POPULATE_WRITE);
#endif
}

// The next slot of the recording; null when memory ran out. A recording
// begun anew (its count set back to 0) drops its old whole entries too.
static MDrawSlot* NewSlot(MDrawSurface& surface) {
    MDrawRecording& recording = surface.Operations;
    if (surface.OperationCount == 0) recording.OtherCount = 0;
    if (surface.OperationCount >= recording.Ready) {
        if (surface.OperationCount >= recording.Count &&
            !recording.Grow(surface.OperationCount + 1))
            return nullptr;
        MakeReady(recording, surface.OperationCount);
    }
    return &recording.Data[surface.OperationCount++];
}

// Lines, rectangles, circles and squares: the numbers in the order of
// MDrawSlot::Values, the colour of the brush in place.
static void RecordShape(MDrawSurface& surface, int32_t kind, bool filled, float a, float b, float c,
                        float d, float e) {
    MDrawSlot* slot = NewSlot(surface);
    if (!slot) return;
    slot->Kind = uint8_t(kind);
    slot->Filled = filled;
    slot->Colour = surface.BrushColour;
    slot->Values[0] = a;
    slot->Values[1] = b;
    slot->Values[2] = c;
    slot->Values[3] = d;
    slot->Values[4] = e;
    slot->Other = -1;
}

// Any entry, kept whole.
void MDrawSurface::Record(const MDrawOperation& operation) {
    MDrawSlot* slot = NewSlot(*this);
    if (!slot) return;
    MDrawRecording& recording = Operations;
    if (recording.OtherCount >= recording.OtherCapacity) {
        int32_t capacity = recording.OtherCapacity < 16 ? 16 : recording.OtherCapacity * 2;
        void* block =
            recording.OtherCapacity >= MaxRecordedEntries
                ? nullptr
                : std::realloc(recording.Others, size_t(capacity) * sizeof(MDrawOperation));
        if (!block) {
            OperationCount--;
            return;
        }
        recording.Others = static_cast<MDrawOperation*>(block);
        recording.OtherCapacity = capacity;
    }
    recording.Others[recording.OtherCount] = operation;
    *slot = MDrawSlot();
    slot->Kind = uint8_t(operation.Kind);
    slot->Other = recording.OtherCount++;
}

static MDrawOperation Entry(int32_t kind) {
    MDrawOperation operation;
    operation.Kind = kind;
    return operation;
}

// Only the main window exists here; its client size is the one the window
// layer holds.
void MDrawSurface::CreateForWindow(void* window) {
    Valid = false;
    Scale = 1;
    CountSurface(*this);
    int32_t width = 0, height = 0;
    if (window && window == TheMainWindow) MainClientSize(width, height);
    Left = 0;
    Top = 0;
    Right = width;
    Bottom = height;
    MDrawOperation entry = Entry(DrawCreateForWindow);
    entry.X2 = float(width);
    entry.Y2 = float(height);
    Record(entry);
    if (width < 1 || height < 1) return;
    HwndTarget = window;
    Valid = true;
}

void MDrawSurface::CreateForDc(void* dc, const WRect& rectangle) {
    Valid = false;
    Scale = 1;
    CountSurface(*this);
    Left = rectangle.left;
    Top = rectangle.top;
    Right = rectangle.right;
    Bottom = rectangle.bottom;
    MDrawOperation entry = Entry(DrawCreateForDc);
    entry.X1 = float(Left);
    entry.Y1 = float(Top);
    entry.X2 = float(Right);
    entry.Y2 = float(Bottom);
    Record(entry);
    if (!dc || Right - Left < 1 || Bottom - Top < 1) return;
    DcTarget = dc;
    Valid = true;
}

void MDrawSurface::Release() {
    Valid = false;
    TextFormat = nullptr;
    StrokeStyle = nullptr;
    Brush = nullptr;
    HwndTarget = nullptr;
    DcTarget = nullptr;
    WriteFactory = nullptr;
    Factory = nullptr;
    Record(Entry(DrawRelease));
    if (Counted) {
        Counted = false;
        TheSurfaceCount--;
    }
}

bool MDrawSurface::Begin() {
    if (!Valid) return false;
    Record(Entry(DrawBegin));
    return true;
}

void MDrawSurface::End() {
    if (!Valid) return;
    Record(Entry(DrawEnd));
}

void MDrawSurface::Clear(MColour colour) {
    if (!Valid) return;
    MDrawOperation entry = Entry(DrawClear);
    entry.Colour = colour;
    Record(entry);
}

// ---- Texts of the entries

// The surface's own copy of a text, kept once for as long as the surface
// lives, so that entries can point at it. Texts are few (the mode, help and
// view texts, the font families, a canvas's captions), so a search from the
// newest back finds them. When no room can be had the entry says "".
static const char16_t* KeptText(MDrawSurface& surface, const MString& text) {
    if (text.IsEmpty()) return u"";
    for (int32_t i = surface.StringCount - 1; i >= 0; i--)
        if (surface.Strings[i] == text) return surface.Strings[i].Chars();
    if (surface.StringCount >= surface.Strings.Count) {
        // Moving a string keeps its characters where they are, so the texts
        // that entries point at stay put.
        MVector<MString> bigger;
        if (!bigger.SetCount(surface.Strings.Count < 8 ? 16 : surface.Strings.Count * 2))
            return u"";
        for (int32_t i = 0; i < surface.StringCount; i++)
            bigger[i] = std::move(surface.Strings[i]);
        std::swap(bigger.Data, surface.Strings.Data);
        std::swap(bigger.Count, surface.Strings.Count);
    }
    MString& kept = surface.Strings[surface.StringCount];
    kept = text;
    surface.StringCount++;
    return kept.Chars();
}

// ---- Platform objects

bool PlatformNewBrush(MDrawSurface& surface, MColour colour) {
    surface.Brush = &surface.BrushColour;
    MDrawOperation entry = Entry(DrawNewBrush);
    entry.Colour = colour;
    surface.Record(entry);
    return true;
}

bool PlatformNewStrokeStyle(MDrawSurface& surface) {
    surface.StrokeStyle = &surface.Operations;
    surface.Record(Entry(DrawNewStroke));
    return true;
}

bool PlatformNewTextFormat(MDrawSurface& surface) {
    surface.TextFormat = &surface.FontFamily;
    MDrawOperation entry = Entry(DrawNewFormat);
    entry.Font = KeptText(surface, surface.FontFamily);
    entry.Size = surface.FontSize;
    entry.Weight = surface.FontWeight;
    entry.Horizontal = surface.FontHorizontal;
    entry.Vertical = surface.FontVertical;
    entry.Wrap = surface.FontWrap;
    surface.Record(entry);
    return true;
}

// ---- Drawing

static MDrawOperation Drawn(const MDrawSurface& surface, int32_t kind) {
    MDrawOperation entry = Entry(kind);
    entry.Colour = surface.BrushColour;
    return entry;
}

void PlatformLine(MDrawSurface& surface, MPoint2 from, MPoint2 to, float width) {
    RecordShape(surface, DrawLineKind, false, from.x, from.y, to.x, to.y, width);
}

void PlatformRectangle(MDrawSurface& surface, int32_t left, int32_t top, int32_t right,
                       int32_t bottom) {
    RecordShape(surface, DrawRectangleKind, true, float(left), float(top), float(right),
                float(bottom), 0);
}

void PlatformCircle(MDrawSurface& surface, MPoint2 centre, float radius, bool filled, float width) {
    RecordShape(surface, DrawCircleKind, filled, centre.x, centre.y, radius, width, 0);
}

void PlatformSquare(MDrawSurface& surface, MPoint2 centre, float radius, float startAngle,
                    bool filled, float width) {
    RecordShape(surface, DrawSquareKind, filled, centre.x, centre.y, radius, startAngle, width);
}

void PlatformText(MDrawSurface& surface, int32_t left, int32_t top, int32_t right, int32_t bottom,
                  const MString& text, bool clip) {
    MDrawOperation entry = Drawn(surface, DrawTextKind);
    entry.X1 = float(left);
    entry.Y1 = float(top);
    entry.X2 = float(right);
    entry.Y2 = float(bottom);
    entry.Text = KeptText(surface, text);
    entry.Font = KeptText(surface, surface.FontFamily);
    entry.Size = surface.FontSize;
    entry.Horizontal = surface.FontHorizontal;
    entry.Vertical = surface.FontVertical;
    entry.Clip = clip;
    surface.Record(entry);
}

void PlatformBitmap(MDrawSurface& surface, void* source, const MDrawRect& destination) {
    MDrawOperation entry = Entry(DrawBitmapKind);
    entry.X1 = destination.left;
    entry.Y1 = destination.top;
    entry.X2 = destination.right;
    entry.Y2 = destination.bottom;
    SurfaceBitmapSize(source, entry.SourceWidth, entry.SourceHeight);
    surface.Record(entry);
}

// ---- Surface bitmaps: a premultiplied copy of the picture stands for the
// platform's bitmap.

void* MakeSurfaceBitmap(const MPicture& picture) {
    if (!picture.IsUsable()) return nullptr;
    MPicture* copy = new (std::nothrow) MPicture;
    if (!copy) return nullptr;
    if (!PremultipliedCopy(picture, *copy)) {
        delete copy;
        return nullptr;
    }
    return copy;
}

void ReleaseSurfaceBitmap(void* bitmap) {
    delete static_cast<MPicture*>(bitmap);
}

bool SurfaceBitmapSize(void* bitmap, int32_t& width, int32_t& height) {
    width = 0;
    height = 0;
    if (!bitmap) return false;
    const MPicture* picture = static_cast<const MPicture*>(bitmap);
    width = int32_t(picture->Width);
    height = picture->Height;
    return true;
}
