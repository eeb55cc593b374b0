// The string generator: a picture becomes a flat mask and a cloud of points
// sampled along its traced outlines, each knowing which way the transparent
// side lies; strings then hop between opposite, roughly parallel edges.
// Every random number comes from the one generator of the process, in a fixed
// order, so a seed gives the same curves every time.

#include "spaghetti/WSpaghetti.h"

#include "drawing/FilePrompt.h"
#include "drawing/MPicture.h"
#include "eps/WTracer.h"
#include "foundation/MRandom.h"
#include "foundation/Platform.h"
#include "spaghetti/SpaghettiOutlines.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

WSpaghetti TheSpaghetti;
WSpaghettiHooks TheSpaghettiHooks;

namespace {

bool EscapeDown() {
    if (TheSpaghettiHooks.EscapeDown) return TheSpaghettiHooks.EscapeDown();
    return IsKeyDown(KeyEscape);
}

void Redraw(WSpaghetti& spaghetti, float progress) {
    if (TheSpaghettiHooks.Redraw) TheSpaghettiHooks.Redraw(spaghetti, progress);
}

float Larger(float a, float b) {
    return a > b ? a : b;
}

// An axis on which both ends agree keeps that value exactly, so that a
// straight edge does not pick up rounding noise.
float Blend(float a, float b, float t) {
    if (a == b) return a;
    return a * (1 - t) + b * t;
}

MPoint3 Flat(float x, float y) {
    MPoint3 p;
    p.x = x;
    p.y = y;
    return p;
}

// The offset of every start and candidate point: at least one pixel.
float MarginScale(const WSpaghetti& spaghetti) {
    return Larger(1.0f, spaghetti.Radius / spaghetti.UnitsPerPixel);
}

// One of up to 1000 random picks that hits an unused shape point, or -1.
int32_t PickUnused(WSpaghetti& spaghetti) {
    for (int32_t pick = 0; pick < SpaghettiPicks; pick++) {
        int32_t index = MRandomInt(spaghetti.ShapePointCount);
        if (!spaghetti.ShapePoints[index].Used) return index;
    }
    return -1;
}

// The probe of a sample: the mask pixel 2 pixels out, each axis truncated
// towards zero. Outside the mask counts as transparent.
bool SolidAhead(const WSpaghetti& spaghetti, const WShapePoint& point) {
    float x = point.X + 2 * point.OutX, y = point.Y + 2 * point.OutY;
    return spaghetti.MaskAlpha(int32_t(x), int32_t(y)) != 0;
}

// Whether a step from shape point a to shape point b may be taken: always
// with ShapeJumps at 100, by a draw below it otherwise (about ShapeJumps in
// 8192, since a 15-bit draw is taken modulo 10000), and else only when the
// line between the two points runs over solid pixels all the way. Lines of
// 4 pixels or less are not looked at.
bool StepAllowed(const WSpaghetti& spaghetti, const WShapePoint& a, const WShapePoint& b) {
    if (spaghetti.ShapeJumps >= 100) return true;
    if (spaghetti.ShapeJumps > 0 && MRandomInt(10000) < spaghetti.ShapeJumps) return true;
    float dx = b.X - a.X, dy = b.Y - a.Y;
    float length = std::sqrt(dx * dx + dy * dy);
    int32_t count = int32_t(std::ceil(length * 0.5f));
    if (count < 3) return true;
    for (int32_t k = 1; k <= count - 2; k++) {
        float t = float(k) / float(count - 1);
        int32_t x = int32_t(Blend(a.X, b.X, t)), y = int32_t(Blend(a.Y, b.Y, t));
        if (spaghetti.MaskAlpha(x, y) == 0) return false;
    }
    return true;
}

} // namespace

const WSettings& SettingsOrDefaults() {
    if (TheSettings) return *TheSettings;
    static WSettings defaults;
    static bool made = false;
    if (!made) {
        defaults.SetDefaults();
        made = true;
    }
    return defaults;
}

void WSpaghetti::ClearState() {
    delete Picture;
    Picture = nullptr;
    FreeTracer(Tracer);
    Tracer = nullptr;
    ShapePointCount = 0;
    ShapePoints.SetCount(0);
    CurveCount = 0;
    Curves.SetCount(0);
}

