// The track builder. All arithmetic is in 32-bit floats, one rounding per
// operation in the order written: the ground, the pillar feet and the tree
// spots end up in files and shows, and the same seed must give the same
// bytes. The random draws happen in a fixed order, refused trees included.

#include "show/TrackBuilder.h"

#include "eps/EpsWriter.h"
#include "foundation/MRandom.h"
#include "foundation/MTextFile.h"
#include "foundation/Settings.h"
#include "show/TrackClearance.h"

#include <cmath>

TrackSearch TheTrackSearch = TrackSearchGrid;

namespace {

const int32_t SampleStep = 1024; // growth of the sample list
const int32_t PoleStep = 256;    // growth of the pole lists

// ---- Sampling

// The roll's rule, used for positions of lines too: equal ends are taken as
// they are, so a level track stays exactly level.
float Between(float a, float b, float t) {
    if (a == b) return a;
    float u = 1.0f - t;
    float first = u * a;
    float second = t * b;
    return first + second;
}

MPoint3 Between(const MPoint3& a, const MPoint3& b, float t) {
    return MPoint3{Between(a.x, b.x, t), Between(a.y, b.y, t), Between(a.z, b.z, t)};
}

bool AddSample(MVector<WSketchPoint>& samples, int32_t& count, const MPoint3& position,
               const MPoint3& roll, uint8_t kind) {
    if (!samples.Grow(count + 1, SampleStep)) return false;
    WSketchPoint& s = samples[count++];
    s = WSketchPoint();
    s.Position = position;
    s.Roll = roll;
    s.Kind = kind;
    return true;
}

// The steps of a straight piece of length d: one per two units, at least 1,
// at most maxLines (which may leave none).
int32_t LineSteps(float d, int32_t maxLines) {
    if (!(d > 0)) return 1;
    float half = d * 0.5f;
    if (half < 1) return 1;
    if (double(half) >= double(maxLines)) return maxLines;
    return int32_t(half);
}

// The steps of a curve of length l: one per two units, at least 8 unless
// maxLines is lower.
int32_t CurveSampleSteps(float l, int32_t maxLines) {
    if (!(l > 0)) return 8;
    float half = l * 0.5f;
    if (half < 8) return 8;
    if (double(half) >= double(maxLines)) return maxLines;
    return int32_t(half);
}

// ---- Smoothing helpers

MPoint3 MeanOfThree(const MPoint3& a, const MPoint3& b, const MPoint3& c) {
    MPoint3 sum = a + b;
    sum = sum + c;
    return MPoint3{sum.x / 3.0f, sum.y / 3.0f, sum.z / 3.0f};
}

// ---- Pillars and trees

int32_t Sign(float v) {
    if (v > 0) return 1;
    if (v < 0) return -1;
    return 0;
}

float Limit(float v, float low, float high) {
    if (v < low) return low;
    if (v > high) return high;
    return v;
}

bool AddPole(MVector<WPole>& poles, int32_t& count, const MPoint3& a, const MPoint3& b) {
    if (!poles.Grow(count + 1, PoleStep)) return false;
    poles[count].A = a;
    poles[count].B = b;
    count++;
    return true;
}

// ---- Track files

void AppendNumbers(MString& text, const MPoint3& p) {
    text += MString(p.x) + " " + MString(p.y) + " " + MString(p.z);
}

void AppendPole(MString& text, const MPoint3& a, const MPoint3& b) {
    AppendNumbers(text, a);
    text += MString(u" moveto\r\n");
    AppendNumbers(text, b);
    text += MString(u" lineto\r\n0 setgray\r\n2 setlinewidth stroke\r\n");
}

// Neighbouring pillars are written far apart: indices 0, 4, 8..., then 2,
// 6..., then 1, 5..., then 3, 7...
const int32_t PillarPasses[4] = {0, 2, 1, 3};

// A track file of poles. Pillars go in their interleaved order, and with
// foundation each is written as the pole of height 1 at its foot; trunks and
// crowns go in list order.
void WritePoles(const MString& path, const float box[6], const WPole* poles, int32_t count,
                bool pillars, bool foundation) {
    MString text = MakeEpsHeader(false, false, 100, box);
    if (pillars) {
        for (int32_t pass : PillarPasses)
            for (int32_t i = pass; i < count; i += 4) {
                const MPoint3& foot = poles[i].A;
                if (foundation) {
                    MPoint3 low = foot, high = foot;
                    low.y = foot.y - 0.5f;
                    high.y = foot.y + 0.5f;
                    AppendPole(text, low, high);
                } else {
                    AppendPole(text, foot, poles[i].B);
                }
            }
    } else {
        for (int32_t i = 0; i < count; i++)
            AppendPole(text, poles[i].A, poles[i].B);
    }
    text += MakeEpsTrailer();
    WriteTextFile(text, path, Encoding8Bit);
}

} // namespace

