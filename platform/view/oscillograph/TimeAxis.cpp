#include "platform/view/oscillograph/TimeAxis.h"

#include <algorithm>

namespace TavView {

namespace {

struct Unit {
    double scale;
    const char* name;
};

// The largest unit in which the step is still at least a tenth: "2.5 ms" rather
// than "2500 \u00b5s" or "0.0025 s".
Unit unitFor(double step) {
    const double tolerance = 1.0 - 1e-9;
    if (step >= 0.1 * tolerance)
        return {1.0, "s"};
    if (step >= 1e-4 * tolerance)
        return {1e3, "ms"};
    return {1e6, "\u00b5s"};
}

} // namespace

std::string TimeAxis::label(double seconds, double step) {
    const Unit unit = unitFor(step);
    return AxisTicks::formatFixed(seconds * unit.scale, AxisTicks::decimalsFor(step * unit.scale)) +
           " " + unit.name;
}

TickSet TimeAxis::choose(double from, double to, double pixels, const TextMeasure& measure) {
    TickSet set;
    const double span = to - from;
    if (!(span > 0.0) || !(pixels > 0.0))
        return set;
    const double perPixel = span / pixels;
    double step = AxisTicks::roundStepAtLeast(MinSpacing * perPixel);
    // Labels get longer as the step shrinks, so widen until the widest fits.
    for (int guard = 0; guard < 64; ++guard) {
        std::vector<Tick> ticks;
        double widest = 0.0;
        for (double v : AxisTicks::multiplesIn(from, to, step)) {
            Tick tick{v, label(v, step)};
            widest = std::max(widest, measure(tick.label));
            ticks.push_back(std::move(tick));
        }
        if (step / perPixel >= widest + LabelGap) {
            set.step = step;
            set.ticks = std::move(ticks);
            return set;
        }
        step = AxisTicks::nextRoundStep(step);
    }
    return set;
}

} // namespace TavView
