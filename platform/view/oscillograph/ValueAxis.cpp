#include "platform/view/oscillograph/ValueAxis.h"

#include <algorithm>
#include <cmath>

namespace TavView {

namespace {

struct Prefix {
    double scale;
    const char* name;
};

Prefix prefixFor(double magnitude) {
    if (magnitude >= 1e6)
        return {1e-6, "M"};
    if (magnitude >= 1e3)
        return {1e-3, "k"};
    return {1.0, ""};
}

} // namespace

std::string ValueAxis::label(double value, double step, double magnitude) {
    // "0.0k" reads worse than a plain zero.
    if (std::abs(value) < step * 1e-6)
        return "0";
    const Prefix prefix = prefixFor(magnitude);
    return AxisTicks::formatFixed(value * prefix.scale,
                                  AxisTicks::decimalsFor(step * prefix.scale)) +
           prefix.name;
}

std::string ValueAxis::readout(double value) {
    if (!std::isfinite(value))
        return "-";
    if (value == 0.0)
        return "0";
    const double magnitude = std::abs(value);
    const Prefix prefix = prefixFor(magnitude);
    const double scaled = magnitude * prefix.scale;
    const int decimals = scaled >= 100.0 ? 0 : scaled >= 10.0 ? 1 : scaled >= 1.0 ? 2 : 3;
    return AxisTicks::formatFixed(value * prefix.scale, decimals) + prefix.name;
}

TickSet ValueAxis::choose(double lo, double hi, double pixels, double labelHeight) {
    TickSet set;
    if (!(hi > lo) || !(pixels > 0.0))
        return set;
    const double perPixel = (hi - lo) / pixels;
    set.step = AxisTicks::roundStepAtLeast(std::max(2.0 * labelHeight, 1.0) * perPixel);
    const double magnitude = std::max(std::abs(lo), std::abs(hi));
    for (double v : AxisTicks::multiplesIn(lo, hi, set.step))
        set.ticks.push_back({v, label(v, set.step, magnitude)});
    return set;
}

} // namespace TavView
