#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace TavGen {

// A fault on phase A between two instants: its current and voltage scale by the
// given factors until the breaker opens, after which no current flows.
struct PhaseAFault {
    double atSeconds = 0.5;
    double breakerOpensAtSeconds = 0.58;
    double currentFactor = 10.0;
    double voltageFactor = 0.3;
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

    // Fills `out` with the values of sample `n` (time n / rate after the start);
    // channels beyond eight repeat the pattern.
    void sample(std::uint64_t n, std::uint32_t rate, std::span<std::int32_t> out) const;
};

} // namespace TavGen
