#pragma once
// The one drawing interface of the system: clear, line, rectangle, circle,
// rotated square, text and picture, in the caller's coordinates with a scale
// factor for the display size setting.
//
// DrawSurface.cpp holds the rules every build shares (the transform, the
// colour and font caches, the fitting of pictures); the platform half sits in
// DrawSurface_win.cpp (Direct2D and DirectWrite) or DrawSurface_posix.cpp,
// which draws nothing and records each call that would reach the platform,
// so that tests can state exactly what a frame drew. The platform objects are
// kept as opaque pointers: no Win32 type shows here. A file that includes
// <windows.h> must #undef DrawText to reach MDrawSurface::DrawText.

#include "foundation/MColour.h"
#include "foundation/MString.h"
#include "foundation/MVector.h"
#include "foundation/WRect.h"
#include "view/Geometry.h"
#include <cstdint>

struct MPicture;

// A rectangle in the caller's units; right and bottom lie outside it.
struct MDrawRect {
    float left = 0, top = 0, right = 0, bottom = 0;
};
// The same rectangle in floats.
MDrawRect AsDrawRect(const WRect& rectangle);

// Horizontal and vertical placement of a text in its rectangle. Any value
// other than 0 and 1 means left, or top.
enum { AlignCentre = 0, AlignFar = 1, AlignNear = 2 };

// What the native surface records, one entry per call that would reach the
// platform. Coordinates and lengths are in device pixels: the transform has
// been applied as the platform would receive it.
enum MDrawKind : int32_t {
    DrawCreateForWindow, // X2, Y2: width and height of the client area
    DrawCreateForDc,     // X1 to Y2: the rectangle
    DrawRelease,
    DrawBegin,
    DrawEnd,
    DrawClear,         // Colour
    DrawNewBrush,      // a brush made for Colour
    DrawNewStroke,     // the stroke style made at the first line
    DrawNewFormat,     // a text format: Font, Size, Weight, Horizontal, Vertical, Wrap
    DrawLineKind,      // X1, Y1 to X2, Y2, Width, Colour
    DrawRectangleKind, // X1, Y1, X2, Y2 (whole pixels), Colour; always filled
    DrawCircleKind,    // centre X1, Y1, Radius, Filled, Width, Colour
    DrawSquareKind,    // centre X1, Y1, Radius, Angle, Filled, Width, Colour
    DrawTextKind,      // box X1 to Y2, Text, Clip, Colour, and Font and Size of the format
    DrawBitmapKind,    // destination X1 to Y2, SourceWidth, SourceHeight
};

// One entry of the recording, as tests read it. The texts point into the
// recording surface's Strings, which keeps each distinct text once for the
// surface's lifetime; they are never null.
struct MDrawOperation {
    int32_t Kind = DrawBegin;                  // an MDrawKind
    float X1 = 0, Y1 = 0, X2 = 0, Y2 = 0;      // device pixels, see MDrawKind
    float Radius = 0;                          // device pixels
    float Angle = 0;                           // radians: the first corner of a square
    float Width = 0;                           // line width, device pixels
    MColour Colour;                            // the brush's colour at the time
    int32_t Size = 0;                          // of the text format, device pixels
    int32_t Weight = 0;                        // of the text format
    int32_t Horizontal = 0, Vertical = 0;      // of the text format
    int32_t SourceWidth = 0, SourceHeight = 0; // pixels of the bitmap drawn
    bool Filled = false;
    bool Wrap = false;          // of the text format
    bool Clip = false;          // a text drawn with the clip option
    const char16_t* Text = u""; // what a text says
    const char16_t* Font = u""; // family of the text format
};

// An entry as the recording keeps it. Lines, rectangles, circles and
// squares, nearly all of a frame, fit in 32 bytes with their numbers in
// Values; every other entry is kept whole in the recording's Others and
// named by its index.
struct MDrawSlot {
    uint8_t Kind = DrawBegin; // an MDrawKind
    bool Filled = false;
    MColour Colour;
    // Line: X1, Y1, X2, Y2, Width. Rectangle: X1, Y1, X2, Y2. Circle: X1,
    // Y1, Radius, Width. Square: X1, Y1, Radius, Angle, Width.
    float Values[5] = {0, 0, 0, 0, 0};
    int32_t Other = -1; // index into Others of an entry kept whole, or -1
};

