#pragma once
// Helpers shared by the track builder's and the show writer's tests: a short
// hand-built ride whose pillars can be worked out on paper, and the tree
// scatter of its rectangle redone from the random generator alone.

#include "SketchTestSupport.h"

#include "eps/EpsWriter.h"
#include "foundation/MRandom.h"
#include "shell/WSettings.h"

#include <cmath>
#include <string>
#include <vector>

// The ride: a level straight from (0, 10, 0) to (40, 10, 0), heading +X with
// its roll (0, 0, -1), so that up is +Y. Sampled every 2 units with Smooth 0,
// its pillars stand at samples 1 and 12: (2, 5, 0) to (2, 10, 0) and
// (24, 5, 0) to (24, 10, 0), each found at its first trial. Ground is 4.5.
inline void FillStraightRide(WSketch& sketch) {
    WSketchPoint start = Record(0, 10, 0, KindMove);
    WSketchPoint end = Record(40, 10, 0, KindLine);
    start.Roll = end.Roll = P3(0, 0, -1);
    Fill(sketch, {start, end});
}

// Its tree rectangle: extent x 0 to 40 (half 20), z 0 to 0 (half counted as
// 10), grown by 2 * 20 on each side: x -40 to 80, z -40 to 40; 4 tries.
const float RideX0 = -40, RideX1 = 80, RideZ0 = -40, RideZ1 = 40;
const int32_t RideTries = 4;

struct ExpectedTree {
    float X, Z, Base, Top; // crown base and crown top
};

// The horizontal distance from (x, z) to the ride's line, which is what
// decides a tree here: every tree pole reaches from 4.5 past the track's 10.
inline double DistanceToRide(float x, float z) {
    double dx = x < 0 ? -double(x) : (x > 40 ? double(x) - 40 : 0);
    return std::sqrt(dx * dx + double(z) * double(z));
}

// The trees of the ride for a seed, drawn as the scatter draws them: for each
// try crown base, height, z and x; a try within 20 of the track is refused,
// and the last try stands in the corner when nothing was planted before.
// Leaves MRandomSeed where the scatter leaves it.
inline std::vector<ExpectedTree> RideTrees(uint32_t seed, float ground) {
    MRandomSeed = seed;
    std::vector<ExpectedTree> trees;
    for (int32_t t = 0; t < RideTries; t++) {
        float base = float(MRandomInt(10000)) * 15.0f;
        base = base * 0.0001f;
        base = ground + base;
        base = base + 5.0f;
        float height = float(MRandomInt(10000)) * 20.0f;
        height = height * 0.0001f;
        height = height + 20.0f;
        float top = base + height;
        float z = MRandomRange(RideZ0, RideZ1);
        float x = MRandomRange(RideX0, RideX1);
        if (t == RideTries - 1 && trees.empty()) {
            trees.push_back({RideX0, RideZ0, base, top});
            continue;
        }
        if (DistanceToRide(x, z) < 20) continue;
        trees.push_back({x, z, base, top});
    }
    return trees;
}

inline std::string Narrowed(const MString& text) {
    std::string out;
    for (int32_t i = 0; i < text.Length; i++)
        out += char(text.Text[i]);
    return out;
}

inline std::string Num(float v) {
    return Narrowed(MString(v));
}

// The four lines of a pole in a track file.
inline std::string PoleLines(float ax, float ay, float az, float bx, float by, float bz) {
    return Num(ax) + " " + Num(ay) + " " + Num(az) + " moveto\r\n" + Num(bx) + " " + Num(by) + " " +
           Num(bz) + " lineto\r\n0 setgray\r\n2 setlinewidth stroke\r\n";
}

// A track file: header with the ride's extent, the poles, the trailer.
inline std::string TrackFile(const std::string& poles) {
    const float box[6] = {0, 40, 10, 10, 0, 0};
    return Narrowed(MakeEpsHeader(false, false, 100, box)) + poles + Narrowed(MakeEpsTrailer());
}
