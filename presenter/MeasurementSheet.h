#pragma once

#include "measure/Measurement.h"
#include "view/PhasorArrow.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace TavNA {

// The harmonics of one channel for the bar chart, index h in % (2 … 50).
struct HarmonicBars {
    std::string channel;
    std::vector<std::optional<double>> percent;
};

// What the panel shows of a measurement, as text in the window's language
// and the figures its diagrams draw.
struct MeasurementSheet {
    std::string heading;
    std::vector<std::vector<std::string>>
        channels; // per channel: name, RMS, fundamental, angle, THD, DC
    std::vector<std::vector<std::string>>
        sequences; // per set: name, positive, negative, zero, unbalance
    std::vector<std::vector<std::string>> power; // per phase and total: name, P, Q, S, cos φ
    std::vector<PhasorArrow> phasors;
    std::vector<HarmonicBars> harmonics;
};

MeasurementSheet makeSheet(const std::vector<TavMeasure::StreamMeasurement>& measured);

// "504.6 А", "400.4 кВ", "1.2 МВт": four significant digits and an SI prefix.
std::string withUnit(double value, const std::string& unit);
// "10 периодов, 200 мс".
std::string cyclesText(std::size_t cycles, double seconds);

} // namespace TavNA
