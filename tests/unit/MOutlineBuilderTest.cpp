// The outline builder: shared sides cancel, links, the repairs with their
// debug texts, straight runs, corners and the checks by their codes.

#include "eps/MOutlineBuilder.h"

#include "foundation/MString.h"
#include "foundation/Platform.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::u16string Text(const MString& text) {
    return std::u16string(text.Chars());
}

MPoint2 P(float x, float y) {
    return MPoint2{x, y};
}

// Follows Next from the loop's first edge and lists the starts.
std::vector<std::pair<float, float>> LoopStarts(const MOutlineBuilder& builder, int loop) {
    std::vector<std::pair<float, float>> starts;
    int first = builder.Loops[loop].FirstEdge, e = first;
    do {
        starts.push_back({builder.Edges[e].Start.x, builder.Edges[e].Start.y});
        e = builder.Edges[e].Next;
    } while (e != first && starts.size() < 100);
    return starts;
}

} // namespace

TEST(MOutlineBuilderTest, SquareHasFourEdgesInsideOnTheLeft) {
    MOutlineBuilder builder;
    ASSERT_TRUE(builder.AddSquare(2, 3, 5, 6));
    ASSERT_EQ(builder.EdgeCount, 4);
    EXPECT_EQ(builder.Edges[0].Start.x, 2);
    EXPECT_EQ(builder.Edges[0].Start.y, 6);
    EXPECT_EQ(builder.Edges[0].End.x, 3);
    EXPECT_EQ(builder.Edges[1].End.y, 5);
    EXPECT_EQ(builder.Edges[2].End.x, 2);
    EXPECT_EQ(builder.Edges[3].End.y, 6);
    EXPECT_EQ(builder.Edges[0].Prev, -1);
    EXPECT_EQ(builder.Bounds[0], 2);
    EXPECT_EQ(builder.Bounds[1], 3);
    EXPECT_EQ(builder.Bounds[2], 5);
    EXPECT_EQ(builder.Bounds[3], 6);
}

TEST(MOutlineBuilderTest, SharedSideCancelsAndACopyIsNotAdded) {
    MOutlineBuilder builder;
    builder.AddSquare(0, 1, 0, 1);
    builder.AddSquare(1, 2, 0, 1);
    // The right side of the first cancels the left side of the second; the
    // last edge took the free slot.
    EXPECT_EQ(builder.EdgeCount, 6);
    EXPECT_EQ(builder.Edges[1].Start.x, 2); // the old last edge, (2, 0) -> (1, 0)
    EXPECT_EQ(builder.Edges[1].Start.y, 0);
    builder.AddEdge(P(0, 1), P(1, 1));
    EXPECT_EQ(builder.EdgeCount, 6);
    // Within 2^-14 a point is the same point.
    builder.AddEdge(P(0.00001f, 1), P(1, 1.00001f));
    EXPECT_EQ(builder.EdgeCount, 6);
}

TEST(MOutlineBuilderTest, TwoSquaresBuildOneLoopOfFourCorners) {
    MOutlineBuilder builder;
    builder.AddSquare(0, 1, 0, 1);
    builder.AddSquare(1, 2, 0, 1);
    StartDebugCapture();
    ASSERT_TRUE(builder.Build(0));
    EXPECT_EQ(Text(StopDebugCapture()), u"");
    ASSERT_EQ(builder.LoopCount, 1);
    // The straight pairs of unit edges along the top and the bottom merge.
    EXPECT_EQ(builder.EdgeCount, 4);
    for (int i = 0; i < builder.EdgeCount; i++) {
        const MOutlineEdge& e = builder.Edges[i];
        EXPECT_EQ(builder.Edges[e.Next].Prev, i);
        EXPECT_EQ(builder.Edges[e.Prev].Next, i);
    }
    EXPECT_EQ(builder.CheckEdges(), 0);
}

