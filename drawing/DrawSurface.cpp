// The drawing surface's rules that do not depend on the platform: the
// transform into device pixels, the one-entry colour and font caches, the
// fitting and reduction of pictures, and the text of the native recording.
// What reaches the platform goes through DrawSurfacePlatform.h.

#include "drawing/MDrawSurface.h"

#include "drawing/DrawSurfacePlatform.h"
#include "drawing/MPicture.h"
#include "foundation/Folders.h"

#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <type_traits>
#include <utility>

int32_t TheSurfaceCount = 0;

void CountSurface(MDrawSurface& surface) {
    if (surface.Counted) return;
    surface.Counted = true;
    TheSurfaceCount++;
}

static const char16_t* const DefaultFontFamily = u"MS Shell Dlg";

// ---- Transform and caches

MPoint2 MDrawSurface::ToDevice(MPoint2 point) const {
    return MPoint2{(point.x - float(Left)) * Scale, (point.y - float(Top)) * Scale};
}

// Texts and rectangles land on whole pixels: the transformed values are
// truncated, not rounded.
static WRect DeviceRect(const MDrawSurface& surface, const MDrawRect& rectangle) {
    MPoint2 topLeft = surface.ToDevice(MPoint2{rectangle.left, rectangle.top});
    MPoint2 bottomRight = surface.ToDevice(MPoint2{rectangle.right, rectangle.bottom});
    return WRect{int32_t(topLeft.x), int32_t(topLeft.y), int32_t(bottomRight.x),
                 int32_t(bottomRight.y)};
}

MDrawRect AsDrawRect(const WRect& rectangle) {
    return MDrawRect{float(rectangle.left), float(rectangle.top), float(rectangle.right),
                     float(rectangle.bottom)};
}

static bool SameColour(MColour a, MColour b) {
    return a.b == b.b && a.g == b.g && a.r == b.r && a.a == b.a;
}

// Callers draw long runs in one colour, so one cached brush makes no objects
// during such a run.
bool MDrawSurface::UseColour(MColour colour) {
    if (Brush && SameColour(colour, BrushColour)) return true;
    if (!PlatformNewBrush(*this, colour)) return false;
    BrushColour = colour;
    return true;
}

bool MDrawSurface::UseFont(const MString& family, int32_t size, int32_t weight, bool italic,
                           int32_t horizontal, int32_t vertical, bool wrap) {
    if (TextFormat && family == FontFamily && size == FontSize && weight == FontWeight &&
        italic == FontItalic && horizontal == FontHorizontal && vertical == FontVertical &&
        wrap == FontWrap)
        return true;
    FontFamily = family;
    FontSize = size;
    FontWeight = weight;
    FontItalic = italic;
    FontHorizontal = horizontal;
    FontVertical = vertical;
    FontWrap = wrap;
    return PlatformNewTextFormat(*this);
}

// ---- The recording's blocks

static_assert(std::is_trivially_copyable<MDrawOperation>::value &&
                  std::is_trivially_copyable<MDrawSlot>::value,
              "entries are moved as bytes by realloc");
static_assert(sizeof(MDrawSlot) == 32, "two slots to a cache line");

MDrawRecording::MDrawRecording(MDrawRecording&& other) noexcept {
    *this = std::move(other);
}

MDrawRecording& MDrawRecording::operator=(MDrawRecording&& other) noexcept {
    if (this == &other) return *this;
    std::free(Data);
    std::free(Others);
    Count = other.Count;
    Data = other.Data;
    Ready = other.Ready;
    Others = other.Others;
    OtherCount = other.OtherCount;
    OtherCapacity = other.OtherCapacity;
    other.Count = 0;
    other.Data = nullptr;
    other.Ready = 0;
    other.Others = nullptr;
    other.OtherCount = 0;
    other.OtherCapacity = 0;
    return *this;
}

MDrawRecording::~MDrawRecording() {
    std::free(Data);
    std::free(Others);
}

MDrawOperation MDrawRecording::operator[](int32_t index) const {
    const MDrawSlot& slot = Data[index];
    if (slot.Other >= 0) return Others[slot.Other];
    MDrawOperation op;
    op.Kind = slot.Kind;
    op.Filled = slot.Filled;
    op.Colour = slot.Colour;
    const float* v = slot.Values;
    switch (slot.Kind) {
    case DrawLineKind:
        op.X1 = v[0], op.Y1 = v[1], op.X2 = v[2], op.Y2 = v[3], op.Width = v[4];
        return op;
    case DrawRectangleKind:
        op.X1 = v[0], op.Y1 = v[1], op.X2 = v[2], op.Y2 = v[3];
        return op;
    case DrawCircleKind:
        op.X1 = v[0], op.Y1 = v[1], op.Radius = v[2], op.Width = v[3];
        return op;
    case DrawSquareKind:
        op.X1 = v[0], op.Y1 = v[1], op.Radius = v[2], op.Angle = v[3], op.Width = v[4];
        return op;
    default:
        return op;
    }
}

// ---- Shapes

