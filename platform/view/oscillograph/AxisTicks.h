#pragma once

#include <functional>
#include <string>
#include <vector>

namespace TavView {

struct Tick {
    double value = 0.0;
    std::string label;
};

struct TickSet {
    double step = 0.0;
    std::vector<Tick> ticks;
};

// Measures a label in pixels along the axis it is drawn on.
using TextMeasure = std::function<double(const std::string&)>;

namespace AxisTicks {

// The smallest step of the form {1, 2, 5} x 10^k that is not below `raw`.
double roundStepAtLeast(double raw);
// The next larger round step after a round `step`.
double nextRoundStep(double step);
// Digits after the point that show multiples of `step` exactly.
int decimalsFor(double step);
// Fixed-point text without a "-0".
std::string formatFixed(double value, int decimals);
// Multiples of step in [from, to], computed from the index so errors do not add up.
std::vector<double> multiplesIn(double from, double to, double step);

} // namespace AxisTicks

} // namespace TavView