// The entries of a recording: slots in one block whose Count is its
// capacity, as with MVector, and the whole entries of the rarer kinds. Both
// double when full and grow with realloc: a large block then grows by
// moving its pages rather than copying its bytes, so that a recording that
// is never emptied costs no frame more than its own entries.
struct MDrawRecording {
    int32_t Count = 0;                // slots allocated
    MDrawSlot* Data = nullptr;        // owned (malloc); null when Count is 0
    int32_t Ready = 0;                // slots whose pages the system has given
    MDrawOperation* Others = nullptr; // owned (malloc): entries of the other kinds
    int32_t OtherCount = 0, OtherCapacity = 0;

    MDrawRecording() = default;
    MDrawRecording(const MDrawRecording&) = delete;
    MDrawRecording& operator=(const MDrawRecording&) = delete;
    // A fresh surface may be moved into an old one: the blocks go with it.
    MDrawRecording(MDrawRecording&& other) noexcept;
    MDrawRecording& operator=(MDrawRecording&& other) noexcept;
    ~MDrawRecording();

    // The entry at index, whole.
    MDrawOperation operator[](int32_t index) const;
    // Room for at least needed slots; false (and the entries kept) when
    // memory runs out.
    bool Grow(int32_t needed);
};

struct MDrawSurface {
    bool Valid = false; // the surface can draw; every operation returns at once when false
    int32_t Left = 0, Top = 0, Right = 0, Bottom = 0; // the surface's rectangle, caller's units
    float Scale = 1;                                  // device pixels per caller's unit
    void* Factory = nullptr;                          // ID2D1Factory, single-threaded
    void* WriteFactory = nullptr;                     // IDWriteFactory, shared
    void* HwndTarget = nullptr;                       // ID2D1HwndRenderTarget of a window surface
    void* DcTarget = nullptr;    // ID2D1DCRenderTarget of a device-context surface
    void* Brush = nullptr;       // ID2D1SolidColorBrush for BrushColour, or null
    MColour BrushColour;         // opaque black at creation
    void* StrokeStyle = nullptr; // ID2D1StrokeStyle, made at the first line
    void* TextFormat = nullptr;  // IDWriteTextFormat for the font below, or null
    MString FontFamily;          // key of the cached text format; empty at creation
    int32_t FontSize = 0;        // device pixels
    int32_t FontWeight = 0;      // DirectWrite weight
    bool FontItalic = false;
    int32_t FontHorizontal = 0; // 0 centred, 1 right, any other value left
    int32_t FontVertical = 0;   // 0 centred, 1 bottom, any other value top
    bool FontWrap = true;
    bool Counted = false;  // the creation raised TheSurfaceCount and the release has not lowered it
    void* Batch = nullptr; // Windows build: shapes gathered for one Direct2D call, owned

    // Native build only: the calls that would have reached the platform, in
    // order, and the distinct texts and font families they name.
    MDrawRecording Operations;
    int32_t OperationCount = 0;
    MVector<MString> Strings; // Count is the capacity; never shrinks while the surface lives
    int32_t StringCount = 0;

    int32_t Width() const { return Right - Left; }
    int32_t Height() const { return Bottom - Top; }

    // Binds the surface to the client area of a window (opaque handle). A
    // window without area, or a failure of the platform, leaves Valid false;
    // the surface must be released either way.
    void CreateForWindow(void* window);
    // Binds the surface to a rectangle of a device context (opaque handle),
    // as for a window.
    void CreateForDc(void* dc, const WRect& rectangle);
    // Drops, in order: text format, stroke style, brush, window target, DC
    // target, write factory, factory; then lowers TheSurfaceCount. Safe on a
    // surface that never became valid, and a second time.
    void Release();
    // False when not valid; otherwise drawing has begun with no transform.
    bool Begin();
    // Ends the drawing. Its result is not looked at: a lost device shows as
    // a surface that stays until the window's size changes.
    void End();
    // Fills the whole target with a colour of four bytes.
    void Clear(MColour colour);

