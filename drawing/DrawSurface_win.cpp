// The drawing surface on Direct2D and DirectWrite: factories, a window or
// device-context render target, and the one brush, stroke style and text
// format that the shared rules of DrawSurface.cpp keep in place.
//
// Lines, rectangles and squares are not handed over one call each: a run of
// them in one brush and width is gathered into one path geometry (see
// "Batches" below), which is drawn before anything else reaches the target,
// so the order of what is drawn stays that of the calls.

#include "drawing/DrawSurfacePlatform.h"
#include "drawing/MDrawSurface.h"
#include "drawing/MPicture.h"

#include <windows.h>

#include <cmath>
#include <d2d1.h>
#include <dwrite.h>
#include <new>
#include <wincodec.h>

#undef DrawText

bool TheDrawBatching = true;

// ---- Access to the opaque fields

static ID2D1Factory* FactoryOf(const MDrawSurface& surface) {
    return static_cast<ID2D1Factory*>(surface.Factory);
}
static IDWriteFactory* WriteFactoryOf(const MDrawSurface& surface) {
    return static_cast<IDWriteFactory*>(surface.WriteFactory);
}
// The window target or the DC target, whichever the surface was made with.
static ID2D1RenderTarget* TargetOf(const MDrawSurface& surface) {
    if (surface.HwndTarget) return static_cast<ID2D1HwndRenderTarget*>(surface.HwndTarget);
    return static_cast<ID2D1DCRenderTarget*>(surface.DcTarget);
}
static ID2D1SolidColorBrush* BrushOf(const MDrawSurface& surface) {
    return static_cast<ID2D1SolidColorBrush*>(surface.Brush);
}
static IDWriteTextFormat* TextFormatOf(const MDrawSurface& surface) {
    return static_cast<IDWriteTextFormat*>(surface.TextFormat);
}

template <typename T> static void ReleaseField(void*& field) {
    if (field) static_cast<T*>(field)->Release();
    field = nullptr;
}

static const wchar_t* Wide(const MString& text) {
    return reinterpret_cast<const wchar_t*>(text.Chars());
}

static D2D1_COLOR_F ColourValue(MColour colour) {
    D2D1_COLOR_F value;
    value.r = ColourChannel(colour.r);
    value.g = ColourChannel(colour.g);
    value.b = ColourChannel(colour.b);
    value.a = ColourChannel(colour.a);
    return value;
}

// ---- Batches
//
// Each Direct2D call costs far more than the shapes in it (under Wine, a
// line drawn on its own costs about as much as fifty inside one geometry),
// and a large sketch draws a hundred thousand lines a frame. So the lines of
// one brush and width are gathered as open figures of one path geometry and
// stroked together with the surface's stroke style; filled rectangles and
// squares become closed figures of one filled geometry, open squares closed
// figures of one stroked geometry. Each figure keeps its own ends and caps,
// so the union of a batch covers the pixels that its shapes drawn one by one
// cover. Where shapes of a translucent colour overlap, drawn one by one they
// blend twice and a batch would blend once: such a shape starts a new batch.
// Circles are drawn at once, each on its own (the ellipse calls; see
// PlatformCircle), after the batch before them.
//
// A batch is drawn when the brush changes, when a shape of another kind or
// width comes, when anything else is drawn (a circle, a text, a picture, a
// clear) and at End. Its size is bounded: a path geometry's closing time
// grows with the square of its segments under Wine.

enum BatchKind { BatchNone, BatchLines, BatchFills, BatchOutlines };

const int32_t MaxBatchLines = 256;  // lines of one batch
const int32_t MaxBatchFigures = 32; // filled or stroked four-corner figures of one batch
const int32_t MaxBatchPoints = 512; // 2 per line, 4 per figure

