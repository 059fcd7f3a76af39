#pragma once

#include "measure/ChannelSpec.h"

#include <array>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace TavMeasure {

// RMS and angle in degrees, (−180, 180], from the reference channel.
struct Phasor {
    double rms = 0.0;
    double angleDeg = 0.0;
};

struct ChannelMeasurement {
    ChannelSpec spec;
    double rms = 0.0; // true RMS, every harmonic and DC included
    double dc = 0.0;
    Phasor fundamental;
    // In % of the fundamental, at index h = 2 … 50; absent where the sampling
    // rate does not carry the harmonic (and at 0 and 1).
    std::vector<std::optional<double>> harmonics;
    std::optional<double> thd; // % of the fundamental
};

struct SequenceComponents {
    Phasor positive;
    Phasor negative;
    Phasor zero;
    double unbalance = 0.0; // negative over positive, %
};

// Active power is the mean of u × i (every harmonic); apparent power the
// product of true RMS values; reactive power the fundamental's.
struct PowerFigures {
    double p = 0.0; // W
    double q = 0.0; // var
    double s = 0.0; // VA
    double pf = 0.0;
};

struct ThreePhasePower {
    std::array<PowerFigures, 3> phases;
    PowerFigures total;
};

struct StreamMeasurement {
    std::string svId;
    std::uint16_t appId = 0;
    double rateHz = 0.0;
    double frequencyHz = 0.0;
    std::int64_t fromNs = 0;
    std::int64_t toNs = 0;
    std::size_t cycles = 0;
    std::string reference; // the name of the channel at 0°
    std::vector<ChannelMeasurement> channels;
    std::optional<SequenceComponents> current;
    std::optional<SequenceComponents> voltage;
    std::optional<ThreePhasePower> power;
};

// Degrees in (−180, 180].
double degreesOf(std::complex<double> phasor);

} // namespace TavMeasure
