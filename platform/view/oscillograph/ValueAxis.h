#pragma once

#include "platform/view/oscillograph/AxisTicks.h"

namespace TavView {

// Ticks of the value axis: round steps at least two label heights apart.
// Values of a known unit ("А", "В") are written with it and its SI prefix,
// "1.5 кА"; values of none with a bare k or M.
class ValueAxis {
public:
    static TickSet choose(double lo, double hi, double pixels, double labelHeight,
                          const std::string& unit = {});
    // The label of one value when ticks are `step` apart and the axis reaches `magnitude`.
    static std::string label(double value, double step, double magnitude,
                             const std::string& unit = {});
    // A value as the readout shows it: three significant digits and a prefix.
    static std::string readout(double value, const std::string& unit = {});
};

} // namespace TavView