void MDrawSurface::DrawLine(MPoint2 from, MPoint2 to, float width, MColour colour) {
    if (!Valid) return;
    if (!UseColour(colour)) return;
    if (!StrokeStyle && !PlatformNewStrokeStyle(*this)) return;
    PlatformLine(*this, ToDevice(from), ToDevice(to), width * Scale);
}

void MDrawSurface::DrawRectangle(const MDrawRect& rectangle, MColour colour) {
    if (!Valid) return;
    if (!(rectangle.right > rectangle.left) || !(rectangle.bottom > rectangle.top)) return;
    if (!UseColour(colour)) return;
    WRect device = DeviceRect(*this, rectangle);
    PlatformRectangle(*this, device.left, device.top, device.right, device.bottom);
}

// The shared transform rule of circles and squares: with applyTransform the
// centre, the radius and the width go to device pixels and the radius is
// truncated to whole pixels.
static void TransformRound(const MDrawSurface& surface, bool applyTransform, MPoint2& centre,
                           float& radius, float& lineWidth) {
    if (!applyTransform) return;
    centre = surface.ToDevice(centre);
    radius = float(int32_t(radius * surface.Scale));
    lineWidth = lineWidth * surface.Scale;
}

void MDrawSurface::DrawCircle(MPoint2 centre, int32_t radius, MColour colour, bool filled,
                              float lineWidth, bool applyTransform) {
    if (!Valid || radius <= 0) return;
    if (!UseColour(colour)) return;
    float r = float(radius);
    TransformRound(*this, applyTransform, centre, r, lineWidth);
    PlatformCircle(*this, centre, r, filled, lineWidth);
}

void MDrawSurface::DrawSquare(MPoint2 centre, int32_t radius, MColour colour, bool filled,
                              float lineWidth, float startAngle, bool applyTransform) {
    if (!Valid || radius <= 0) return;
    if (!UseColour(colour)) return;
    float r = float(radius);
    TransformRound(*this, applyTransform, centre, r, lineWidth);
    PlatformSquare(*this, centre, r, startAngle, filled, lineWidth);
}

void SquareCorners(MPoint2 centre, float radius, float startAngle, MPoint2 corners[4]) {
    for (int32_t k = 0; k < 4; k++) {
        float angle = float(double(startAngle) + k * 6.283185307179586 * 0.25);
        corners[k] =
            MPoint2{centre.x + radius * std::sin(angle), centre.y + radius * std::cos(angle)};
    }
}

// ---- Text

void MDrawSurface::DrawText(const MDrawRect& rectangle, const MString& text,
                            const MString& fontFamily, float size, MColour colour,
                            int32_t horizontal, int32_t vertical, bool clip) {
    if (!Valid) return;
    WRect device = DeviceRect(*this, rectangle);
    float scaled = size * Scale;
    MString family = fontFamily.IsEmpty() ? MString(DefaultFontFamily) : fontFamily;
    if (scaled <= 0) scaled = 12;
    // This path always asks for the regular, upright, wrapped face.
    if (!UseFont(family, int32_t(scaled), 400, false, horizontal, vertical, true)) return;
    if (!UseColour(colour)) return;
    PlatformText(*this, device.left, device.top, device.right, device.bottom, text, clip);
}

// ---- Pictures

void MDrawSurface::DrawSource(void* source, const MDrawRect& rectangle, bool applyTransform,
                              bool neverEnlarge) {
    if (!Valid || !source) return;
    if (!(rectangle.right > rectangle.left) || !(rectangle.bottom > rectangle.top)) return;
    WRect box = applyTransform ? DeviceRect(*this, rectangle)
                               : WRect{int32_t(rectangle.left), int32_t(rectangle.top),
                                       int32_t(rectangle.right), int32_t(rectangle.bottom)};
    int32_t width = 0, height = 0;
    if (!SurfaceBitmapSize(source, width, height) || width < 1 || height < 1) return;
    float fx = float(box.right - box.left) / float(width);
    float fy = float(box.bottom - box.top) / float(height);
    float f = fx < fy ? fx : fy;
    if (neverEnlarge && f > 1) f = 1;

    int32_t cx = (box.left + box.right) / 2;
    int32_t cy = (box.top + box.bottom) / 2;
    float halfWidth = float(double(width) * 0.5 * double(f));
    float halfHeight = float(double(height) * 0.5 * double(f));
    MDrawRect destination{float(cx) - halfWidth, float(cy) - halfHeight, float(cx) + halfWidth,
                          float(cy) + halfHeight};
    if (destination.left < float(box.left)) destination.left = float(box.left);
    if (destination.top < float(box.top)) destination.top = float(box.top);
    if (destination.right > float(box.right)) destination.right = float(box.right);
    if (destination.bottom > float(box.bottom)) destination.bottom = float(box.bottom);
    PlatformBitmap(*this, source, destination);
}

