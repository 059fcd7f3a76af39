#include "platform/view/oscillograph/Decimator.h"

#include "platform/view/oscillograph/CoordinateMapper.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace TavView {

Decimator::Span Decimator::visible(const std::vector<Tav::PointF>& points, double from, double to) {
    const auto byX = [](const Tav::PointF& p, double t) { return p.x < t; };
    const auto xBefore = [](double t, const Tav::PointF& p) { return t < p.x; };
    auto first = std::lower_bound(points.begin(), points.end(), from, byX);
    auto last = std::upper_bound(first, points.end(), to, xBefore);
    if (first != points.begin())
        --first;
    if (last != points.end())
        ++last;
    return {static_cast<std::size_t>(first - points.begin()),
            static_cast<std::size_t>(last - points.begin())};
}

namespace {

// The points of one pixel column seen so far.
struct Column {
    long index = 0;
    ColumnPoint first, min, max, last;
    std::size_t firstAt = 0, minAt = 0, maxAt = 0, lastAt = 0;

    void start(long column, ColumnPoint p, std::size_t at) {
        index = column;
        first = min = max = last = p;
        firstAt = minAt = maxAt = lastAt = at;
    }

    void add(ColumnPoint p, std::size_t at) {
        last = p;
        lastAt = at;
        if (p.y < min.y) {
            min = p;
            minAt = at;
        }
        if (p.y > max.y) {
            max = p;
            maxAt = at;
        }
    }

    // First, min, max and last in the order they occur, each sample once: a
    // column where the curve only rises or only falls needs just its two ends.
    void flush(std::vector<ColumnPoint>& out) const {
        const bool minFirst = minAt <= maxAt;
        const std::array<std::pair<std::size_t, const ColumnPoint*>, 4> picks{{
            {firstAt, &first},
            minFirst ? std::make_pair(minAt, &min) : std::make_pair(maxAt, &max),
            minFirst ? std::make_pair(maxAt, &max) : std::make_pair(minAt, &min),
            {lastAt, &last},
        }};
        std::size_t emitted = picks[0].first;
        out.push_back(*picks[0].second);
        for (std::size_t i = 1; i < picks.size(); ++i) {
            if (picks[i].first == emitted)
                continue;
            emitted = picks[i].first;
            out.push_back(*picks[i].second);
        }
    }
};

} // namespace

void Decimator::decimate(const std::vector<Tav::PointF>& points, Span span, const AxisMap& time,
                         double gain, std::vector<ColumnPoint>& out) {
    const std::size_t last = std::min(span.last, points.size());
    if (span.first >= last)
        return;
    out.reserve(out.size() + std::min<std::size_t>(last - span.first, 4096));
    Column column;
    bool open = false;
    // The next column starts at this x; comparing with it spares a floor per point.
    double columnEnd = 0.0;
    for (std::size_t i = span.first; i < last; ++i) {
        const Tav::PointF& p = points[i];
        if (std::isnan(p.y) || std::isnan(p.x))
            continue;
        const double x = time.toPixel(p.x);
        const ColumnPoint q{static_cast<float>(x), static_cast<float>(p.y * gain)};
        if (open && x < columnEnd) {
            column.add(q, i);
            continue;
        }
        if (open)
            column.flush(out);
        const double start = std::floor(x);
        column.start(static_cast<long>(std::clamp(start, -1e15, 1e15)), q, i);
        columnEnd = start + 1.0;
        open = true;
    }
    if (open)
        column.flush(out);
}

} // namespace TavView
