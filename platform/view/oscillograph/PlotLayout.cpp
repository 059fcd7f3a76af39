#include "platform/view/oscillograph/PlotLayout.h"

#include "platform/view/oscillograph/TimeAxis.h"
#include "platform/view/oscillograph/ValueAxis.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

namespace TavView {

namespace {

constexpr double SwatchWidth = 12.0;
constexpr double LegendGap = 14.0;
constexpr double MaxLaneHeight = 28.0;
constexpr double MinLaneHeight = 14.0;
constexpr double LanePadding = 3.0;
constexpr double ReadoutValueWidth = 70.0;

bool sortedByX(const std::vector<Tav::PointF>& points) {
    return std::is_sorted(points.begin(), points.end(),
                          [](const Tav::PointF& a, const Tav::PointF& b) { return a.x < b.x; });
}

} // namespace

int PlotLayout::plotWidthFor(int areaWidth) {
    return std::max(0, areaWidth - static_cast<int>(MarginLeft + MarginRight));
}

void PlotLayout::compute(const Input& input) {
    area = {0.0, 0.0, static_cast<double>(input.width), static_cast<double>(input.height)};
    from = input.from;
    to = input.to;
    lanes.clear();
    legend.clear();
    sortedCopies_.clear();
    envelope = std::any_of(input.series->begin(), input.series->end(),
                           [](const Tav::Series* s) { return s->envelope; });
    placeLegend(input);
    placeLanes(input);
    buildCurves(input);
    assignUnits();
    fitValues(input);
    timeTicks = TimeAxis::choose(from, to, plot.width, input.measure);
    valueTicks = hasAnalog || lanes.empty()
                     ? ValueAxis::choose(valueLo, valueHi, analog.height, FontSize, valueUnit)
                     : TickSet{};
    if (second)
        second->ticks =
            ValueAxis::choose(second->lo, second->hi, analog.height, FontSize, second->unit);
}

// The first analogue curve's unit takes the left axis, the first other unit
// the second axis; curves of any further unit share the left one.
void PlotLayout::assignUnits() {
    valueUnit.clear();
    second.reset();
    bool first = true;
    for (Curve& c : curves) {
        c.onSecond = false;
        if (c.discrete)
            continue;
        const std::string& unit = c.series->unit;
        if (first) {
            valueUnit = unit;
            first = false;
        } else if (!second && unit != valueUnit) {
            second = SecondScale{unit, -1.0, 1.0, {}, {}};
        }
        c.onSecond = second && unit == second->unit;
    }
}

void PlotLayout::placeLegend(const Input& input) {
    double x = MarginLeft;
    double baseline = 4.0 + FontSize;
    // The envelope mark stands at the right end of the legend's first line,
    // above the plot, where it hides no part of a curve.
    const double mark = envelope ? input.measure(EnvelopeMark) + LegendGap : 0.0;
    const double right = std::max(area.width - MarginRight - mark, MarginLeft + 1.0);
    for (const Tav::Series* s : *input.series) {
        const double width = SwatchWidth + 4.0 + input.measure(s->description) + LegendGap;
        if (x > MarginLeft && x + width > right) {
            x = MarginLeft;
            baseline += LineHeight;
        }
        legend.push_back({s, x, baseline});
        x += width;
    }
    const double top = legend.empty() ? 8.0 : baseline + 8.0;
    plot = {MarginLeft, top, static_cast<double>(plotWidthFor(input.width)),
            std::max(0.0, area.height - top - MarginBottom)};
}

void PlotLayout::placeLanes(const Input& input) {
    std::map<std::uint32_t, std::string> labels;
    hasAnalog = false;
    readoutWidth = 0.0;
    for (const Tav::Series* s : *input.series) {
        readoutWidth = std::max(readoutWidth, input.measure(s->description));
        if (s->kind != Tav::Series::Discrete) {
            hasAnalog = true;
            continue;
        }
        std::string& label = labels[s->ordinal];
        label += label.empty() ? s->description : ", " + s->description;
    }
    readoutWidth += SwatchWidth + ReadoutValueWidth;
    if (labels.empty()) {
        analog = plot;
        return;
    }
    const double share = hasAnalog ? 0.5 : 1.0;
    const double laneHeight = std::clamp(plot.height * share / static_cast<double>(labels.size()),
                                         MinLaneHeight, MaxLaneHeight);
    double top = plot.bottom() - laneHeight * static_cast<double>(labels.size());
    analog = {plot.x, plot.y, plot.width, std::max(0.0, top - plot.y)};
    for (auto& [ordinal, label] : labels) {
        lanes.push_back({ordinal, {plot.x, top, plot.width, laneHeight}, std::move(label)});
        top += laneHeight;
    }
}

void PlotLayout::buildCurves(const Input& input) {
    // Curves are reused between computations: their point buffers keep their
    // storage, which spares a page fault storm on every frame of a drag.
    curves.resize(input.series->size());
    for (std::size_t i = 0; i < curves.size(); ++i) {
        const Tav::Series* s = (*input.series)[i];
        Curve& curve = curves[i];
        curve.pixels.clear();
        curve.series = s;
        curve.discrete = s->kind == Tav::Series::Discrete;
        curve.gain = curve.discrete ? 1.0 : static_cast<double>(s->gain);
        curve.points = &s->points;
        if (!sortedByX(s->points)) {
            // Points from several files may come in file order rather than time order.
            std::vector<Tav::PointF>& copy = sortedCopies_.emplace_back(s->points);
            std::stable_sort(copy.begin(), copy.end(),
                             [](const Tav::PointF& a, const Tav::PointF& b) { return a.x < b.x; });
            curve.points = &copy;
        }
        // In the series' own x, so that no precision is lost before mapping.
        curve.origin = s->origin;
        const AxisMap time(from - curve.origin, to - curve.origin, plot.x, plot.right());
        const Decimator::Span span =
            Decimator::visible(*curve.points, from - curve.origin, to - curve.origin);
        curve.dense = static_cast<double>(span.last - span.first) > plot.width;
        Decimator::decimate(*curve.points, span, time, curve.gain, curve.pixels);
    }
}

// The visible values of the curves on one axis, with a margin.
std::pair<double, double> PlotLayout::fitted(bool onSecond) const {
    double lo = INFINITY, hi = -INFINITY;
    for (const Curve& c : curves) {
        if (c.discrete || c.onSecond != onSecond)
            continue;
        for (const ColumnPoint& p : c.pixels) {
            // The points just outside the window would stretch the axis for nothing.
            if (p.x < plot.x - 1.0 || p.x > plot.right() + 1.0 || !std::isfinite(p.y))
                continue;
            lo = std::min(lo, static_cast<double>(p.y));
            hi = std::max(hi, static_cast<double>(p.y));
        }
    }
    if (!(lo <= hi)) {
        lo = -1.0;
        hi = 1.0;
    } else if (!(hi > lo)) {
        const double pad = lo != 0.0 ? std::abs(lo) * 0.1 : 1.0;
        lo -= pad;
        hi += pad;
    }
    const double margin = (hi - lo) * 0.05;
    return {lo - margin, hi + margin};
}

void PlotLayout::fitValues(const Input& input) {
    std::tie(valueLo, valueHi) = input.valueRange.value_or(fitted(false));
    mapper =
        CoordinateMapper(from, to, plot.x, plot.width, valueLo, valueHi, analog.y, analog.height);
    if (second) {
        std::tie(second->lo, second->hi) = input.secondRange.value_or(fitted(true));
        second->value = AxisMap(second->lo, second->hi, analog.bottom(), analog.y);
    }
    std::map<std::uint32_t, const Lane*> laneOf;
    for (const Lane& lane : lanes)
        laneOf[lane.ordinal] = &lane;
    for (Curve& c : curves) {
        if (!c.discrete) {
            c.value = c.onSecond ? second->value : mapper.value();
        } else {
            float lo = 0.0f, hi = 0.0f;
            c.series->getRangeY(lo, hi);
            const Rect& r = laneOf[c.series->ordinal]->rect;
            c.value = AxisMap(std::min(0.0, static_cast<double>(lo)),
                              std::max(1.0, static_cast<double>(hi)), r.bottom() - LanePadding,
                              r.y + LanePadding);
        }
        for (ColumnPoint& p : c.pixels)
            p.y = static_cast<float>(c.value.toPixel(p.y));
    }
}

std::optional<float> PlotLayout::valueAt(const std::vector<Tav::PointF>& points, double t) {
    if (points.empty() || t < points.front().x || t > points.back().x)
        return std::nullopt;
    auto after = std::upper_bound(points.begin(), points.end(), t,
                                  [](double v, const Tav::PointF& p) { return v < p.x; });
    return std::prev(after)->y;
}

} // namespace TavView
