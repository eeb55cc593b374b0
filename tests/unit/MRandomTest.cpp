// MRandom: the generator's sequence, the small-range rules and the scale of
// 10000 of the large ranges.

#include "foundation/MRandom.h"

#include <gtest/gtest.h>

#include <set>

namespace {

// The generator worked out apart: 64-bit arithmetic cut to 32 bits.
struct Reference {
    uint64_t State;
    int32_t Next() {
        State = (State * 214013ull + 2531011ull) % 4294967296ull;
        return int32_t((State / 65536ull) % 32768ull);
    }
};

} // namespace

TEST(MRandom, FirstDrawFromZero) {
    MRandomSeed = 0;
    EXPECT_EQ(MRandomInt(32766), 38);
    EXPECT_EQ(MRandomSeed, 2531011u);
}

TEST(MRandom, SequenceFollowsTheFormula) {
    MRandomSeed = 0;
    Reference reference{0};
    for (int i = 0; i < 50; i++) {
        int32_t expected = reference.Next() % 32766;
        ASSERT_EQ(MRandomInt(32766), expected) << "draw " << i;
        ASSERT_EQ(MRandomSeed, uint32_t(reference.State));
    }
    MRandomSeed = 123456789u;
    reference.State = 123456789u;
    for (int i = 0; i < 50; i++) {
        int32_t expected = reference.Next() % 10;
        ASSERT_EQ(MRandomInt(10), expected) << "draw " << i;
    }
}

TEST(MRandom, KnownFirstValues) {
    // 38, 7719, 21238, 2437, 8855 are the 15-bit draws from state 0.
    MRandomSeed = 0;
    EXPECT_EQ(MRandomInt(32766), 38);
    EXPECT_EQ(MRandomInt(32766), 7719);
    EXPECT_EQ(MRandomInt(32766), 21238);
    EXPECT_EQ(MRandomInt(32766), 2437);
    EXPECT_EQ(MRandomInt(32766), 8855);
}

TEST(MRandom, IntBelowTwoIsZeroButAdvances) {
    for (int32_t n : {1, 0, -5}) {
        MRandomSeed = 0;
        EXPECT_EQ(MRandomInt(n), 0);
        EXPECT_EQ(MRandomSeed, 2531011u) << n;
    }
}

TEST(MRandom, RangeOfEqualBoundsReturnsBoundAndAdvances) {
    MRandomSeed = 0;
    EXPECT_EQ(MRandomRange(5.0f, 5.0f), 5.0f);
    EXPECT_EQ(MRandomSeed, 2531011u);
}

TEST(MRandom, RangeTakesBoundsInEitherOrder) {
    for (uint32_t seed : {0u, 1u, 99u, 0xDEADBEEFu}) {
        MRandomSeed = seed;
        float reversed = MRandomRange(7.0f, 2.0f);
        uint32_t after = MRandomSeed;
        MRandomSeed = seed;
        float ordered = MRandomRange(2.0f, 7.0f);
        EXPECT_EQ(reversed, ordered);
        EXPECT_EQ(after, MRandomSeed);
        EXPECT_GE(ordered, 2.0f);
        EXPECT_LT(ordered, 7.0f);
    }
}

TEST(MRandom, RangeValueOnTheScaleOfTenThousand) {
    Reference reference{4242};
    MRandomSeed = 4242;
    for (int i = 0; i < 100; i++) {
        float step = float(reference.Next() % 10000);
        float scaled = step * (3.0f - -1.0f);
        scaled = scaled * 0.0001f;
        float expected = scaled + -1.0f;
        ASSERT_EQ(MRandomRange(-1.0f, 3.0f), expected);
    }
}

TEST(MRandom, RangeNeverReachesUpperBound) {
    MRandomSeed = 1;
    for (int i = 0; i < 100000; i++) {
        float value = MRandomRange(0.0f, 1.0f);
        ASSERT_GE(value, 0.0f);
        ASSERT_LT(value, 1.0f);
    }
}

TEST(MRandom, LargeRangeScalesADrawOfTenThousand) {
    Reference reference{77};
    MRandomSeed = 77;
    for (int32_t n : {32767, 40000, 100000, 2000000000}) {
        for (int i = 0; i < 50; i++) {
            float scaled = float(reference.Next() % 10000) * float(n);
            scaled = scaled * 0.0001f;
            ASSERT_EQ(MRandomInt(n), int32_t(scaled)) << n;
        }
    }
}

TEST(MRandom, LargeRangeGivesOnlyTenThousandValues) {
    MRandomSeed = 5;
    std::set<int32_t> seen;
    for (int i = 0; i < 300000; i++) {
        int32_t value = MRandomInt(100000);
        ASSERT_GE(value, 0);
        ASSERT_LT(value, 100000);
        seen.insert(value);
    }
    // Every value is one of the 10000 steps k * n * 0.0001 in floats.
    std::set<int32_t> steps;
    for (int32_t k = 0; k < 10000; k++) {
        float scaled = float(k) * 100000.0f;
        scaled = scaled * 0.0001f;
        steps.insert(int32_t(scaled));
    }
    EXPECT_EQ(steps.size(), 10000u);
    for (int32_t value : seen)
        ASSERT_EQ(steps.count(value), 1u) << value;
    EXPECT_GT(seen.size(), 9900u);
    // So nine in ten values of the range never come out.
    int32_t missing = 0;
    for (int32_t value = 0; value < 100000; value++)
        missing += seen.count(value) == 0;
    EXPECT_GE(missing, 90000);
    // Just below the threshold every residue is reachable.
    MRandomSeed = 5;
    std::set<int32_t> small;
    for (int i = 0; i < 300000; i++)
        small.insert(MRandomInt(32766) % 10);
    EXPECT_EQ(small.size(), 10u);
}
