#pragma once

#include "measure/Measurement.h"

#include <ostream>
#include <vector>

namespace TavInspect {

// {"streams": [...]}: each stream's frequency, window, channels, sequence
// components and power.
void writeMeasureJson(std::ostream& out, const std::vector<TavMeasure::StreamMeasurement>& all);
// The same, a few lines per stream for reading.
void writeMeasureText(std::ostream& out, const std::vector<TavMeasure::StreamMeasurement>& all);

} // namespace TavInspect