struct DrawBatch {
    int32_t Kind = BatchNone;
    float Width = 0;                      // stroke width of lines and outlines, device pixels
    int32_t Count = 0;                    // lines or figures gathered
    D2D1_POINT_2F Points[MaxBatchPoints]; // each line's two ends, each figure's four corners
    D2D1_RECT_F Boxes[MaxBatchLines];     // what each shape may touch, for translucent colours
};

static DrawBatch* BatchOf(const MDrawSurface& surface) {
    return static_cast<DrawBatch*>(surface.Batch);
}

static int32_t CornersOf(int32_t kind) {
    return kind == BatchLines ? 2 : 4;
}

static bool Overlap(const D2D1_RECT_F& a, const D2D1_RECT_F& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// The box of the points grown by reach on every side.
static D2D1_RECT_F BoxOf(const D2D1_POINT_2F* points, int32_t count, float reach) {
    D2D1_RECT_F box = {points[0].x, points[0].y, points[0].x, points[0].y};
    for (int32_t i = 1; i < count; i++) {
        if (points[i].x < box.left) box.left = points[i].x;
        if (points[i].x > box.right) box.right = points[i].x;
        if (points[i].y < box.top) box.top = points[i].y;
        if (points[i].y > box.bottom) box.bottom = points[i].y;
    }
    box.left -= reach;
    box.top -= reach;
    box.right += reach;
    box.bottom += reach;
    return box;
}

// A shape whose box lies wholly outside the target changes no pixel.
static bool OutsideTarget(const MDrawSurface& surface, const D2D1_RECT_F& box) {
    D2D1_SIZE_F size = TargetOf(surface)->GetSize();
    return box.right < 0 || box.bottom < 0 || box.left > size.width || box.top > size.height;
}

// A point that is not finite would spoil the whole geometry of its batch.
static bool Finite(const D2D1_POINT_2F* points, int32_t count) {
    for (int32_t i = 0; i < count; i++)
        if (!std::isfinite(points[i].x) || !std::isfinite(points[i].y)) return false;
    return true;
}

// Draws what the batch holds and empties it.
static void FlushBatch(MDrawSurface& surface) {
    DrawBatch* batch = BatchOf(surface);
    if (!batch || batch->Count == 0) return;
    int32_t corners = CornersOf(batch->Kind);
    bool lines = batch->Kind == BatchLines;
    ID2D1PathGeometry* geometry = nullptr;
    if (SUCCEEDED(FactoryOf(surface)->CreatePathGeometry(&geometry))) {
        ID2D1GeometrySink* sink = nullptr;
        if (SUCCEEDED(geometry->Open(&sink))) {
            sink->SetFillMode(D2D1_FILL_MODE_WINDING);
            for (int32_t i = 0; i < batch->Count; i++) {
                const D2D1_POINT_2F* p = batch->Points + i * corners;
                sink->BeginFigure(p[0], batch->Kind == BatchFills ? D2D1_FIGURE_BEGIN_FILLED
                                                                  : D2D1_FIGURE_BEGIN_HOLLOW);
                sink->AddLines(p + 1, UINT32(corners - 1));
                sink->EndFigure(lines ? D2D1_FIGURE_END_OPEN : D2D1_FIGURE_END_CLOSED);
            }
            bool closed = SUCCEEDED(sink->Close());
            sink->Release();
            if (closed) {
                if (batch->Kind == BatchFills)
                    TargetOf(surface)->FillGeometry(geometry, BrushOf(surface), nullptr);
                else
                    TargetOf(surface)->DrawGeometry(
                        geometry, BrushOf(surface), batch->Width,
                        lines ? static_cast<ID2D1StrokeStyle*>(surface.StrokeStyle) : nullptr);
            }
        }
        geometry->Release();
    }
    batch->Count = 0;
    batch->Kind = BatchNone;
}

// Adds a line (2 points) or a four-corner figure to the batch, drawing the
// batch first when the shape cannot join it. False when there is no batch
// (batching is off, or its memory could not be had): the caller draws the
// shape itself. reach is how far the shape's pixels may lie from its points.
static bool AddToBatch(MDrawSurface& surface, int32_t kind, float width,
                       const D2D1_POINT_2F* points, float reach) {
    DrawBatch* batch = BatchOf(surface);
    if (!TheDrawBatching || !batch) return false;
    int32_t corners = CornersOf(kind);
    if (!Finite(points, corners)) return true;
    // One more pixel for the edge that anti-aliasing blends.
    D2D1_RECT_F box = BoxOf(points, corners, reach + 1);
    if (OutsideTarget(surface, box)) return true;
    int32_t limit = kind == BatchLines ? MaxBatchLines : MaxBatchFigures;
    if (batch->Kind != kind || batch->Width != width || batch->Count >= limit) FlushBatch(surface);
    if (surface.BrushColour.a != 255) {
        for (int32_t i = 0; i < batch->Count; i++)
            if (Overlap(batch->Boxes[i], box)) {
                FlushBatch(surface);
                break;
            }
    }
    batch->Kind = kind;
    batch->Width = width;
    batch->Boxes[batch->Count] = box;
    for (int32_t k = 0; k < corners; k++)
        batch->Points[batch->Count * corners + k] = points[k];
    batch->Count++;
    return true;
}

static void ReleaseBatch(MDrawSurface& surface) {
    delete BatchOf(surface);
    surface.Batch = nullptr;
}

// ---- Creation

// Both factories are made anew with each surface: a surface is remade only
// when the window's size changes, so nothing is gained by sharing them.
static bool CreateFactories(MDrawSurface& surface) {
    ID2D1Factory* factory = nullptr;
    if (FAILED(D2D1CreateFactory(D2D1_FACTORY_TYPE_SINGLE_THREADED, __uuidof(ID2D1Factory), nullptr,
                                 reinterpret_cast<void**>(&factory))))
        return false;
    surface.Factory = factory;
    IDWriteFactory* writeFactory = nullptr;
    if (FAILED(DWriteCreateFactory(DWRITE_FACTORY_TYPE_SHARED, __uuidof(IDWriteFactory),
                                   reinterpret_cast<IUnknown**>(&writeFactory))))
        return false;
    surface.WriteFactory = writeFactory;
    return true;
}

void MDrawSurface::CreateForWindow(void* window) {
    Valid = false;
    Scale = 1;
    CountSurface(*this);
    HWND handle = static_cast<HWND>(window);
    RECT client = {};
    if (!handle || !GetClientRect(handle, &client)) return;
    Left = client.left;
    Top = client.top;
    Right = client.right;
    Bottom = client.bottom;
    if (Right - Left < 1 || Bottom - Top < 1) return;
    if (!CreateFactories(*this)) return;

    D2D1_RENDER_TARGET_PROPERTIES properties = {};
    properties.type = D2D1_RENDER_TARGET_TYPE_DEFAULT;
    properties.pixelFormat.format = DXGI_FORMAT_UNKNOWN;
    properties.pixelFormat.alphaMode = D2D1_ALPHA_MODE_UNKNOWN;
    properties.usage = D2D1_RENDER_TARGET_USAGE_NONE;
    properties.minLevel = D2D1_FEATURE_LEVEL_DEFAULT;
    D2D1_HWND_RENDER_TARGET_PROPERTIES windowProperties = {};
    windowProperties.hwnd = handle;
    windowProperties.pixelSize.width = static_cast<UINT32>(Right - Left);
    windowProperties.pixelSize.height = static_cast<UINT32>(Bottom - Top);
    windowProperties.presentOptions = D2D1_PRESENT_OPTIONS_NONE;
    ID2D1HwndRenderTarget* target = nullptr;
    if (FAILED(FactoryOf(*this)->CreateHwndRenderTarget(&properties, &windowProperties, &target)))
        return;
    HwndTarget = target;
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
    if (!dc || Right - Left < 1 || Bottom - Top < 1) return;
    if (!CreateFactories(*this)) return;

    D2D1_RENDER_TARGET_PROPERTIES properties = {};
    properties.type = D2D1_RENDER_TARGET_TYPE_DEFAULT;
    properties.pixelFormat.format = DXGI_FORMAT_B8G8R8A8_UNORM;
    properties.pixelFormat.alphaMode = D2D1_ALPHA_MODE_IGNORE;
    properties.usage = D2D1_RENDER_TARGET_USAGE_NONE;
    properties.minLevel = D2D1_FEATURE_LEVEL_DEFAULT;
    ID2D1DCRenderTarget* target = nullptr;
    if (FAILED(FactoryOf(*this)->CreateDCRenderTarget(&properties, &target))) return;
    DcTarget = target;
    RECT bound = {Left, Top, Right, Bottom};
    if (FAILED(target->BindDC(static_cast<HDC>(dc), &bound))) return;
    Valid = true;
}

void MDrawSurface::Release() {
    Valid = false;
    ReleaseBatch(*this);
    ReleaseField<IDWriteTextFormat>(TextFormat);
    ReleaseField<ID2D1StrokeStyle>(StrokeStyle);
    ReleaseField<ID2D1SolidColorBrush>(Brush);
    ReleaseField<ID2D1HwndRenderTarget>(HwndTarget);
    ReleaseField<ID2D1DCRenderTarget>(DcTarget);
    ReleaseField<IDWriteFactory>(WriteFactory);
    ReleaseField<ID2D1Factory>(Factory);
    if (Counted) {
        Counted = false;
        TheSurfaceCount--;
    }
}

// ---- Drawing

bool MDrawSurface::Begin() {
    if (!Valid) return false;
    ID2D1RenderTarget* target = TargetOf(*this);
    target->BeginDraw();
    D2D1_MATRIX_3X2_F identity = {1, 0, 0, 1, 0, 0};
    target->SetTransform(&identity);
    // Without memory for a batch every shape is drawn on its own.
    if (!Batch) Batch = new (std::nothrow) DrawBatch;
    if (DrawBatch* batch = BatchOf(*this)) {
        batch->Count = 0;
        batch->Kind = BatchNone;
    }
    return true;
}

void MDrawSurface::End() {
    if (!Valid) return;
    FlushBatch(*this);
    TargetOf(*this)->EndDraw(nullptr, nullptr);
}

void MDrawSurface::Clear(MColour colour) {
    if (!Valid) return;
    FlushBatch(*this);
    D2D1_COLOR_F value = ColourValue(colour);
    TargetOf(*this)->Clear(&value);
}

bool PlatformNewBrush(MDrawSurface& surface, MColour colour) {
    // The batch is drawn with the brush it was gathered for.
    FlushBatch(surface);
    ReleaseField<ID2D1SolidColorBrush>(surface.Brush);
    D2D1_COLOR_F value = ColourValue(colour);
    ID2D1SolidColorBrush* brush = nullptr;
    if (FAILED(TargetOf(surface)->CreateSolidColorBrush(&value, nullptr, &brush))) return false;
    surface.Brush = brush;
    return true;
}

bool PlatformNewStrokeStyle(MDrawSurface& surface) {
    D2D1_STROKE_STYLE_PROPERTIES properties = {};
    properties.startCap = D2D1_CAP_STYLE_ROUND;
    properties.endCap = D2D1_CAP_STYLE_ROUND;
    properties.dashCap = D2D1_CAP_STYLE_FLAT;
    properties.lineJoin = D2D1_LINE_JOIN_MITER;
    properties.miterLimit = 10;
    properties.dashStyle = D2D1_DASH_STYLE_SOLID;
    properties.dashOffset = 0;
    ID2D1StrokeStyle* style = nullptr;
    if (FAILED(FactoryOf(surface)->CreateStrokeStyle(&properties, nullptr, 0, &style)))
        return false;
    surface.StrokeStyle = style;
    return true;
}

bool PlatformNewTextFormat(MDrawSurface& surface) {
    ReleaseField<IDWriteTextFormat>(surface.TextFormat);
    IDWriteTextFormat* format = nullptr;
    if (FAILED(WriteFactoryOf(surface)->CreateTextFormat(
            Wide(surface.FontFamily), nullptr, DWRITE_FONT_WEIGHT(surface.FontWeight),
            surface.FontItalic ? DWRITE_FONT_STYLE_ITALIC : DWRITE_FONT_STYLE_NORMAL,
            DWRITE_FONT_STRETCH_NORMAL, float(surface.FontSize), L"", &format)))
        return false;
    surface.TextFormat = format;
    format->SetTextAlignment(surface.FontHorizontal == 0   ? DWRITE_TEXT_ALIGNMENT_CENTER
                             : surface.FontHorizontal == 1 ? DWRITE_TEXT_ALIGNMENT_TRAILING
                                                           : DWRITE_TEXT_ALIGNMENT_LEADING);
    format->SetParagraphAlignment(surface.FontVertical == 0   ? DWRITE_PARAGRAPH_ALIGNMENT_CENTER
                                  : surface.FontVertical == 1 ? DWRITE_PARAGRAPH_ALIGNMENT_FAR
                                                              : DWRITE_PARAGRAPH_ALIGNMENT_NEAR);
    format->SetWordWrapping(surface.FontWrap ? DWRITE_WORD_WRAPPING_WRAP
                                             : DWRITE_WORD_WRAPPING_NO_WRAP);
    return true;
}

void PlatformLine(MDrawSurface& surface, MPoint2 from, MPoint2 to, float width) {
    D2D1_POINT_2F ends[2] = {{from.x, from.y}, {to.x, to.y}};
    // Round caps reach half the width beyond the ends.
    if (AddToBatch(surface, BatchLines, width, ends, width * 0.5f)) return;
    TargetOf(surface)->DrawLine(D2D1_POINT_2F{from.x, from.y}, D2D1_POINT_2F{to.x, to.y},
                                BrushOf(surface), width,
                                static_cast<ID2D1StrokeStyle*>(surface.StrokeStyle));
}

// A closed figure of the given corners; filled with the winding rule, or
// stroked with the width and no stroke style.
static void DrawFigure(MDrawSurface& surface, const D2D1_POINT_2F* corners, int32_t count,
                       bool filled, float width) {
    ID2D1PathGeometry* geometry = nullptr;
    if (FAILED(FactoryOf(surface)->CreatePathGeometry(&geometry))) return;
    ID2D1GeometrySink* sink = nullptr;
    if (SUCCEEDED(geometry->Open(&sink))) {
        sink->SetFillMode(D2D1_FILL_MODE_WINDING);
        sink->BeginFigure(corners[0], D2D1_FIGURE_BEGIN_FILLED);
        for (int32_t i = 1; i < count; i++)
            sink->AddLine(corners[i]);
        sink->EndFigure(D2D1_FIGURE_END_CLOSED);
        bool closed = SUCCEEDED(sink->Close());
        sink->Release();
        if (closed) {
            if (filled)
                TargetOf(surface)->FillGeometry(geometry, BrushOf(surface), nullptr);
            else
                TargetOf(surface)->DrawGeometry(geometry, BrushOf(surface), width, nullptr);
        }
    }
    geometry->Release();
}

void PlatformRectangle(MDrawSurface& surface, int32_t left, int32_t top, int32_t right,
                       int32_t bottom) {
    D2D1_POINT_2F corners[4] = {{float(left), float(top)},
                                {float(right), float(top)},
                                {float(right), float(bottom)},
                                {float(left), float(bottom)}};
    if (AddToBatch(surface, BatchFills, 0, corners, 0)) return;
    DrawFigure(surface, corners, 4, true, 0);
}

// The ellipse calls give the circle of two arcs exactly; they are used
// because Wine's path geometry draws no arcs. Circles are not batched: a
// geometry could hold them only as Bezier curves or polygons, which under
// Wine close and fill no faster than the ellipse calls, and not exactly the
// same circle. A circle wholly outside the target is skipped.
void PlatformCircle(MDrawSurface& surface, MPoint2 centre, float radius, bool filled, float width) {
    if (TheDrawBatching) {
        float reach = radius + (filled ? 0 : width * 0.5f) + 1;
        D2D1_RECT_F box = {centre.x - reach, centre.y - reach, centre.x + reach, centre.y + reach};
        if (OutsideTarget(surface, box)) return;
    }
    FlushBatch(surface);
    D2D1_ELLIPSE ellipse = {{centre.x, centre.y}, radius, radius};
    if (filled)
        TargetOf(surface)->FillEllipse(&ellipse, BrushOf(surface));
    else
        TargetOf(surface)->DrawEllipse(&ellipse, BrushOf(surface), width, nullptr);
}

void PlatformSquare(MDrawSurface& surface, MPoint2 centre, float radius, float startAngle,
                    bool filled, float width) {
    MPoint2 points[4];
    SquareCorners(centre, radius, startAngle, points);
    D2D1_POINT_2F corners[4];
    for (int32_t k = 0; k < 4; k++)
        corners[k] = D2D1_POINT_2F{points[k].x, points[k].y};
    // An outline's miter corners reach out by up to the width.
    if (AddToBatch(surface, filled ? BatchFills : BatchOutlines, filled ? 0 : width, corners,
                   filled ? 0 : width))
        return;
    DrawFigure(surface, corners, 4, filled, width);
}

void PlatformText(MDrawSurface& surface, int32_t left, int32_t top, int32_t right, int32_t bottom,
                  const MString& text, bool clip) {
    FlushBatch(surface);
    IDWriteTextLayout* layout = nullptr;
    if (FAILED(WriteFactoryOf(surface)->CreateTextLayout(Wide(text), UINT32(text.Length),
                                                         TextFormatOf(surface), float(right - left),
                                                         float(bottom - top), &layout)))
        return;
    TargetOf(surface)->DrawTextLayout(
        D2D1_POINT_2F{float(left), float(top)}, layout, BrushOf(surface),
        clip ? D2D1_DRAW_TEXT_OPTIONS_CLIP : D2D1_DRAW_TEXT_OPTIONS_NONE);
    layout->Release();
}

// No bitmap is cached: every drawing uploads the picture anew, which is why
// the background picture keeps its WIC bitmap ready.
void PlatformBitmap(MDrawSurface& surface, void* source, const MDrawRect& destination) {
    FlushBatch(surface);
    ID2D1Bitmap* bitmap = nullptr;
    if (FAILED(TargetOf(surface)->CreateBitmapFromWicBitmap(static_cast<IWICBitmapSource*>(source),
                                                            nullptr, &bitmap)))
        return;
    D2D1_RECT_F rectangle = {destination.left, destination.top, destination.right,
                             destination.bottom};
    TargetOf(surface)->DrawBitmap(bitmap, &rectangle, 1.0f, D2D1_BITMAP_INTERPOLATION_MODE_LINEAR,
                                  nullptr);
    bitmap->Release();
}

// ---- Surface bitmaps: WIC bitmaps of premultiplied blue, green, red, alpha.

void* MakeSurfaceBitmap(const MPicture& picture) {
    return picture.ToWicBitmap();
}

void ReleaseSurfaceBitmap(void* bitmap) {
    if (bitmap) static_cast<IWICBitmapSource*>(bitmap)->Release();
}

bool SurfaceBitmapSize(void* bitmap, int32_t& width, int32_t& height) {
    width = 0;
    height = 0;
    if (!bitmap) return false;
    UINT w = 0, h = 0;
    if (FAILED(static_cast<IWICBitmapSource*>(bitmap)->GetSize(&w, &h))) return false;
    width = int32_t(w);
    height = int32_t(h);
    return true;
}
