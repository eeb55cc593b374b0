#pragma once
// Helpers of the tracer tests: pictures drawn from rows of characters ("#"
// opaque, "." transparent), and outlines read back as lists of corners.

#include "drawing/MPicture.h"
#include "eps/WTracer.h"

#include <string>
#include <utility>
#include <vector>

namespace tracertest {

using Corners = std::vector<std::pair<int, int>>;

// A picture of format 7 from rows of equal length.
inline void Draw(MPicture& picture, const std::vector<std::string>& rows) {
    picture.Allocate(int32_t(rows[0].size()), int32_t(rows.size()), PictureBgra8);
    for (size_t y = 0; y < rows.size(); y++)
        for (size_t x = 0; x < rows[y].size(); x++)
            picture.PixelAddress(int32_t(x), int32_t(y))[3] = rows[y][x] == '#' ? 255 : 0;
}

// A transparent picture of width by height with opaque rectangles, each
// given as left, top, right, bottom pixels (right and bottom excluded).
struct Box {
    int left, top, right, bottom;
    bool opaque = true;
};
inline void Draw(MPicture& picture, int width, int height, const std::vector<Box>& boxes) {
    picture.Allocate(width, height, PictureBgra8);
    for (const Box& box : boxes)
        for (int y = box.top; y < box.bottom; y++)
            for (int x = box.left; x < box.right; x++)
                picture.PixelAddress(x, y)[3] = box.opaque ? 255 : 0;
}

inline Corners Points(const WTraceOutline& outline) {
    Corners corners;
    for (int32_t i = 0; i < outline.PointCount; i++)
        corners.push_back({outline.Points[i].x, outline.Points[i].y});
    return corners;
}

// The outlines that are there (null slots and empty ones left out).
inline std::vector<const WTraceOutline*> Present(const WTracer& tracer) {
    std::vector<const WTraceOutline*> result;
    for (int32_t i = 0; i < tracer.OutlineCount; i++)
        if (tracer.Outlines[i] && tracer.Outlines[i]->PointCount > 0)
            result.push_back(tracer.Outlines[i]);
    return result;
}

// The corners where the polygon turns, from the smallest (y, x) on, in the
// polygon's own order: collinear corners and the start's place drop out, so
// two tracings of one shape compare equal.
inline Corners Turns(const WTraceOutline& outline) {
    Corners all = Points(outline), turns;
    size_t n = all.size();
    for (size_t i = 0; i < n; i++) {
        auto a = all[(i + n - 1) % n], b = all[i], c = all[(i + 1) % n];
        long cross = long(b.first - a.first) * (c.second - b.second) -
                     long(b.second - a.second) * (c.first - b.first);
        if (cross != 0) turns.push_back(b);
    }
    size_t start = 0;
    for (size_t i = 1; i < turns.size(); i++)
        if (std::make_pair(turns[i].second, turns[i].first) <
            std::make_pair(turns[start].second, turns[start].first))
            start = i;
    Corners rotated;
    for (size_t i = 0; i < turns.size(); i++)
        rotated.push_back(turns[(start + i) % turns.size()]);
    return rotated;
}

} // namespace tracertest
