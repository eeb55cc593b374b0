// The outline builder: edges in, checked loops out.

#include "eps/MOutlineBuilder.h"

#include "foundation/MString.h"
#include "foundation/Platform.h"

#include <cfloat>
#include <cmath>

namespace {

enum { EdgeStep = 100, LoopStep = 10 };

bool Same(MPoint2 a, MPoint2 b) {
    return IsNearZero(a.x - b.x) && IsNearZero(a.y - b.y);
}

float Distance(MPoint2 a, MPoint2 b) {
    float dx = a.x - b.x, dy = a.y - b.y;
    return std::sqrt(dx * dx + dy * dy);
}

MPoint2 Midpoint(MPoint2 a, MPoint2 b) {
    return MPoint2{(a.x + b.x) * 0.5f, (a.y + b.y) * 0.5f};
}

MPoint2 Unit(MPoint2 p) {
    float length = std::sqrt(p.x * p.x + p.y * p.y);
    if (length == 0) return p;
    return MPoint2{p.x / length, p.y / length};
}

float Dot(MPoint2 a, MPoint2 b) {
    return a.x * b.x + a.y * b.y;
}

// The offset direction of a corner between two edges with normals first and
// second: their unit sum stretched by 1 / cos of the half angle, the stretch
// limited to 3 either way.
MPoint2 CornerOf(MPoint2 first, MPoint2 second) {
    MPoint2 sum = Unit(MPoint2{first.x + second.x, first.y + second.y});
    float dot = Dot(sum, first);
    float factor = IsNearZero(dot) ? -3.0f : 1.0f / dot;
    if (factor < -3.0f) factor = -3.0f;
    if (factor > 3.0f) factor = 3.0f;
    return MPoint2{sum.x * factor, sum.y * factor};
}

MPoint2 JointNormal(MPoint2 other, MPoint2 normal) {
    if (Dot(other, normal) > 0.71f) return Unit(MPoint2{other.x + normal.x, other.y + normal.y});
    return normal;
}

} // namespace

MOutlineBuilder::MOutlineBuilder() {
    Bounds[0] = FLT_MAX;
    Bounds[1] = -FLT_MAX;
    Bounds[2] = FLT_MAX;
    Bounds[3] = -FLT_MAX;
}

MOutlineBuilder::~MOutlineBuilder() = default;

bool MOutlineBuilder::AddSquare(float left, float right, float top, float bottom) {
    MPoint2 lb{left, bottom}, rb{right, bottom}, rt{right, top}, lt{left, top};
    return AddEdge(lb, rb) && AddEdge(rb, rt) && AddEdge(rt, lt) && AddEdge(lt, lb);
}

bool MOutlineBuilder::AddEdge(MPoint2 a, MPoint2 b) {
    for (int32_t i = 0; i < EdgeCount; i++)
        if (Same(Edges[i].Start, b) && Same(Edges[i].End, a)) {
            Edges[i] = Edges[EdgeCount - 1];
            EdgeCount--;
            return true;
        }
    for (int32_t i = 0; i < EdgeCount; i++)
        if (Same(Edges[i].Start, a) && Same(Edges[i].End, b)) return true;
    if (!Edges.Grow(EdgeCount + 1, EdgeStep)) {
        EdgeCount = 0;
        DebugOutput(u"OUT OF MEMORY: too many outlines\n");
        return false;
    }
    MOutlineEdge& edge = Edges[EdgeCount++];
    edge = MOutlineEdge();
    edge.Start = a;
    edge.End = b;
    for (MPoint2 p : {a, b}) {
        if (p.x < Bounds[0]) Bounds[0] = p.x;
        if (p.x > Bounds[1]) Bounds[1] = p.x;
        if (p.y < Bounds[2]) Bounds[2] = p.y;
        if (p.y > Bounds[3]) Bounds[3] = p.y;
    }
    return true;
}

// Scans forward; the last edge moves into a freed slot and is tested there.
// Links to the moved edge follow it.
void MOutlineBuilder::RemoveMarkedEdges() {
    int32_t i = 0;
    while (i < EdgeCount) {
        if (Edges[i].Prev != -1) {
            i++;
            continue;
        }
        int32_t last = EdgeCount - 1;
        if (i != last) {
            Edges[i] = Edges[last];
            for (int32_t k = 0; k < last; k++) {
                if (Edges[k].Prev == last) Edges[k].Prev = i;
                if (Edges[k].Next == last) Edges[k].Next = i;
            }
        }
        EdgeCount--;
    }
}

