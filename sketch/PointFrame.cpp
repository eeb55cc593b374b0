// The frame of a point: the one place where a roll vector becomes an axis.

#include "sketch/WSketch.h"

// Rows X, Y, Z and the translation Position. Z is the direction of travel, X
// the roll made perpendicular to it, Y = Z cross X.
//
// A zero roll is replaced by a stand-by that is never parallel to a non-zero
// tangent, so a point heading straight along an axis still gets a full
// frame. A roll that lies exactly along the tangent is kept as given: the
// frame's X and Y are then zero, and the clean-up, which stores the frame's X
// as the roll, later turns that zero roll into the stand-by.
MMatrix MakePointFrame(const WSketchPoint& record, bool useHandleOut, bool road) {
    MPoint3 f;
    if (useHandleOut) {
        f = record.HandleOut - record.Position;
    } else {
        MPoint3 in = record.Position - record.HandleIn;
        MPoint3 out = record.HandleOut - record.Position;
        Normalize3(in);
        Normalize3(out);
        f = in + out;
    }

    MPoint3 r = record.Roll;
    if (IsNearZero(r.x) && IsNearZero(r.y) && IsNearZero(r.z)) {
        if (f.z == 0)
            r = MPoint3{0, 0, 1};
        else if (f.y == 0)
            r = MPoint3{0, 1, 0};
        else if (f.x == 0)
            r = MPoint3{1, 0, 0};
        else
            r = MPoint3{-f.y, f.x, 0};
    }

    // A road stays level: its tangent and roll lose their climb.
    if (road) {
        f.y = 0;
        r.y = 0;
    }

    Normalize3(r);
    Normalize3(f);
    MPoint3 u = Cross3(f, r);
    Normalize3(u);
    MPoint3 x = Cross3(u, f);

    MMatrix m;
    const MPoint3 rows[4] = {x, u, f, record.Position};
    for (int32_t i = 0; i < 4; i++) {
        m.M[i][0] = rows[i].x;
        m.M[i][1] = rows[i].y;
        m.M[i][2] = rows[i].z;
        m.M[i][3] = i == 3 ? 1.0f : 0.0f;
    }
    UpdateIdentity(m);
    return m;
}
