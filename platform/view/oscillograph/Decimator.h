#pragma once

#include "platform/common/PointF.h"

#include <cstddef>
#include <vector>

namespace TavView {

class AxisMap;

// A point with x already in pixels and y still in value units: the y axis is
// fitted to what decimation keeps, and min/max per column keep the extremes.
struct ColumnPoint {
    float x = 0.0f;
    float y = 0.0f;
};

class Decimator {
public:
    struct Span {
        std::size_t first = 0;
        std::size_t last = 0; // one past the end
    };

    // The points that reach the window [from, to] of points sorted by x: those
    // inside plus one on each side, so lines enter and leave the plot edges.
    static Span visible(const std::vector<Tav::PointF>& points, double from, double to);

    // Appends the span's points to `out` with x mapped to pixels and y scaled by
    // gain. When a column holds more than two points it gets its first, min,
    // max and last, in the order they occur, so a one-sample spike survives.
    // NaN values are left out.
    static void decimate(const std::vector<Tav::PointF>& points, Span span, const AxisMap& time,
                         double gain, std::vector<ColumnPoint>& out);
};

} // namespace TavView