TEST(MOutlineBuilderTest, NormalsAndCornersOfASquare) {
    MOutlineBuilder builder;
    builder.AddSquare(0, 1, 0, 1);
    ASSERT_TRUE(builder.Build(0));
    // Edge 0 runs from (0, 1) to (1, 1): its normal is (0, 1).
    const MOutlineEdge& e = builder.Edges[0];
    EXPECT_FLOAT_EQ(e.Normal.x, 0);
    EXPECT_FLOAT_EQ(e.Normal.y, 1);
    // The previous edge runs from (0, 0) to (0, 1), with normal (-1, 0):
    // the corner is the unit diagonal stretched by sqrt 2, the joint normal
    // stays the edge's own (the dot product 0 is not above 0.71).
    EXPECT_FLOAT_EQ(e.CornerAtStart.x, -1);
    EXPECT_FLOAT_EQ(e.CornerAtStart.y, 1);
    EXPECT_FLOAT_EQ(e.NormalAtStart.x, 0);
    EXPECT_FLOAT_EQ(e.NormalAtStart.y, 1);
    EXPECT_FLOAT_EQ(e.CornerAtEnd.x, 1);
    EXPECT_FLOAT_EQ(e.CornerAtEnd.y, 1);
    EXPECT_EQ(builder.Loops[0].FirstEdge, 0);
    EXPECT_EQ(builder.Loops[0].MinX, 0);
    EXPECT_EQ(builder.Loops[0].MaxX, 1);
}

TEST(MOutlineBuilderTest, RogueEdgesAreRemovedWithAWarning) {
    MOutlineBuilder builder;
    builder.AddSquare(0, 1, 0, 1);
    builder.AddEdge(P(5, 5), P(6, 5));
    builder.AddEdge(P(8, 5), P(9, 5));
    StartDebugCapture();
    ASSERT_TRUE(builder.Build(0));
    EXPECT_EQ(Text(StopDebugCapture()), u"WARNING: outline fixed by removing 2 rogue lines\n");
    EXPECT_EQ(builder.EdgeCount, 4);
    EXPECT_EQ(builder.LoopCount, 1);
}

TEST(MOutlineBuilderTest, OneGapIsJoinedAtItsMidpoint) {
    MOutlineBuilder builder;
    builder.AddEdge(P(0, 0), P(4, 0));
    builder.AddEdge(P(4, 0), P(4, 4));
    builder.AddEdge(P(4, 4), P(0, 4));
    builder.AddEdge(P(0, 4), P(0, 2)); // ends 2 units short: still joined
    StartDebugCapture();
    ASSERT_TRUE(builder.Build(0));
    EXPECT_EQ(Text(StopDebugCapture()), u"WARNING: outline fixed by connecting a hole\n");
    auto starts = LoopStarts(builder, 0);
    EXPECT_EQ(starts, (std::vector<std::pair<float, float>>{{0, 1}, {4, 0}, {4, 4}, {0, 4}}));
}

// Two gaps: each open end takes the nearest free start under a unit away.
// The count is of the edges found open.
TEST(MOutlineBuilderTest, SeveralGapsUnderOneUnitAreClosed) {
    MOutlineBuilder builder;
    builder.AddEdge(P(0, 0), P(2, 0));
    builder.AddEdge(P(2, 0), P(4, 0));
    builder.AddEdge(P(4, 0.5f), P(4, 4));
    builder.AddEdge(P(4, 4), P(0, 4));
    builder.AddEdge(P(0, 4), P(0, 0.5f));
    StartDebugCapture();
    ASSERT_TRUE(builder.Build(0));
    EXPECT_EQ(Text(StopDebugCapture()), u"WARNING: outline fixed by closing 4 holes\n");
    auto starts = LoopStarts(builder, 0);
    EXPECT_EQ(starts, (std::vector<std::pair<float, float>>{
                          {0, 0.25f}, {2, 0}, {4, 0.25f}, {4, 4}, {0, 4}}));
}