// ---- Sampling

// A record at index 0 has nothing before it and gives one sample whatever its
// kind, as a move does.
int32_t SampleTrack(const WSketchPoint* records, int32_t count, int32_t maxLines,
                    MVector<WSketchPoint>& samples) {
    int32_t filled = 0;
    for (int32_t i = 0; i < count; i++) {
        const WSketchPoint& b = records[i];
        if (b.Kind == KindMove || i == 0) {
            if (!AddSample(samples, filled, b.Position, b.Roll, KindMove)) return filled;
            continue;
        }
        const WSketchPoint& a = records[i - 1];
        MPoint3 controls[4] = {a.Position, a.HandleOut, b.HandleIn, b.Position};
        bool line = b.Kind == KindLine;
        float chord = Length3(b.Position - a.Position);
        if (!line && chord > 0) {
            float near = chord * 0.1f;
            line =
                Length3(a.HandleOut - a.Position) < near && Length3(b.HandleIn - b.Position) < near;
        }
        int32_t n =
            line ? LineSteps(chord, maxLines) : CurveSampleSteps(MeasureCubic(controls), maxLines);
        for (int32_t k = 1; k <= n; k++) {
            float t = float(k) / float(n);
            MPoint3 position =
                line ? Between(a.Position, b.Position, t) : BezierPoint(controls, 0, 3, t);
            MPoint3 roll = Between(a.Roll, b.Roll, t);
            if (!AddSample(samples, filled, position, roll, KindLine)) return filled;
        }
    }
    return filled;
}

// ---- Smoothing

// A pass reads only the values before it. A closed curve's first and last
// samples get the same values, so a closed track has no seam; the ends of an
// open curve stay.
void SmoothTrack(WSketchPoint* samples, int32_t count) {
    if (count < 1) return;
    MVector<MPoint3> position, roll;
    if (!position.SetCount(count) || !roll.SetCount(count)) return;
    for (int32_t i = 0; i < count; i++) {
        position[i] = samples[i].Position;
        roll[i] = samples[i].Roll;
    }
    for (int32_t i = 0; i < count; i++) {
        WSketchPoint& s = samples[i];
        if (s.Kind == KindLine) {
            if (i == 0 || i + 1 >= count || samples[i + 1].Kind != KindLine) continue;
            s.Position = MeanOfThree(position[i - 1], position[i], position[i + 1]);
            s.Roll = MeanOfThree(roll[i - 1], roll[i], roll[i + 1]);
        } else if (s.Kind == KindMove) {
            int32_t j = i;
            while (j + 1 < count && samples[j + 1].Kind != KindMove)
                j++;
            if (j == i || !Coincide(position[j], position[i])) continue;
            MPoint3 p = MeanOfThree(position[j - 1], position[i], position[i + 1]);
            MPoint3 r = MeanOfThree(roll[j - 1], roll[i], roll[i + 1]);
            s.Position = p;
            s.Roll = r;
            samples[j].Position = p;
            samples[j].Roll = r;
        }
    }
}

// ---- The whole build