int32_t WSpaghetti::MaskAlpha(int32_t x, int32_t y) const {
    if (!Picture || x < 0 || y < 0 || uint32_t(x) >= Picture->Width || y >= Picture->Height)
        return 0;
    const uint8_t* address = Picture->PixelAddress(x, y);
    if (!address) return 255;
    return ReadPixel(address, Picture->Format).a;
}

// ---- Parameters

void CleanParameters(WSpaghetti& s) {
    auto order = [](float& low, float& high) {
        if (low > high) {
            float swap = low;
            low = high;
            high = swap;
        }
    };
    order(s.MarginMin, s.MarginMax);
    order(s.CurveLengthMin, s.CurveLengthMax);
    order(s.BezierMin, s.BezierMax);
    auto clampInt = [](int32_t& v, int32_t low, int32_t high) {
        if (v < low) v = low;
        if (v > high) v = high;
    };
    auto clampFloat = [](float& v, float low, float high) {
        if (v < low) v = low;
        if (v > high) v = high;
    };
    clampInt(s.Strings, 1, 100);
    clampInt(s.CurvesPerString, 1, 1000);
    clampFloat(s.Radius, 0.5f, 5);
    clampFloat(s.MarginMin, 0, 10);
    clampFloat(s.MarginMax, 0, 10);
    clampFloat(s.CurveLengthMin, 0.01f, 1);
    clampFloat(s.CurveLengthMax, 0.01f, 1);
    clampInt(s.ShapeJumps, 0, 100);
    clampFloat(s.Depth, 0, 100);
    clampFloat(s.BezierMin, 0.1f, 10);
    clampFloat(s.BezierMax, 0.1f, 10);
}

// ---- Preparing a picture

void WSpaghetti::FitPicture() {
    int32_t canvasWidth = CanvasRect.right - CanvasRect.left;
    int32_t canvasHeight = CanvasRect.bottom - CanvasRect.top;
    if (!Picture || canvasWidth <= 0 || canvasHeight <= 0) return;
    float width = float(Picture->Width), height = float(Picture->Height);
    float across = float(canvasWidth) / width, down = float(canvasHeight) / height;
    float zoom = (across < down ? across : down) * 0.9f;
    Zoom = zoom > 1 ? 1.0f : zoom;
    float halfWidth = float(canvasWidth) * 0.5f, halfHeight = float(canvasHeight) * 0.5f;
    float pictureHalfWidth = width * Zoom * 0.5f, pictureHalfHeight = height * Zoom * 0.5f;
    PictureRect.left = int32_t(halfWidth - pictureHalfWidth);
    PictureRect.right = int32_t(halfWidth + pictureHalfWidth);
    PictureRect.top = int32_t(halfHeight - pictureHalfHeight);
    PictureRect.bottom = int32_t(halfHeight + pictureHalfHeight);
}

void WSpaghetti::SampleSegment(MPoint2 start, MPoint2 end) {
    MPoint2 along = end - start;
    float length = Length2(along);
    if (length == 0) return;
    Normalize2(along);
    int32_t count = int32_t(std::ceil(length * 0.5f));
    for (int32_t k = 0; k < count; k++) {
        float t = float(k) / float(count);
        WShapePoint point;
        point.X = Blend(start.x, end.x, t);
        point.Y = Blend(start.y, end.y, t);
        point.AlongX = along.x;
        point.AlongY = along.y;
        point.OutX = along.y;
        point.OutY = -along.x;
        // Out must point to the transparent side: turn round when the first
        // probe finds solid, and drop the sample when solid lies both ways.
        if (SolidAhead(*this, point)) {
            point.AlongX = -point.AlongX;
            point.AlongY = -point.AlongY;
            point.OutX = -point.OutX;
            point.OutY = -point.OutY;
            if (SolidAhead(*this, point)) continue;
        }
        if (ShapePoints.Grow(ShapePointCount + 1, 1000))
            ShapePoints[ShapePointCount++] = point;
        else
            ShapePointCount = 0; // the failed growth took the array's contents with it
    }
}

