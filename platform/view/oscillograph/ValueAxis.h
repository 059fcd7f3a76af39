#pragma once

#include "platform/view/oscillograph/AxisTicks.h"

namespace TavView {

// Ticks of the value axis: round steps, labels with k or M prefixes, at least
// two label heights apart.
class ValueAxis {
public:
    static TickSet choose(double lo, double hi, double pixels, double labelHeight);
    // The label of one value when ticks are `step` apart and the axis reaches `magnitude`.
    static std::string label(double value, double step, double magnitude);
    // A value as the readout shows it: three significant digits and a prefix.
    static std::string readout(double value);
};

} // namespace TavView