bool BuildTrack(WShowInfo& info, MString structurePath, MString foundationPath, MString trunksPath,
                MString leavesPath) {
    const WSketch* sketch = TheSketch;
    const WSettings* settings = TheSettings;
    if (!sketch || !settings || sketch->PointCount < 1 || !sketch->Points.Data) return false;

    float box[6];
    sketch->GetBounds(box);

    MVector<WSketchPoint> samples;
    int32_t count =
        SampleTrack(sketch->Points.Data, sketch->PointCount, settings->MaxLinesPerCurve, samples);
    for (int32_t pass = 0; pass < settings->Smooth; pass++)
        SmoothTrack(samples.Data, count);

    bool files = !structurePath.IsEmpty() || !foundationPath.IsEmpty() || !trunksPath.IsEmpty() ||
                 !leavesPath.IsEmpty();
    if (files && count > 0) {
        // ---- Ground: the last sample is not looked at.
        float lowest = samples[0].Position.y;
        for (int32_t i = 1; i <= count - 2; i++)
            if (samples[i].Position.y < lowest) lowest = samples[i].Position.y;
        float footLevel = lowest - 5.0f;
        info.Ground = footLevel - 0.5f;

        WTrackClearance clearance;
        StartClearance(clearance, samples.Data, count, TheTrackSearch == TrackSearchGrid);

        // ---- Pillars: one tried every 11 samples and at each top and bottom.
        MVector<WPole> pillars;
        int32_t pillarCount = 0;
        int32_t lastPillar = -10;
        for (int32_t i = 1; i <= count - 2; i++) {
            const MPoint3& top = samples[i].Position;
            MPoint3 track = top - samples[i - 1].Position;
            float rise = samples[i + 1].Position.y - top.y;
            bool nearLast = i <= lastPillar + 10;
            if (nearLast && Sign(track.y) == Sign(rise)) continue;
            MPoint3 up = Cross3(track, samples[i].Roll);
            Normalize3(up);
            if (!(up.y > 0)) continue;
            for (int32_t trial = 0; trial < 100; trial++) {
                float k = (top.y - footLevel) / up.y;
                float leanX = Limit(up.x * k, -20, 20);
                float leanZ = Limit(up.z * k, -20, 20);
                MPoint3 foot{top.x - leanX, top.y - up.y * k, top.z - leanZ};
                if (trial > 0) {
                    float spread = 0.25f * float(trial);
                    foot.x = foot.x + MRandomRange(-spread, spread);
                    foot.z = foot.z + MRandomRange(-spread, spread);
                }
                if (NearTrack(clearance, foot, top, 8, i - 6, i + 6) ||
                    NearPoles(pillars.Data, pillarCount, foot, top, 8))
                    continue;
                if (nearLast)
                    pillars[pillarCount - 1] = WPole{foot, top};
                else if (!AddPole(pillars, pillarCount, foot, top))
                    break;
                lastPillar = i;
                break;
            }
        }

        // ---- Trees, on a rectangle around the sketch whatever TreeType is.
        float halfX = (box[1] - box[0]) * 0.5f;
        float halfZ = (box[5] - box[4]) * 0.5f;
        if (!(halfX > 0)) halfX = 10;
        if (!(halfZ > 0)) halfZ = 10;
        float margin = 2.0f * (halfX > halfZ ? halfX : halfZ);
        float x0 = box[0] - margin, x1 = box[1] + margin;
        float z0 = box[4] - margin, z1 = box[5] + margin;
        float area = (x1 - x0) * (z1 - z0);
        area = area * 0.0005f;
        int32_t tries = 0;
        if (area >= 1000)
            tries = 1000;
        else if (area >= 1)
            tries = int32_t(area);

        MVector<WPole> trunks, crowns;
        int32_t treeCount = 0, crownCount = 0;
        const float ground = info.Ground;
        for (int32_t t = 0; t < tries; t++) {
            float base = float(MRandomInt(10000)) * 15.0f;
            base = base * 0.0001f;
            base = ground + base;
            base = base + 5.0f;
            float height = float(MRandomInt(10000)) * 20.0f;
            height = height * 0.0001f;
            height = height + 20.0f;
            float crownTop = base + height;
            float z = MRandomRange(z0, z1);
            float x = MRandomRange(x0, x1);
            if (t == tries - 1 && treeCount == 0) {
                x = x0;
                z = z0;
            } else {
                MPoint3 foot{x, ground, z}, tip{x, crownTop, z};
                if (NearTrack(clearance, foot, tip, 20, 0, -1) ||
                    NearPoles(pillars.Data, pillarCount, foot, tip, 20))
                    continue;
            }
            MPoint3 foot{x, ground, z}, crownBase{x, base, z}, tip{x, crownTop, z};
            if (!AddPole(trunks, treeCount, foot, crownBase)) break;
            if (!AddPole(crowns, crownCount, crownBase, tip)) break;
            if (settings->TreeType > 0 && info.Trees.Grow(info.TreeCount + 1, PoleStep)) {
                WTreeSpot& spot = info.Trees[info.TreeCount++];
                spot.X = x;
                spot.Y = ground;
                spot.Z = z;
                spot.Height = crownTop - ground;
            }
        }

        // ---- The four files, each only with something in it.
        if (!structurePath.IsEmpty() && pillarCount > 0)
            WritePoles(structurePath, box, pillars.Data, pillarCount, true, false);
        if (!foundationPath.IsEmpty() && pillarCount > 0)
            WritePoles(foundationPath, box, pillars.Data, pillarCount, true, true);
        if (!trunksPath.IsEmpty() && treeCount > 0)
            WritePoles(trunksPath, box, trunks.Data, treeCount, false, false);
        if (!leavesPath.IsEmpty() && crownCount > 0)
            WritePoles(leavesPath, box, crowns.Data, crownCount, false, false);
    }

    info.Length = PathLength(samples.Data, count);
    return info.Length > 0;
}