bool WSpaghetti::PreparePicture(MString path) {
    if (path.IsEmpty()) {
        path = FilePrompt(Dialog, PromptSelectPicture);
        if (path.IsEmpty()) return false;
    }
    PathBitmap = path;
    ClearState();

    MPicture* picture = new MPicture;
    if (!picture->Load(path) || !picture->IsUsable() ||
        uint64_t(picture->Pitch) <
            uint64_t(picture->Width) * uint64_t(PictureBytesPerPixel(picture->Format))) {
        delete picture;
        return false;
    }
    if (!picture->HasTransparency())
        ShowMessage(Narrow("Warning: this picture has no transparent pixels"), IconWarning);
    ScaleDownLargePicture(*picture);

    // The mask replaces the picture's colours: clear where the alpha is 128
    // or less, the Grid colour elsewhere.
    MColour grid = SettingsOrDefaults().ColourGrid;
    int32_t bytes = PictureBytesPerPixel(picture->Format);
    for (int32_t y = 0; y < picture->Height; y++) {
        uint8_t* at = picture->Pixels + int64_t(y) * picture->Pitch;
        for (uint32_t x = 0; x < picture->Width; x++, at += bytes) {
            if (ReadPixel(at, picture->Format).a <= 128)
                std::memset(at, 0, size_t(bytes));
            else
                WritePixel(grid, at, picture->Format);
        }
    }
    Picture = picture;
    FitPicture();
    UnitsPerPixel = 250.0f / float(Picture->Height);

    TraceShapePoints(*this, path);
    if (ShapePointCount > 0) {
        Redraw(*this, 0);
        return true;
    }
    ClearState();
    return false;
}

// ---- Collision marks

void WSpaghetti::MarkUsed(int32_t index) {
    if (!CollisionDetection || index < 0 || index >= ShapePointCount) return;
    WShapePoint& centre = ShapePoints[index];
    centre.Used = true;
    float radius = Radius / UnitsPerPixel;
    float limit = radius * radius;
    for (int32_t i = 0; i < ShapePointCount; i++) {
        WShapePoint& point = ShapePoints[i];
        if (point.Used) continue;
        float dx = point.X - centre.X, dy = point.Y - centre.Y;
        if (dx * dx + dy * dy <= limit) point.Used = true;
    }
}

// ---- The next point of a string

bool WSpaghetti::FindNextPoint(const MPoint3& current, const MPoint3& previousOut,
                               const MPoint3& previousAlong, int32_t previousIndex,
                               const MPoint2& previousDirection, float minimumLength,
                               float maximumLength, WNextPoint& next) {
    if (ShapePointCount <= 0 || previousIndex < 0 || previousIndex >= ShapePointCount) return false;
    const WShapePoint& previous = ShapePoints[previousIndex];
    for (int32_t attempt = 0; attempt < SpaghettiAttempts; attempt++) {
        if (EscapeDown()) return false;
        float margin = MRandomRange(MarginMin, MarginMax);
        int32_t index = PickUnused(*this);
        if (index < 0) continue;
        const WShapePoint& q = ShapePoints[index];
        MPoint3 out = Flat(q.OutX, q.OutY), along = Flat(q.AlongX, q.AlongY);
        float offset = MarginScale(*this) * margin;
        MPoint3 candidate = Flat(q.X + offset * q.OutX, q.Y + offset * q.OutY);

        float distance = Length3(candidate - current);
        if (!(distance > minimumLength && distance < maximumLength)) continue;
        // The new edge faces away from the last one...
        if (Dot3(previousOut, out) > 0) continue;
        // ...and lies within 60 degrees of parallel to it.
        double parallel =
            double(previousAlong.x) * double(q.AlongX) + double(previousAlong.y) * double(q.AlongY);
        if (std::fabs(parallel) < 0.5) continue;
        // Every step turns back against the one before: a zigzag.
        if (previousDirection.x != 0 || previousDirection.y != 0) {
            MPoint2 back;
            back.x = current.x - candidate.x;
            back.y = current.y - candidate.y;
            Normalize2(back);
            if (Dot3(Flat(back.x, back.y), Flat(previousDirection.x, previousDirection.y)) < 0)
                continue;
        }
        if (!StepAllowed(*this, previous, q)) continue;

        MarkUsed(index);
        next.Position = candidate;
        next.Out = out;
        next.Along = along;
        next.Index = index;
        return true;
    }
    return false;
}

// ---- A run