// ---- Step 1: links, and the repair of what is left open.

bool MOutlineBuilder::LinkEdges() {
    for (int32_t i = 0; i < EdgeCount; i++) {
        if (Edges[i].Prev != -1) continue;
        for (int32_t k = 0; k < EdgeCount; k++)
            if (k != i && Edges[k].Next == -1 && Same(Edges[k].End, Edges[i].Start)) {
                Edges[i].Prev = k;
                Edges[k].Next = i;
                break;
            }
    }
    for (int32_t i = 0; i < EdgeCount; i++) {
        if (Edges[i].Next != -1) continue;
        for (int32_t k = 0; k < EdgeCount; k++)
            if (k != i && Edges[k].Prev == -1 && Same(Edges[k].Start, Edges[i].End)) {
                Edges[i].Next = k;
                Edges[k].Prev = i;
                break;
            }
    }

    int32_t rogue = 0, open = 0, withoutNext = 0, withoutPrev = 0;
    for (int32_t i = 0; i < EdgeCount; i++) {
        bool prev = Edges[i].Prev != -1, next = Edges[i].Next != -1;
        if (!prev && !next)
            rogue++;
        else if (!prev || !next)
            open++;
        if (!next) withoutNext++;
        if (!prev) withoutPrev++;
    }
    if (open == 0 && rogue == 0) return true;
    if (open == 0) {
        DebugOutput(MString(u"WARNING: outline fixed by removing ") + IntegerText(rogue) +
                    MString(u" rogue lines\n"));
        RemoveMarkedEdges();
        return true;
    }
    if (withoutNext != withoutPrev) {
        DebugOutput(u"ERROR: this outline is not OK: could not close holes\n");
        return false;
    }
    if (withoutNext == 1 && rogue == 0) {
        int32_t end = -1, start = -1;
        for (int32_t i = 0; i < EdgeCount; i++) {
            if (Edges[i].Next == -1) end = i;
            if (Edges[i].Prev == -1) start = i;
        }
        MPoint2 middle = Midpoint(Edges[end].End, Edges[start].Start);
        Edges[end].End = middle;
        Edges[start].Start = middle;
        Edges[end].Next = start;
        Edges[start].Prev = end;
        DebugOutput(u"WARNING: outline fixed by connecting a hole\n");
        return true;
    }
    // Each open end takes the nearest free start under 1 unit away.
    for (int32_t i = 0; i < EdgeCount; i++) {
        if (Edges[i].Prev == -1 || Edges[i].Next != -1) continue;
        int32_t best = -1;
        float bestDistance = 1.0f;
        for (int32_t k = 0; k < EdgeCount; k++) {
            if (Edges[k].Prev != -1) continue;
            float distance = Distance(Edges[i].End, Edges[k].Start);
            if (distance < bestDistance) {
                bestDistance = distance;
                best = k;
            }
        }
        if (best < 0) continue;
        MPoint2 middle = Midpoint(Edges[i].End, Edges[best].Start);
        Edges[i].End = middle;
        Edges[best].Start = middle;
        Edges[i].Next = best;
        Edges[best].Prev = i;
    }
    for (int32_t i = 0; i < EdgeCount; i++) {
        bool prev = Edges[i].Prev != -1, next = Edges[i].Next != -1;
        if (prev != next) {
            DebugOutput(u"ERROR: this outline is not OK: could not close holes\n");
            return false;
        }
    }
    DebugOutput(MString(u"WARNING: outline fixed by closing ") + IntegerText(open) +
                MString(u" holes\n"));
    RemoveMarkedEdges();
    return true;
}

// ---- Step 7: loops, by following Next from each edge not yet used.

bool MOutlineBuilder::CollectLoops() {
    LoopCount = 0;
    MVector<uint8_t> used;
    if (!used.SetCount(EdgeCount)) return false;
    for (int32_t first = 0; first < EdgeCount; first++) {
        if (used[first]) continue;
        if (!Loops.Grow(LoopCount + 1, LoopStep)) return LoopCount > 0;
        MOutlineLoop& loop = Loops[LoopCount++];
        loop.FirstEdge = first;
        loop.MinX = loop.MaxX = Edges[first].Start.x;
        loop.MinY = loop.MaxY = Edges[first].Start.y;
        int32_t e = first;
        for (int32_t steps = 0; steps <= EdgeCount; steps++) {
            used[e] = 1;
            MPoint2 p = Edges[e].Start;
            if (p.x < loop.MinX) loop.MinX = p.x;
            if (p.x > loop.MaxX) loop.MaxX = p.x;
            if (p.y < loop.MinY) loop.MinY = p.y;
            if (p.y > loop.MaxY) loop.MaxY = p.y;
            e = Edges[e].Next;
            if (e < 0 || e >= EdgeCount || e == first) break;
        }
    }
    return LoopCount > 0;
}

