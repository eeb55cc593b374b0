// Clearance tests of pillars and trees. Testing a pole against every
// segment makes pillars and trees quadratic in the length of a ride; the grid
// keeps the answers and visits only the segments whose boxes come near the
// pole's. A computed distance lies between two points that are on the two
// segments up to rounding, so it is never much below the true distance,
// which is never below the gap between the boxes: growing the pole's box by
// the limit and a generous allowance for rounding loses no segment that the
// full search would have found near.

#include "show/TrackClearance.h"

#include <cmath>

namespace {

const int32_t MaxCellsPerSide = 1024;
const int32_t MaxCellsPerSegment = 64; // a longer segment goes to Always
const float SmallestCell = 8;

bool IsFinite(const MPoint3& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

float Low(float a, float b) {
    return a < b ? a : b;
}

float High(float a, float b) {
    return a > b ? a : b;
}

// The cell of a coordinate, limited to the grid.
int32_t CellOf(float v, float origin, float cell, int32_t cells) {
    double at = std::floor((double(v) - double(origin)) / double(cell));
    if (at < 0) return 0;
    if (at > cells - 1) return cells - 1;
    return int32_t(at);
}

bool Near(const WTrackClearance& c, int32_t q, const MPoint3& a, const MPoint3& b, float limit) {
    return DistanceSegments3(a, b, c.Samples[q].Position, c.Samples[q + 1].Position) < limit;
}

bool NearAny(const WTrackClearance& c, const MPoint3& a, const MPoint3& b, float limit,
             int32_t skipFirst, int32_t skipLast) {
    for (int32_t q = 0; q + 1 < c.Count; q++) {
        if (q >= skipFirst && q <= skipLast) continue;
        if (Near(c, q, a, b, limit)) return true;
    }
    return false;
}

// The cells a segment's box covers; false when it has no finite box.
bool SegmentCells(const WTrackClearance& c, int32_t q, int32_t range[4]) {
    const MPoint3& p = c.Samples[q].Position;
    const MPoint3& r = c.Samples[q + 1].Position;
    if (!IsFinite(p) || !IsFinite(r)) return false;
    range[0] = CellOf(Low(p.x, r.x), c.X0, c.Cell, c.Columns);
    range[1] = CellOf(High(p.x, r.x), c.X0, c.Cell, c.Columns);
    range[2] = CellOf(Low(p.z, r.z), c.Z0, c.Cell, c.Rows);
    range[3] = CellOf(High(p.z, r.z), c.Z0, c.Cell, c.Rows);
    return true;
}

} // namespace

void StartClearance(WTrackClearance& c, const WSketchPoint* samples, int32_t count, bool useGrid) {
    c.Samples = samples;
    c.Count = count;
    c.UseGrid = false;
    c.AlwaysCount = 0;
    c.Query = 0;
    int32_t segments = count - 1;
    if (!useGrid || segments < 1) return;

    // The grid spans the finite samples.
    bool any = false;
    float x0 = 0, x1 = 0, z0 = 0, z1 = 0;
    for (int32_t i = 0; i < count; i++) {
        const MPoint3& p = samples[i].Position;
        if (!IsFinite(p)) continue;
        if (!any) {
            x0 = x1 = p.x;
            z0 = z1 = p.z;
            any = true;
        }
        x0 = Low(x0, p.x), x1 = High(x1, p.x);
        z0 = Low(z0, p.z), z1 = High(z1, p.z);
    }
    if (!any) return;
    double width = double(x1) - double(x0), depth = double(z1) - double(z0);
    double cell = (width > depth ? width : depth) / MaxCellsPerSide;
    if (cell < SmallestCell) cell = SmallestCell;
    c.X0 = x0;
    c.Z0 = z0;
    c.Cell = float(cell);
    c.Columns = int32_t(width / cell) + 1;
    c.Rows = int32_t(depth / cell) + 1;
    if (c.Columns > MaxCellsPerSide + 1) c.Columns = MaxCellsPerSide + 1;
    if (c.Rows > MaxCellsPerSide + 1) c.Rows = MaxCellsPerSide + 1;
    int32_t cells = c.Columns * c.Rows;

    if (!c.CellStart.SetCount(cells + 1) || !c.Seen.SetCount(segments) ||
        !c.Always.SetCount(segments))
        return;
    for (int32_t i = 0; i <= cells; i++)
        c.CellStart[i] = 0;
    for (int32_t q = 0; q < segments; q++)
        c.Seen[q] = 0;

    // Two passes: count the entries of each cell, then fill them in.
    int64_t total = 0;
    int32_t range[4];
    for (int32_t q = 0; q < segments; q++) {
        bool boxed = SegmentCells(c, q, range);
        int64_t covered = boxed ? int64_t(range[1] - range[0] + 1) * (range[3] - range[2] + 1) : 0;
        if (!boxed || covered > MaxCellsPerSegment) {
            c.Always[c.AlwaysCount++] = q;
            continue;
        }
        for (int32_t z = range[2]; z <= range[3]; z++)
            for (int32_t x = range[0]; x <= range[1]; x++)
                c.CellStart[z * c.Columns + x + 1]++;
        total += covered;
    }
    if (total > INT32_MAX / 2 || !c.Items.SetCount(int32_t(total) + 1)) {
        c.AlwaysCount = 0;
        return;
    }
    for (int32_t i = 0; i < cells; i++)
        c.CellStart[i + 1] += c.CellStart[i];
    MVector<int32_t> fill;
    if (!fill.SetCount(cells)) {
        c.AlwaysCount = 0;
        return;
    }
    for (int32_t i = 0; i < cells; i++)
        fill[i] = c.CellStart[i];
    int32_t next = 0; // walks Always, which lists the skipped segments in order
    for (int32_t q = 0; q < segments; q++) {
        if (next < c.AlwaysCount && c.Always[next] == q) {
            next++;
            continue;
        }
        SegmentCells(c, q, range);
        for (int32_t z = range[2]; z <= range[3]; z++)
            for (int32_t x = range[0]; x <= range[1]; x++)
                c.Items[fill[z * c.Columns + x]++] = q;
    }
    c.UseGrid = true;
}

bool NearTrack(WTrackClearance& c, const MPoint3& a, const MPoint3& b, float limit,
               int32_t skipFirst, int32_t skipLast) {
    if (!c.UseGrid || !IsFinite(a) || !IsFinite(b) || !std::isfinite(limit))
        return NearAny(c, a, b, limit, skipFirst, skipLast);

    for (int32_t k = 0; k < c.AlwaysCount; k++) {
        int32_t q = c.Always[k];
        if (q >= skipFirst && q <= skipLast) continue;
        if (Near(c, q, a, b, limit)) return true;
    }

    // The allowance covers rounding at any magnitude of coordinates.
    float magnitude =
        High(High(std::fabs(a.x), std::fabs(a.z)), High(std::fabs(b.x), std::fabs(b.z)));
    magnitude = High(magnitude, High(High(std::fabs(a.y), std::fabs(b.y)),
                                     High(std::fabs(c.X0), std::fabs(c.Z0))));
    float grow = limit + 1.0f + magnitude * 0.001f;
    float lowX = Low(a.x, b.x) - grow, highX = High(a.x, b.x) + grow;
    float lowY = Low(a.y, b.y) - grow, highY = High(a.y, b.y) + grow;
    float lowZ = Low(a.z, b.z) - grow, highZ = High(a.z, b.z) + grow;
    int32_t x0 = CellOf(lowX, c.X0, c.Cell, c.Columns);
    int32_t x1 = CellOf(highX, c.X0, c.Cell, c.Columns);
    int32_t z0 = CellOf(lowZ, c.Z0, c.Cell, c.Rows);
    int32_t z1 = CellOf(highZ, c.Z0, c.Cell, c.Rows);

    if (++c.Query == 0) { // wrapped: forget every mark
        for (int32_t q = 0; q + 1 < c.Count; q++)
            c.Seen[q] = 0;
        c.Query = 1;
    }
    for (int32_t z = z0; z <= z1; z++)
        for (int32_t x = x0; x <= x1; x++) {
            int32_t cell = z * c.Columns + x;
            for (int32_t k = c.CellStart[cell]; k < c.CellStart[cell + 1]; k++) {
                int32_t q = c.Items[k];
                if (c.Seen[q] == c.Query) continue;
                c.Seen[q] = c.Query;
                if (q >= skipFirst && q <= skipLast) continue;
                const MPoint3& p = c.Samples[q].Position;
                const MPoint3& r = c.Samples[q + 1].Position;
                if (High(p.y, r.y) < lowY || Low(p.y, r.y) > highY) continue;
                if (High(p.x, r.x) < lowX || Low(p.x, r.x) > highX) continue;
                if (High(p.z, r.z) < lowZ || Low(p.z, r.z) > highZ) continue;
                if (Near(c, q, a, b, limit)) return true;
            }
        }
    return false;
}

bool NearPoles(const WPole* poles, int32_t count, const MPoint3& a, const MPoint3& b, float limit) {
    for (int32_t i = 0; i < count; i++)
        if (DistanceSegments3(a, b, poles[i].A, poles[i].B) < limit) return true;
    return false;
}
