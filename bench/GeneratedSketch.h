#pragma once
// A large sketch made by rule, for the frame benchmark and the tests that pin
// down what a frame of such a sketch draws: closed outlines of 20 records
// (a move, then curves and lines by turns, the last record back on the first)
// laid out on a grid like the letters of a traced page, 200 units wide. The
// same count gives the same records, bit for bit, on every machine.

#include "sketch/WSketch.h"

#include <cmath>
#include <cstdint>

// count records in all; the last outline may be cut short.
inline void MakeGeneratedSketch(WSketch& sketch, int32_t count) {
    const int32_t perOutline = 20, columns = 25;
    if (count < 0) count = 0;
    sketch.Points.SetCount(count + 1);
    sketch.PointCount = count;
    sketch.Current = -1;
    for (int32_t i = 0; i < count; i++) {
        int32_t outline = i / perOutline, k = i % perOutline;
        float cx = float(outline % columns) * 8 - 96;
        float cy = 80 - float(outline / columns) * 8;
        // Outlines differ a little in size and depth, so no two frames' lines coincide.
        float radius = 2.5f + float(outline % 7) * 0.25f;
        float z = float(outline % 5) - 2;
        double angle = 6.283185307179586 * double(k % (perOutline - 1)) / (perOutline - 1);
        double step = 6.283185307179586 / (perOutline - 1) / 3;
        float c = float(std::cos(angle)), s = float(std::sin(angle));
        WSketchPoint& p = sketch.Points[i];
        p.Position = MPoint3{cx + radius * c, cy + radius * s, z};
        // Handles along the tangent, a third of a step away.
        float h = float(double(radius) * step);
        p.HandleIn = MPoint3{p.Position.x + h * s, p.Position.y - h * c, z};
        p.HandleOut = MPoint3{p.Position.x - h * s, p.Position.y + h * c, z};
        p.Roll = MPoint3{c, s, 0};
        p.Smooth = uint8_t(k % 3 != 0);
        p.Kind = k == 0 ? KindMove : (k % 2 == 1 ? KindCurve : KindLine);
    }
}
