#pragma once
// Helpers shared by the element tests: a sketch and element object per test,
// a message script that no element may ever use, and the comparison of
// appended records with local values worked out by hand.
//
// On an empty sketch the start point is (0, 0, 0) heading along +X with the
// roll (0, 0, -1), so the frame of an element added to it has the rows
// X = (0, 0, -1), Y = (0, 1, 0), Z = (1, 0, 0) and no translation: a local
// (x, y, z) lands exactly on the world point (z, y, -x), since every product
// with 0 or 1 and every sum with 0 is exact in floats. Its normal matrix is
// the same permutation, so rolls map the same way. ToWorld writes that out.

#include "SketchTestSupport.h"

#include "elements/WElement.h"
#include "foundation/Platform.h"
#include "shell/Shell.h"
#include "sketch/WUndoRing.h"
#include "view/WView.h"

#include <cmath>
#include <cstdio>

inline MPoint3 ToWorld(const MPoint3& local) {
    return MPoint3{local.z, local.y, -local.x};
}

// Equal as floats, component by component (so 0 equals -0).
inline ::testing::AssertionResult SameVector(const MPoint3& got, const MPoint3& want) {
    if (got.x == want.x && got.y == want.y && got.z == want.z) return ::testing::AssertionSuccess();
    char text[200];
    std::snprintf(text, sizeof text, "got (%.9g, %.9g, %.9g), want (%.9g, %.9g, %.9g)",
                  double(got.x), double(got.y), double(got.z), double(want.x), double(want.y),
                  double(want.z));
    return ::testing::AssertionFailure() << text;
}

// Within tolerance, for values checked against figures worked out on paper.
inline ::testing::AssertionResult NearVector(const MPoint3& got, const MPoint3& want,
                                             double tolerance) {
    if (std::fabs(double(got.x) - double(want.x)) <= tolerance &&
        std::fabs(double(got.y) - double(want.y)) <= tolerance &&
        std::fabs(double(got.z) - double(want.z)) <= tolerance)
        return ::testing::AssertionSuccess();
    char text[200];
    std::snprintf(text, sizeof text, "got (%.9g, %.9g, %.9g), want about (%.9g, %.9g, %.9g)",
                  double(got.x), double(got.y), double(got.z), double(want.x), double(want.y),
                  double(want.z));
    return ::testing::AssertionFailure() << text;
}

class ElementTest : public ::testing::Test {
  protected:
    MString Texts[8];
    MessageIcon Icons[8] = {};
    MessageScript Script;

    void SetUp() override {
        Script.Texts = Texts;
        InstallModelHooks(); // the shell tells the windows of the model's changes
        Script.Icons = Icons;
        Script.Capacity = 8;
        TheMessageScript = &Script;
        if (TheView) DestroyView();
        if (TheSketch) DestroySketch();
        ASSERT_NE(CreateSketch(), nullptr);
        if (!TheElement) {
            ASSERT_NE(CreateElement(), nullptr);
        }
        TheFileName = MString();
        TheMode = ModeDraw;
    }
    void TearDown() override {
        // Elements never speak: invalid parameters simply add nothing.
        EXPECT_EQ(Script.Count, 0);
        TheMessageScript = nullptr;
        if (TheView) DestroyView();
        DestroyElement();
        DestroySketch();
        TheMode = ModeDraw;
    }

    void Add(uint32_t id, float p1 = 0, float p2 = 0, float p3 = 0, float p4 = 0) {
        TheElement->Add(id, p1, p2, p3, p4);
    }
    int32_t Count() const { return TheSketch->PointCount; }
    const WSketchPoint& Pt(int32_t index) const { return TheSketch->Points[index]; }

    // The start point of an empty sketch, after an element whose start
    // handle is the local S has been joined to it.
    ::testing::AssertionResult StartPointWith(const MPoint3& s) const {
        const WSketchPoint& p = Pt(0);
        if (!SameVector(p.Position, P3(0, 0, 0)))
            return ::testing::AssertionFailure() << "start Position";
        if (!SameVector(p.HandleIn, P3(-10, 0, 0)))
            return ::testing::AssertionFailure() << "start HandleIn";
        ::testing::AssertionResult out = SameVector(p.HandleOut, ToWorld(s));
        if (!out) return ::testing::AssertionFailure() << "start HandleOut: " << out.message();
        if (!SameVector(p.Roll, P3(0, 0, -1))) return ::testing::AssertionFailure() << "start Roll";
        if (p.Smooth != 0 || p.Kind != KindMove)
            return ::testing::AssertionFailure() << "start Smooth/Kind";
        return ::testing::AssertionSuccess();
    }

    // Record index against a local point with both handles given.
    ::testing::AssertionResult Local(int32_t index, const MPoint3& position,
                                     const MPoint3& handleIn, const MPoint3& handleOut,
                                     const MPoint3& roll) const {
        if (index >= Count()) return ::testing::AssertionFailure() << "no record " << index;
        const WSketchPoint& p = Pt(index);
        const char* names[4] = {"Position", "HandleIn", "HandleOut", "Roll"};
        const MPoint3* got[4] = {&p.Position, &p.HandleIn, &p.HandleOut, &p.Roll};
        const MPoint3 want[4] = {ToWorld(position), ToWorld(handleIn), ToWorld(handleOut),
                                 ToWorld(roll)};
        for (int k = 0; k < 4; k++) {
            ::testing::AssertionResult same = SameVector(*got[k], want[k]);
            if (!same)
                return ::testing::AssertionFailure()
                       << "record " << index << " " << names[k] << ": " << same.message();
        }
        if (p.Smooth != 1 || p.Kind != KindCurve)
            return ::testing::AssertionFailure() << "record " << index << " Smooth/Kind";
        return ::testing::AssertionSuccess();
    }

    // The usual case: HandleIn P - h, HandleOut P + h.
    ::testing::AssertionResult Local(int32_t index, const MPoint3& position, const MPoint3& h,
                                     const MPoint3& roll) const {
        return Local(index, position, position - h, position + h, roll);
    }
};

// Single-precision helpers as the element formulas use them, written out
// plainly: the double factor 4/3 and the whole product in double, rounded once.
inline float Handle43(float radius, float tangent) {
    return float(double(radius) * 1.3333333333333333 * double(tangent));
}
inline MPoint3 Normalized(MPoint3 v) {
    float squared = v.x * v.x + v.y * v.y + v.z * v.z;
    if (squared == 0 || squared == 1) return v;
    float length = std::sqrt(squared);
    return MPoint3{v.x / length, v.y / length, v.z / length};
}
// The roll of level track: unit of h as (z, 0, -x).
inline MPoint3 LevelRoll(const MPoint3& h) {
    MPoint3 n = Normalized(h);
    return MPoint3{n.z, 0, -n.x};
}
