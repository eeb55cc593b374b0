#pragma once
// The Spaghetti tool: a picture made into a mask and a cloud of edge points,
// and random strings of curves that bounce across its solid part from edge to
// opposite edge, alternately in front of and behind the picture plane. The
// generator, the project file and the canvas drawing are portable; the dialog
// (SpaghettiDialog_win.cpp) reaches the generator only through the hooks
// below, so that the generator runs without any dialog.

#include "foundation/MString.h"
#include "foundation/MVector.h"
#include "foundation/Settings.h"
#include "view/Geometry.h"

#include <cstdint>

struct MPicture;
struct MDrawSurface;
struct WTracer;

// A sample of a traced outline.
struct WShapePoint {
    float X = 0, Y = 0;           // picture pixels, y downwards
    float OutX = 0, OutY = 0;     // unit vector towards the transparent side
    float AlongX = 0, AlongY = 0; // unit tangent of the outline
    bool Used = false;            // taken by a string while collision detection is on
};

// One curve of a string: start, first control, second control, end. x and y
// are picture pixels, z is EPS units.
struct WStringCurve {
    bool First = false;      // the curve begins a string
    MVector<MPoint3> Points; // exactly four
    MPoint3 Tangent;         // the edge's tangent at the end point, z always 0
};

// What FindNextPoint gives for an accepted candidate.
struct WNextPoint {
    MPoint3 Position; // the offset point in front of the edge, z 0
    MPoint3 Out;      // the shape point's Out, z 0
    MPoint3 Along;    // the shape point's Along, z 0
    int32_t Index = -1;
};

// Growth limits of a run.
enum {
    SpaghettiPicks = 1000,      // picks for an unused shape point
    SpaghettiAttempts = 1000,   // attempts per next point
    SpaghettiRounds = 1000,     // growing rounds per string
    SpaghettiMaxCurves = 10000, // curves in all
};

struct WSpaghetti {
    void* Dialog = nullptr;      // the open dialog window, null when closed
    WRect CanvasRect;            // dialog pixels
    WRect PictureRect;           // where the picture lies on the canvas
    float Zoom = 1;              // canvas pixels per picture pixel
    float UnitsPerPixel = 1;     // EPS units per picture pixel: 250 / mask height
    MPicture* Picture = nullptr; // owned: the mask, in the picture's own format
    WTracer* Tracer = nullptr;   // owned: the outlines
    int32_t ShapePointCount = 0;
    MVector<WShapePoint> ShapePoints; // growth step 1000
    int32_t CurveCount = 0;
    MVector<WStringCurve> Curves; // growth step 1000
    MString PathBitmap;           // full path of the picture file

    // The parameters; they survive a closed dialog.
    int32_t Strings = 20;                                // 1 to 100
    int32_t CurvesPerString = 20;                        // 1 to 1000
    float Radius = 1;                                    // 0.5 to 5, EPS units
    float MarginMin = 1, MarginMax = 2;                  // 0 to 10, multiples of the radius
    float CurveLengthMin = 0.05f, CurveLengthMax = 0.5f; // 0.01 to 1, of the diagonal
    int32_t ShapeJumps = 0;                              // 0 to 100
    float Depth = 6;                                     // 0 to 100, EPS units
    float BezierMin = 0.2f, BezierMax = 0.3f;            // 0.1 to 10, of each curve's length
    bool CollisionDetection = false;
    int32_t Shape = 2;     // index in the Shape dropdown
    int32_t Texture = 3;   // index in the Texture dropdown
    int32_t Particle = 0;  // index in the Particle dropdown
    int32_t Animation = 0; // index in the Animation dropdown

    WSpaghetti() = default;
    WSpaghetti(const WSpaghetti&) = delete;
    WSpaghetti& operator=(const WSpaghetti&) = delete;
    ~WSpaghetti() { ClearState(); }

    // Releases picture, outlines, shape points and curves; the parameters and
    // PathBitmap stay.
    void ClearState();
    // Loads a picture and builds mask, outlines and shape points. An empty
    // path asks for a picture first; a cancelled prompt changes nothing.
    // True when at least one shape point exists.
    bool PreparePicture(MString path);
    // The GENERATE button: replaces Curves by a new run. False when no
    // picture is ready.
    bool Generate();
    // The next point of a string from current, or false after the attempts
    // run out or while Escape is down.
    bool FindNextPoint(const MPoint3& current, const MPoint3& previousOut,
                       const MPoint3& previousAlong, int32_t previousIndex,
                       const MPoint2& previousDirection, float minimumLength, float maximumLength,
                       WNextPoint& next);
    // Uses up a shape point and its neighbours within the radius; nothing
    // with collision detection off.
    void MarkUsed(int32_t index);

    // Appends the samples of one outline segment (corners in picture pixels)
    // as shape points, each facing its transparent side.
    void SampleSegment(MPoint2 start, MPoint2 end);
    // The alpha of mask pixel (x, y): outside the mask 0, a pixel the
    // accessor cannot address 255.
    int32_t MaskAlpha(int32_t x, int32_t y) const;
    // Zoom and PictureRect for the mask on the canvas.
    void FitPicture();

    // The project file: the whole text, and its writing.
    MString ProjectText() const;
    bool WriteEps(const MString& path) const;
    // The Open... and Save as... buttons.
    void OpenProject();
    void SaveProject();
};

extern WSpaghetti TheSpaghetti;

// The colours and the Grid colour of the mask come from the settings; a
// process without settings (a test, a benchmark) takes their defaults.
const WSettings& SettingsOrDefaults();

// Puts the pairs in order and clamps every parameter to its range.
void CleanParameters(WSpaghetti& spaghetti);

// Reads the tag lines of a project into the parameters, key by key, and
// returns how many tag lines there were. Everything else is ignored.
struct MTextFile;
int32_t ReadProjectParameters(MTextFile& text, WSpaghetti& spaghetti);
// The same from bytes in memory.
int32_t ReadProjectMemory(const void* bytes, int32_t size, WSpaghetti& spaghetti);
// The first token of every parameter line of a project.
inline constexpr char16_t SpaghettiTag[] = u"%%QuillmereSpaghettiTool";
// Fewer tag lines than this refuse a file.
enum { SpaghettiLeastTagLines = 17 };

// The file name of a path: behind its last "/", "\" or ":".
MString SpaghettiFileName(const MString& path);

// The canvas: drawn on a given surface, and on a surface made for this one
// drawing over CanvasRect of a device context (null: the dialog's own).
void DrawSpaghettiCanvas(MDrawSurface& surface, const WSpaghetti& spaghetti, float progress);
void DrawCanvas(WSpaghetti& spaghetti, void* dc, float progress);

// What the generator needs from its surroundings. The dialog fills the field
// hooks while it is open; tests fill the seams.
struct WSpaghettiHooks {
    void (*ReadFields)(WSpaghetti&) = nullptr;             // the fields into the parameters
    void (*WriteFields)(const WSpaghetti&) = nullptr;      // the parameters into the fields
    void (*Redraw)(WSpaghetti&, float progress) = nullptr; // the canvas with a progress bar
    bool (*EscapeDown)() = nullptr; // null: the asynchronous key state of Escape
    uint32_t (*Seed)() = nullptr;   // null: the millisecond clock plus one rand()
};
extern WSpaghettiHooks TheSpaghettiHooks;
