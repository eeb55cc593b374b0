#pragma once
// Helpers shared by the sketch's tests: building sketches record by record,
// comparing records bit for bit and checking the invariants of the array.

#include "foundation/MString.h"
#include "sketch/WSketch.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

inline std::u16string Text(const MString& text) {
    return std::u16string(text.Chars());
}

inline MPoint3 P3(float x, float y, float z) {
    return MPoint3{x, y, z};
}

// A record with both handles on its position, roll (0, 0, 1), smooth.
inline WSketchPoint Record(float x, float y, float z, uint8_t kind) {
    WSketchPoint r;
    r.Position = P3(x, y, z);
    r.HandleIn = r.Position;
    r.HandleOut = r.Position;
    r.Roll = P3(0, 0, 1);
    r.Smooth = 1;
    r.Kind = kind;
    return r;
}

inline bool SameBits(const MPoint3& a, const MPoint3& b) {
    return std::memcmp(&a.x, &b.x, sizeof(float)) == 0 &&
           std::memcmp(&a.y, &b.y, sizeof(float)) == 0 &&
           std::memcmp(&a.z, &b.z, sizeof(float)) == 0;
}

inline bool SameRecordBits(const WSketchPoint& a, const WSketchPoint& b) {
    return SameBits(a.Position, b.Position) && SameBits(a.HandleIn, b.HandleIn) &&
           SameBits(a.HandleOut, b.HandleOut) && SameBits(a.Roll, b.Roll) && a.Smooth == b.Smooth &&
           a.Kind == b.Kind;
}

// Fills the sketch with exactly these records; the capacity equals the count
// unless a larger one is asked for.
inline void Fill(WSketch& sketch, const std::vector<WSketchPoint>& records, int32_t capacity = 0) {
    int32_t count = int32_t(records.size());
    sketch.Points.SetCount(0);
    sketch.Points.SetCount(capacity > count ? capacity : count);
    for (int32_t i = 0; i < count; i++)
        sketch.Points[i] = records[size_t(i)];
    sketch.PointCount = count;
}

inline std::vector<WSketchPoint> Records(const WSketch& sketch) {
    std::vector<WSketchPoint> out;
    for (int32_t i = 0; i < sketch.PointCount; i++)
        out.push_back(sketch.Points[i]);
    return out;
}

// The invariants every operation of the sketch keeps: record 0 opens a curve,
// the fill level lies within the capacity, curves are delimited by KindMove
// alone, only curve ends have twins, twins point at each other and hold the
// same point apart from their Kind.
inline ::testing::AssertionResult CheckInvariants(const WSketch& s) {
    if (s.PointCount < 0 || s.PointCount > s.Points.Count)
        return ::testing::AssertionFailure()
               << "PointCount " << s.PointCount << " capacity " << s.Points.Count;
    if (s.Current < -1 || s.Current >= (s.PointCount > 0 ? s.PointCount : 1))
        return ::testing::AssertionFailure() << "Current " << s.Current;
    if (s.PointCount == 0) return ::testing::AssertionSuccess();
    if (s.Points[0].Kind != KindMove)
        return ::testing::AssertionFailure() << "record 0 is not KindMove";
    int32_t last = s.PointCount - 1;
    for (int32_t i = 0; i < s.PointCount; i++) {
        const WSketchPoint& p = s.Points[i];
        if (p.Kind > KindCurve) return ::testing::AssertionFailure() << "bad Kind at " << i;
        int32_t start = s.CurveStart(i), end = s.CurveEnd(i);
        if (start < 0 || start > i || end < i || end > last)
            return ::testing::AssertionFailure()
                   << "curve of " << i << " is " << start << ".." << end;
        if (s.Points[start].Kind != KindMove)
            return ::testing::AssertionFailure() << "curve of " << i << " opens without KindMove";
        for (int32_t k = start + 1; k <= end; k++)
            if (s.Points[k].Kind == KindMove)
                return ::testing::AssertionFailure() << "KindMove inside curve at " << k;
        if (end != last && s.Points[end + 1].Kind != KindMove)
            return ::testing::AssertionFailure() << "curve of " << i << " ends early";
        int32_t twin = s.FindTwin(i);
        if (twin < 0) {
            bool closed = end > start && Coincide(s.Points[start].Position, s.Points[end].Position);
            if (closed && (i == start || i == end))
                return ::testing::AssertionFailure() << "closed curve end " << i << " lacks twin";
            continue;
        }
        if (i != start && i != end)
            return ::testing::AssertionFailure() << "inner record " << i << " has a twin";
        if (twin != (i == start ? end : start))
            return ::testing::AssertionFailure() << "twin of " << i << " is " << twin;
        if (s.FindTwin(twin) != i)
            return ::testing::AssertionFailure() << "twin of " << twin << " is not " << i;
        const WSketchPoint& q = s.Points[twin];
        if (!SameBits(p.Position, q.Position) || !SameBits(p.HandleIn, q.HandleIn) ||
            !SameBits(p.HandleOut, q.HandleOut) || !SameBits(p.Roll, q.Roll) ||
            p.Smooth != q.Smooth)
            return ::testing::AssertionFailure() << "twins " << i << " and " << twin << " differ";
    }
    return ::testing::AssertionSuccess();
}
