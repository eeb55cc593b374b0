// MVector: Count is the capacity; SetCount keeps what fits and constructs
// the rest.

#include "foundation/MVector.h"

#include "foundation/MString.h"
#include "foundation/Platform.h"

#include <gtest/gtest.h>

namespace {

struct Marked {
    int32_t Value = 7;
    float Weight = 0.5f;
};

struct Huge {
    char Bytes[1 << 20];
};

} // namespace

TEST(MVector, StartsEmpty) {
    MVector<int32_t> v;
    EXPECT_EQ(v.Count, 0);
    EXPECT_EQ(v.Data, nullptr);
}

TEST(MVector, SetCountToSameCountKeepsBlock) {
    MVector<int32_t> v;
    ASSERT_TRUE(v.SetCount(4));
    int32_t* block = v.Data;
    v[2] = 99;
    EXPECT_TRUE(v.SetCount(4));
    EXPECT_EQ(v.Data, block);
    EXPECT_EQ(v[2], 99);
    MVector<int32_t> empty;
    EXPECT_TRUE(empty.SetCount(0));
    EXPECT_EQ(empty.Data, nullptr);
}

TEST(MVector, SetCountZeroOrNegativeFrees) {
    MVector<int32_t> v;
    ASSERT_TRUE(v.SetCount(10));
    EXPECT_TRUE(v.SetCount(0));
    EXPECT_EQ(v.Count, 0);
    EXPECT_EQ(v.Data, nullptr);
    ASSERT_TRUE(v.SetCount(10));
    EXPECT_TRUE(v.SetCount(-5));
    EXPECT_EQ(v.Count, 0);
    EXPECT_EQ(v.Data, nullptr);
}

TEST(MVector, GrowthKeepsElementsAndZeroesNewOnes) {
    MVector<int32_t> v;
    ASSERT_TRUE(v.SetCount(3));
    for (int32_t i = 0; i < 3; i++)
        EXPECT_EQ(v[i], 0);
    v[0] = 10;
    v[1] = 11;
    v[2] = 12;
    ASSERT_TRUE(v.SetCount(1000));
    EXPECT_EQ(v.Count, 1000);
    EXPECT_EQ(v[0], 10);
    EXPECT_EQ(v[1], 11);
    EXPECT_EQ(v[2], 12);
    for (int32_t i = 3; i < 1000; i++)
        ASSERT_EQ(v[i], 0) << i;
}

TEST(MVector, ShrinkKeepsFirstElements) {
    MVector<int32_t> v;
    ASSERT_TRUE(v.SetCount(10));
    for (int32_t i = 0; i < 10; i++)
        v[i] = i * i;
    ASSERT_TRUE(v.SetCount(4));
    EXPECT_EQ(v.Count, 4);
    for (int32_t i = 0; i < 4; i++)
        EXPECT_EQ(v[i], i * i);
    ASSERT_TRUE(v.SetCount(6)); // regrown: the lost ones come back constructed
    EXPECT_EQ(v[3], 9);
    EXPECT_EQ(v[4], 0);
    EXPECT_EQ(v[5], 0);
}

TEST(MVector, NewElementsAreDefaultConstructed) {
    MVector<Marked> v;
    ASSERT_TRUE(v.SetCount(2));
    v[0].Value = 1;
    ASSERT_TRUE(v.SetCount(5));
    EXPECT_EQ(v[0].Value, 1);
    for (int32_t i = 1; i < 5; i++) {
        EXPECT_EQ(v[i].Value, 7);
        EXPECT_EQ(v[i].Weight, 0.5f);
    }
    MVector<MString> texts;
    ASSERT_TRUE(texts.SetCount(2));
    texts[0] = u"kept";
    ASSERT_TRUE(texts.SetCount(3));
    EXPECT_TRUE(texts[0] == MString(u"kept"));
    EXPECT_EQ(texts[2].Text, nullptr);
}

TEST(MVector, GrowUsesTheLargerOfStepAndNeed) {
    MVector<char16_t> v;
    ASSERT_TRUE(v.Grow(1, 100));
    EXPECT_EQ(v.Count, 100);
    ASSERT_TRUE(v.Grow(100, 100)); // already room
    EXPECT_EQ(v.Count, 100);
    ASSERT_TRUE(v.Grow(101, 100));
    EXPECT_EQ(v.Count, 200);
    ASSERT_TRUE(v.Grow(750, 100));
    EXPECT_EQ(v.Count, 750);
}

TEST(MVector, CopyIsDeep) {
    MVector<int32_t> a;
    ASSERT_TRUE(a.SetCount(3));
    a[1] = 5;
    MVector<int32_t> b(a);
    EXPECT_EQ(b.Count, 3);
    EXPECT_NE(b.Data, a.Data);
    EXPECT_EQ(b[1], 5);
    b[1] = 6;
    EXPECT_EQ(a[1], 5);
    MVector<int32_t> c;
    c = MVector<int32_t>();
    EXPECT_EQ(c.Count, 0);
}

TEST(MVector, FailedGrowthReportsAndLosesContents) {
    MVector<Huge> v;
    ASSERT_TRUE(v.SetCount(1));
    v[0].Bytes[0] = 1;
    StartDebugCapture();
    bool grown = v.SetCount(1 << 30); // a pebibyte
    MString said = StopDebugCapture();
    EXPECT_FALSE(grown);
    EXPECT_EQ(v.Count, 0);
    EXPECT_EQ(v.Data, nullptr);
    EXPECT_TRUE(said == Narrow("MVector: out of memory exception\n"));
}