// Reduction is done here by the picture's own filter rather than left to the
// linear interpolation of the platform, which would skip pixels.
void MDrawSurface::DrawPicture(const MPicture& picture, const MDrawRect& rectangle,
                               bool applyTransform) {
    if (!Valid || !picture.IsUsable()) return;
    MDrawRect box = applyTransform ? AsDrawRect(DeviceRect(*this, rectangle)) : rectangle;
    float boxWidth = box.right - box.left, boxHeight = box.bottom - box.top;
    float f = 1;
    if (float(picture.Width) != boxWidth || float(picture.Height) != boxHeight) {
        float fx = boxWidth / float(picture.Width);
        float fy = boxHeight / float(picture.Height);
        f = fx < fy ? fx : fy;
    }
    void* source = nullptr;
    if (f < 1) {
        int32_t width = int32_t(float(picture.Width) * f);
        int32_t height = int32_t(float(picture.Height) * f);
        if (width < 1 || height < 1) return;
        MPicture reduced;
        if (!reduced.Resample(picture, width, height, picture.Format)) return;
        source = MakeSurfaceBitmap(reduced);
    } else {
        source = MakeSurfaceBitmap(picture);
    }
    if (!source) return;
    DrawSource(source, box, false, true);
    ReleaseSurfaceBitmap(source);
}

void MDrawSurface::DrawPictureFile(const MString& path, const MDrawRect& rectangle) {
    if (!Valid) return;
    if (!PathExists(path) || FolderExists(path)) return;
    MDrawRect box = AsDrawRect(DeviceRect(*this, rectangle));
    MPicture picture;
    if (!picture.Load(path) || !picture.IsUsable()) return;
    DrawPicture(picture, box, false);
}

void MDrawSurface::DrawPicturePart(const MPicture& picture, const WRect& source,
                                   const MDrawRect& rectangle) {
    if (!Valid || !picture.IsUsable()) return;
    MDrawRect box = AsDrawRect(DeviceRect(*this, rectangle));
    if (source.left == 0 && source.top == 0 && source.right == int32_t(picture.Width) &&
        source.bottom == picture.Height) {
        DrawPicture(picture, box, false);
        return;
    }
    MPicture part;
    if (!part.Crop(picture, source)) return;
    DrawPicture(part, box, false);
}

// ---- The recording as text

static MString ColourText(MColour colour) {
    return IntegerText(colour.b) + " " + IntegerText(colour.g) + " " + IntegerText(colour.r) + " " +
           IntegerText(colour.a);
}

static MString Numbers(std::initializer_list<float> values) {
    MString text;
    for (float value : values)
        text = text + " " + MString(value);
    return text;
}

MString DescribeOperation(const MDrawOperation& op) {
    MString colour = MString(u" colour ") + ColourText(op.Colour);
    MString width = MString(u" width") + Numbers({op.Width});
    MString fill = op.Filled ? MString(u" filled") : MString(u" open");
    switch (op.Kind) {
    case DrawCreateForWindow:
        return MString(u"CreateForWindow ") + IntegerText(int32_t(op.X2)) + " " +
               IntegerText(int32_t(op.Y2));
    case DrawCreateForDc:
        return MString(u"CreateForDc") + Numbers({op.X1, op.Y1, op.X2, op.Y2});
    case DrawRelease:
        return MString(u"Release");
    case DrawBegin:
        return MString(u"Begin");
    case DrawEnd:
        return MString(u"End");
    case DrawClear:
        return MString(u"Clear ") + ColourText(op.Colour);
    case DrawNewBrush:
        return MString(u"Brush ") + ColourText(op.Colour);
    case DrawNewStroke:
        return MString(u"StrokeStyle");
    case DrawNewFormat:
        return MString(u"TextFormat \"") + MString(op.Font) + "\" " + IntegerText(op.Size) + " " +
               IntegerText(op.Weight) + " " + IntegerText(op.Horizontal) + " " +
               IntegerText(op.Vertical) + (op.Wrap ? " wrap" : " nowrap");
    case DrawLineKind:
        return MString(u"Line") + Numbers({op.X1, op.Y1, op.X2, op.Y2}) + width + colour;
    case DrawRectangleKind:
        return MString(u"Rectangle") + Numbers({op.X1, op.Y1, op.X2, op.Y2}) + colour;
    case DrawCircleKind:
        return MString(u"Circle") + Numbers({op.X1, op.Y1}) + " radius" + Numbers({op.Radius}) +
               fill + width + colour;
    case DrawSquareKind:
        return MString(u"Square") + Numbers({op.X1, op.Y1}) + " radius" + Numbers({op.Radius}) +
               " angle" + Numbers({op.Angle}) + fill + width + colour;
    case DrawTextKind:
        return MString(u"Text") + Numbers({op.X1, op.Y1, op.X2, op.Y2}) + " \"" + MString(op.Text) +
               "\" \"" + MString(op.Font) + "\" " + IntegerText(op.Size) + colour +
               (op.Clip ? " clip" : "");
    case DrawBitmapKind:
        return MString(u"Bitmap") + Numbers({op.X1, op.Y1, op.X2, op.Y2}) + " source " +
               IntegerText(op.SourceWidth) + " " + IntegerText(op.SourceHeight);
    default:
        return MString(u"Unknown");
    }
}

MString RecordingText(const MDrawSurface& surface) {
    MString text;
    for (int32_t i = 0; i < surface.OperationCount; i++)
        text += DescribeOperation(surface.Operations[i]) + "\n";
    return text;
}