    // One line in the surface's stroke style: round caps.
    void DrawLine(MPoint2 from, MPoint2 to, float width, MColour colour);
    // A filled rectangle; nothing unless right > left and bottom > top.
    void DrawRectangle(const MDrawRect& rectangle, MColour colour);
    // A circle of a radius above 0, filled or stroked with the line width.
    // With applyTransform the centre, radius and width are transformed and
    // the radius truncated; otherwise they are device pixels.
    void DrawCircle(MPoint2 centre, int32_t radius, MColour colour, bool filled, float lineWidth,
                    bool applyTransform);
    // A square whose corners lie radius away from the centre, the first at
    // startAngle, at (x + r sin a, y + r cos a). As DrawCircle otherwise.
    void DrawSquare(MPoint2 centre, int32_t radius, MColour colour, bool filled, float lineWidth,
                    float startAngle, bool applyTransform);
    // Text laid out in the rectangle at weight 400, upright, wrapped. An empty
    // family is "MS Shell Dlg", a size of 0 or less 12 (after the scale).
    void DrawText(const MDrawRect& rectangle, const MString& text, const MString& fontFamily,
                  float size, MColour colour, int32_t horizontal, int32_t vertical, bool clip);
    // Loads a picture file (not a folder) and draws it as DrawPicture does.
    void DrawPictureFile(const MString& path, const MDrawRect& rectangle);
    // Draws a picture fitted into the rectangle, centred, never enlarged; a
    // reduction goes through the picture's own resampling first.
    void DrawPicture(const MPicture& picture, const MDrawRect& rectangle, bool applyTransform);
    // Draws the part of the picture inside source (pixels) as DrawPicture does.
    void DrawPicturePart(const MPicture& picture, const WRect& source, const MDrawRect& rectangle);
    // The common end of all picture drawing: a surface bitmap (see
    // MakeSurfaceBitmap) fitted into the rectangle and centred, cut to it;
    // with neverEnlarge it is not drawn larger than its pixels.
    void DrawSource(void* source, const MDrawRect& rectangle, bool applyTransform,
                    bool neverEnlarge);

    // ---- Shared rules (DrawSurface.cpp)

    // A caller's point in device pixels.
    MPoint2 ToDevice(MPoint2 point) const;
    // Makes the brush of colour the current one, reusing it when the colour
    // is the same byte for byte. False when no brush can be had.
    bool UseColour(MColour colour);
    // Makes the text format of these values the current one, reusing it when
    // all agree. False when no format can be had.
    bool UseFont(const MString& family, int32_t size, int32_t weight, bool italic,
                 int32_t horizontal, int32_t vertical, bool wrap);
    // Appends one entry to Operations (the native build's recording).
    void Record(const MDrawOperation& operation);
};

// Surfaces created and not yet released, over the whole process.
extern int32_t TheSurfaceCount;

// A colour byte as a drawing channel from 0 to 1.
inline float ColourChannel(uint8_t byte) {
    return byte * 0.003921569f;
}

// The four corners of DrawSquare, in drawing order.
void SquareCorners(MPoint2 centre, float radius, float startAngle, MPoint2 corners[4]);

// The bitmap that DrawSource draws: a premultiplied platform bitmap made from
// a picture (a WIC bitmap in the Windows build, a premultiplied copy of the
// picture in the native one), owned by the caller; null on failure. The
// background picture is kept in this form.
void* MakeSurfaceBitmap(const MPicture& picture);
void ReleaseSurfaceBitmap(void* bitmap);
// Its size in pixels; false (and 0 by 0) for null.
bool SurfaceBitmapSize(void* bitmap, int32_t& width, int32_t& height);

// One line of text for an entry of the recording, and the whole recording as
// lines: what tests compare and print.
MString DescribeOperation(const MDrawOperation& operation);
MString RecordingText(const MDrawSurface& surface);
