#include "tools/gen/SvSignal.h"

#include <cmath>
#include <numbers>

namespace TavGen {

void SvSignal::sample(std::uint64_t n, std::uint32_t rate, std::span<std::int32_t> out) const {
    const double t = static_cast<double>(n) / rate;
    const double omegaT = 2 * std::numbers::pi * frequency * t;
    const double shift = 2 * std::numbers::pi / 3;
    double currentScale[3] = {1, 1, 1};
    double voltageScale[3] = {1, 1, 1};
    if (fault && t >= fault->atSeconds) {
        if (t >= fault->breakerOpensAtSeconds) {
            currentScale[0] = currentScale[1] = currentScale[2] = 0;
        } else {
            currentScale[0] = fault->currentFactor;
            voltageScale[0] = fault->voltageFactor;
        }
    }
    std::int32_t base[8];
    for (int c = 0; c < 3; ++c) {
        base[c] = static_cast<std::int32_t>(
            std::lround(currentScale[c] * currentPeak * 1000 * std::sin(omegaT - c * shift)));
        base[4 + c] = static_cast<std::int32_t>(
            std::lround(voltageScale[c] * voltagePeak * 100 * std::sin(omegaT - c * shift)));
    }
    base[3] = -(base[0] + base[1] + base[2]);
    base[7] = -(base[4] + base[5] + base[6]);
    if (spikeAtSeconds && static_cast<double>(n) == std::round(*spikeAtSeconds * rate)) {
        for (int c = 0; c < 8; ++c)
            base[c] = static_cast<std::int32_t>(
                std::lround(3 * (c < 4 ? currentPeak * 1000 : voltagePeak * 100)));
    }
    for (std::size_t c = 0; c < out.size(); ++c)
        out[c] = base[c % 8];
}

} // namespace TavGen
