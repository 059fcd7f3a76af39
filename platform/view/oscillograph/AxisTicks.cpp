#include "platform/view/oscillograph/AxisTicks.h"

#include <cmath>
#include <cstdio>

namespace TavView::AxisTicks {

double roundStepAtLeast(double raw) {
    if (!(raw > 0.0) || !std::isfinite(raw))
        return 1.0;
    const double decade = std::pow(10.0, std::floor(std::log10(raw)));
    for (double m : {1.0, 2.0, 5.0, 10.0}) {
        // A relative tolerance keeps 0.3/3 from becoming the next step up.
        if (m * decade >= raw * (1.0 - 1e-9))
            return m * decade;
    }
    return 10.0 * decade;
}

double nextRoundStep(double step) {
    return roundStepAtLeast(step * 1.5);
}

int decimalsFor(double step) {
    if (!(step > 0.0))
        return 0;
    const double d = std::ceil(-std::log10(step) - 1e-9);
    return d > 0.0 ? static_cast<int>(d) : 0;
}

std::string formatFixed(double value, int decimals) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    std::string text = buffer;
    if (text[0] == '-' && text.find_first_not_of("-0.") == std::string::npos)
        text.erase(0, 1);
    return text;
}

std::vector<double> multiplesIn(double from, double to, double step) {
    std::vector<double> values;
    if (!(step > 0.0) || !(to >= from))
        return values;
    const double tolerance = step * 1e-9;
    const double first = std::ceil((from - tolerance) / step);
    const double last = std::floor((to + tolerance) / step);
    if (last - first > 10000.0)
        return values;
    for (double i = first; i <= last; i += 1.0)
        values.push_back(i * step);
    return values;
}

} // namespace TavView::AxisTicks