bool WSpaghetti::Generate() {
    for (int32_t i = 0; i < ShapePointCount; i++)
        ShapePoints[i].Used = false;
    if (!Picture || ShapePointCount <= 0) {
        ShowMessage(Narrow("Click on the canvas to load a picture"), IconError);
        return false;
    }
    if (Dialog && TheSpaghettiHooks.ReadFields) TheSpaghettiHooks.ReadFields(*this);
    CleanParameters(*this);
    if (Dialog && TheSpaghettiHooks.WriteFields) TheSpaghettiHooks.WriteFields(*this);
    MRandomSeed =
        TheSpaghettiHooks.Seed ? TheSpaghettiHooks.Seed() : MilliSeconds() + uint32_t(std::rand());

    CurveCount = 0;
    Curves.SetCount(0);
    float width = float(Picture->Width), height = float(Picture->Height);
    float diagonal = std::sqrt(width * width + height * height);
    float minimumLength = diagonal * CurveLengthMin, maximumLength = diagonal * CurveLengthMax;
    bool escaped = false;

    for (int32_t string = 0; string < Strings; string++) {
        if (escaped) return true;
        int32_t endMark = CurveCount + CurvesPerString;
        MPoint2 direction;
        float margin = MarginScale(*this) * MRandomRange(MarginMin, MarginMax);
        int32_t index = PickUnused(*this);
        if (index >= 0) {
            const WShapePoint& start = ShapePoints[index];
            MPoint3 current = Flat(start.X + margin * start.OutX, start.Y + margin * start.OutY);
            MPoint3 out = Flat(start.OutX, start.OutY), along = Flat(start.AlongX, start.AlongY);
            MarkUsed(index);
            int32_t made = 0; // curves of this string
            for (int32_t round = 0; round < SpaghettiRounds; round++) {
                // Escape seen in a former round ends the string; the round in
                // which it is first seen still searches (and fails there).
                bool seenBefore = escaped;
                if (EscapeDown()) escaped = true;
                if (seenBefore) break;
                WNextPoint next;
                if (!FindNextPoint(current, out, along, index, direction, minimumLength,
                                   maximumLength, next))
                    break;
                MPoint3 to = next.Position;
                float length = Length3(to - current) * UnitsPerPixel;
                float low = length * BezierMin, high = length * BezierMax;
                if (low > high) {
                    float swap = low;
                    low = high;
                    high = swap;
                }
                float bulge;
                if (high - low <= 0) {
                    MRandomInt(10000); // the draw is made all the same
                    bulge = low;
                } else {
                    float scaled = float(MRandomInt(10000)) * (high - low);
                    bulge = scaled * 0.0001f + low;
                }
                // Front and back alternate over the whole run, not per string.
                float depth = Depth;
                if (CurveCount % 2 == 1) {
                    bulge = -bulge;
                    depth = -depth;
                }
                WStringCurve curve;
                if (curve.Points.SetCount(4)) {
                    curve.Points[0] = current;
                    curve.Points[0].z = current.z + depth;
                    curve.Points[1] = curve.Points[0];
                    curve.Points[1].z = current.z + depth + bulge;
                    curve.Points[2] = to;
                    curve.Points[2].z = to.z + depth + bulge;
                    curve.Points[3] = to;
                    curve.Points[3].z = to.z + depth;
                }
                curve.First = made == 0;
                MPoint3 tangent = next.Along;
                MPoint3 reverse = Flat(-tangent.x, -tangent.y);
                if (Dot3(reverse, along) > Dot3(tangent, along)) tangent = reverse;
                curve.Tangent = tangent;
                if (curve.Points.Count == 4 && Curves.Grow(CurveCount + 1, 1000)) {
                    Curves[CurveCount++] = static_cast<WStringCurve&&>(curve);
                    made++;
                } else if (Curves.Count == 0) {
                    CurveCount = 0; // the failed growth took the array's contents with it
                }
                direction.x = to.x - current.x;
                direction.y = to.y - current.y;
                Normalize2(direction);
                current = to;
                out = next.Out;
                index = next.Index;
                along = tangent;
                if (CurveCount >= endMark || CurveCount >= SpaghettiMaxCurves) break;
            }
        }
        if (CurveCount >= SpaghettiMaxCurves) return true;
        Redraw(*this, float(string + 1) / float(Strings));
    }
    return true;
}