TEST(MOutlineBuilderTest, GapsOfOneUnitOrMoreAreNotClosed) {
    MOutlineBuilder builder;
    builder.AddEdge(P(0, 0), P(2, 0));
    builder.AddEdge(P(2, 0), P(4, 0));
    builder.AddEdge(P(4, 1), P(4, 4));
    builder.AddEdge(P(4, 4), P(0, 4));
    builder.AddEdge(P(0, 4), P(0, 0.5f));
    StartDebugCapture();
    EXPECT_FALSE(builder.Build(0));
    EXPECT_EQ(Text(StopDebugCapture()), u"ERROR: this outline is not OK: could not close holes\n");
}

// An edge that leaves a closed loop from one of its corners finds no partner
// and is rogue: removed with the warning.
TEST(MOutlineBuilderTest, SpurFromALoopIsRogue) {
    MOutlineBuilder builder;
    builder.AddEdge(P(0, 0), P(4, 0));
    builder.AddEdge(P(4, 0), P(4, 4));
    builder.AddEdge(P(4, 4), P(0, 4));
    builder.AddEdge(P(0, 4), P(0, 0));
    builder.AddEdge(P(0, 0), P(-3, 0));
    StartDebugCapture();
    EXPECT_TRUE(builder.Build(0));
    EXPECT_EQ(Text(StopDebugCapture()), u"WARNING: outline fixed by removing 1 rogue lines\n");
    EXPECT_EQ(builder.EdgeCount, 4);
}

TEST(MOutlineBuilderTest, TooFewEdgesFail) {
    MOutlineBuilder builder;
    builder.AddEdge(P(0, 0), P(4, 0));
    builder.AddEdge(P(4, 0), P(0, 0.5f));
    builder.AddEdge(P(0, 0.5f), P(0, 0));
    // Three edges whose starts lie within a unit of each other in a row: the
    // middle one goes, and two edges are too few.
    MOutlineBuilder small;
    small.AddEdge(P(0, 0), P(0.5f, 0));
    small.AddEdge(P(0.5f, 0), P(0.5f, 0.5f));
    small.AddEdge(P(0.5f, 0.5f), P(0, 0));
    EXPECT_FALSE(small.Build(0));
    EXPECT_TRUE(builder.Build(0));
}

TEST(MOutlineBuilderTest, CheckCodes) {
    MOutlineBuilder builder;
    builder.AddSquare(0, 1, 0, 1);
    ASSERT_TRUE(builder.Build(0));
    ASSERT_EQ(builder.CheckEdges(), 0);
    MOutlineBuilder broken = builder;
    broken.Edges[0].Next = 7;
    EXPECT_EQ(broken.CheckEdges(), 1);
    broken = builder;
    broken.Edges[0].Next = broken.Edges[broken.Edges[0].Next].Next; // skips one
    EXPECT_EQ(broken.CheckEdges(), 2);
    broken = builder;
    broken.Edges[0].Prev = broken.Edges[broken.Edges[0].Prev].Prev;
    EXPECT_EQ(broken.CheckEdges(), 3);
    broken = builder;
    broken.Edges[0].CornerAtStart.x += 0.5f;
    EXPECT_EQ(broken.CheckEdges(), 4);
    broken = builder;
    broken.Edges[0].CornerAtEnd.y += 0.5f;
    EXPECT_EQ(broken.CheckEdges(), 5);
    // A self-link and a pair, made consistent in their other links.
    MOutlineBuilder single;
    single.Edges.SetCount(1);
    single.EdgeCount = 1;
    single.Edges[0].Prev = single.Edges[0].Next = 0;
    EXPECT_EQ(single.CheckEdges(), 6);
    MOutlineBuilder pair;
    pair.Edges.SetCount(2);
    pair.EdgeCount = 2;
    pair.Edges[0].Prev = pair.Edges[0].Next = 1;
    pair.Edges[1].Prev = pair.Edges[1].Next = 0;
    EXPECT_EQ(pair.CheckEdges(), 7);
}
