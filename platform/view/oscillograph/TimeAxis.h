#pragma once

#include "platform/view/oscillograph/AxisTicks.h"

namespace TavView {

// Ticks of the time axis: round steps in s, ms or us by zoom level, spaced so
// that no two labels overlap.
class TimeAxis {
public:
    static constexpr double LabelGap = 12.0;
    static constexpr double MinSpacing = 40.0;

    static TickSet choose(double from, double to, double pixels, const TextMeasure& measure);
    static std::string label(double seconds, double step);
};

} // namespace TavView
