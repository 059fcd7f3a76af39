#include "platform/view/oscillograph/ValueAxis.h"

#include <algorithm>
#include <cmath>

namespace TavView {

namespace {

struct Prefix {
    double scale;
    const char* bare;  // after a number of no unit: "1.5k"
    const char* named; // before a unit: "1.5 кА"
};

Prefix prefixFor(double magnitude) {
    if (magnitude >= 1e6)
        return {1e-6, "M", "М"};
    if (magnitude >= 1e3)
        return {1e-3, "k", "к"};
    return {1.0, "", ""};
}

std::string suffix(const Prefix& prefix, const std::string& unit) {
    return unit.empty() ? prefix.bare : " " + (prefix.named + unit);
}

} // namespace

std::string ValueAxis::label(double value, double step, double magnitude, const std::string& unit) {
    // "0.0k" reads worse than a plain zero.
    if (std::abs(value) < step * 1e-6)
        return "0";
    const Prefix prefix = prefixFor(magnitude);
    return AxisTicks::formatFixed(value * prefix.scale,
                                  AxisTicks::decimalsFor(step * prefix.scale)) +
           suffix(prefix, unit);
}

std::string ValueAxis::readout(double value, const std::string& unit) {
    if (!std::isfinite(value))
        return "-";
    if (value == 0.0)
        return unit.empty() ? "0" : "0 " + unit;
    const double magnitude = std::abs(value);
    const Prefix prefix = prefixFor(magnitude);
    const double scaled = magnitude * prefix.scale;
    const int decimals = scaled >= 100.0 ? 0 : scaled >= 10.0 ? 1 : scaled >= 1.0 ? 2 : 3;
    return AxisTicks::formatFixed(value * prefix.scale, decimals) + suffix(prefix, unit);
}

TickSet ValueAxis::choose(double lo, double hi, double pixels, double labelHeight,
                          const std::string& unit) {
    TickSet set;
    if (!(hi > lo) || !(pixels > 0.0))
        return set;
    const double perPixel = (hi - lo) / pixels;
    set.step = AxisTicks::roundStepAtLeast(std::max(2.0 * labelHeight, 1.0) * perPixel);
    const double magnitude = std::max(std::abs(lo), std::abs(hi));
    for (double v : AxisTicks::multiplesIn(lo, hi, set.step))
        set.ticks.push_back({v, label(v, set.step, magnitude, unit)});
    return set;
}

} // namespace TavView