// ---- Step 8: the checks, by their codes.

int32_t MOutlineBuilder::CheckEdges() const {
    for (int32_t i = 0; i < EdgeCount; i++) {
        const MOutlineEdge& e = Edges[i];
        if (e.Prev < 0 || e.Prev >= EdgeCount || e.Next < 0 || e.Next >= EdgeCount) return 1;
        if (Edges[e.Next].Prev != i) return 2;
        if (Edges[e.Prev].Next != i) return 3;
        if (!Same(e.CornerAtStart, Edges[e.Prev].CornerAtEnd)) return 4;
        if (!Same(e.CornerAtEnd, Edges[e.Next].CornerAtStart)) return 5;
        if (e.Next == i) return 6;
        if (Edges[e.Next].Next == i) return 7;
    }
    return 0;
}

bool MOutlineBuilder::Build(float) {
    if (!LinkEdges()) return false;

    // ---- Step 2: pairs that go there and back, and bunched corners.
    for (int32_t i = 0; i < EdgeCount; i++) {
        MOutlineEdge& e = Edges[i];
        if (e.Prev == -1 || e.Next < 0) continue;
        int32_t n = e.Next, m = Edges[n].Next;
        if (m < 0) continue;
        if (m == i) {
            e.Prev = -1;
            Edges[n].Prev = -1;
        } else if (Distance(e.Start, Edges[n].Start) < 1.0f &&
                   Distance(Edges[n].Start, Edges[m].Start) < 1.0f) {
            Edges[n].Prev = -1;
            e.End = Edges[m].Start;
            e.Next = m;
            Edges[m].Prev = i;
        }
    }
    RemoveMarkedEdges();
    if (EdgeCount < 3) return false;

    // ---- Step 3: the middle of three starts in a straight line goes.
    for (int32_t i = 0; i < EdgeCount; i++) {
        MOutlineEdge& e = Edges[i];
        if (e.Prev == -1 || e.Next < 0) continue;
        int32_t n = e.Next, m = Edges[n].Next;
        if (m < 0 || m == i) continue;
        MPoint2 a = e.Start, b = Edges[n].Start, c = Edges[m].Start;
        bool sameX = IsNearZero(a.x - b.x) && IsNearZero(b.x - c.x);
        bool sameY = IsNearZero(a.y - b.y) && IsNearZero(b.y - c.y);
        if (sameX || sameY) {
            Edges[n].Prev = -1;
            e.End = c;
            e.Next = m;
            Edges[m].Prev = i;
        }
    }
    RemoveMarkedEdges();
    if (EdgeCount < 3) return false;

    // ---- Steps 4 and 5: normals, corners and joint normals.
    for (int32_t i = 0; i < EdgeCount; i++) {
        MOutlineEdge& e = Edges[i];
        e.Normal = Unit(MPoint2{e.Start.y - e.End.y, e.End.x - e.Start.x});
    }
    for (int32_t i = 0; i < EdgeCount; i++) {
        MOutlineEdge& e = Edges[i];
        if (e.Prev < 0 || e.Prev >= EdgeCount || e.Next < 0 || e.Next >= EdgeCount) continue;
        MPoint2 p = Edges[e.Prev].Normal, n = Edges[e.Next].Normal;
        e.CornerAtStart = CornerOf(p, e.Normal);
        e.CornerAtEnd = CornerOf(e.Normal, n);
        e.NormalAtStart = JointNormal(p, e.Normal);
        e.NormalAtEnd = JointNormal(n, e.Normal);
    }

    // ---- Step 6: self-links and pairs are cut.
    for (int32_t i = 0; i < EdgeCount; i++) {
        int32_t n = Edges[i].Next;
        if (n == i || (n >= 0 && n < EdgeCount && Edges[n].Next == i)) Edges[i].Prev = -1;
    }
    RemoveMarkedEdges();
    if (EdgeCount < 3) return false;

    if (!CollectLoops()) return false;

    int32_t code = CheckEdges();
    if (code != 0) {
        DebugOutput(MString(u"ERROR: this outline is not OK, ErrorCode=") + IntegerText(code) +
                    MString(u"\n"));
        return false;
    }
    return true;
}
