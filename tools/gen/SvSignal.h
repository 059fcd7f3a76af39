#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace TavGen {

// A fault on phase A between two instants: its current and voltage scale by the
// given factors until the breaker opens, after which no current flows.
struct PhaseAFault {
    double atSeconds = 0.5;
    double breakerOpensAtSeconds = 0.58;
    double currentFactor = 10.0;
    double voltageFactor = 0.3;
};

// A harmonic of the currents, in % of their fundamental.
struct Harmonic {
    unsigned order = 3;
    double percent = 0.0;
};

// Three-phase currents and voltages in the 9-2LE order Ia Ib Ic In Ua Ub Uc Un,
// currents in mA and voltages in units of 10 mV.
struct SvSignal {
    double currentPeak = 100.0;
    double voltagePeak = 10000.0;
    double frequency = 50.0;
    std::optional<PhaseAFault> fault;
    // One sample, the one nearest this time, at three times its peak on every
    // channel: a glitch that any thinning of the curve must not hide.
    std::optional<double> spikeAtSeconds;
    // Known content for the measurements: harmonics of the currents, each
    // phase's amplitude factor and angle (degrees, of currents and voltages
    // alike; A 0, B −120, C 120 when not given), how far the currents lag their
    // voltages, and Gaussian noise of this share of each peak as its RMS.
    std::vector<Harmonic> harmonics;
    std::array<double, 3> phaseAmplitudes{1.0, 1.0, 1.0};
    std::optional<std::array<double, 3>> phaseAnglesDeg;
    double currentLagDeg = 0.0;
    double noise = 0.0;

    // Fills `out` with the values of sample `n` (time n / rate after the start);
    // channels beyond eight repeat the pattern.
    void sample(std::uint64_t n, std::uint32_t rate, std::span<std::int32_t> out) const;

private:
    double phaseAngle(int phase) const; // radians
    double currentWave(double angle) const;
};

} // namespace TavGen
