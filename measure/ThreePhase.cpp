#include "measure/ThreePhase.h"

#include <cmath>
#include <numbers>
#include <optional>

namespace TavMeasure {

double degreesOf(std::complex<double> phasor) {
    double degrees = std::arg(phasor) * 180.0 / std::numbers::pi;
    if (degrees <= -180.0)
        degrees += 360.0;
    return degrees;
}

std::optional<std::array<std::size_t, 3>> phaseSet(const std::vector<ChannelSpec>& channels,
                                                   Quantity quantity) {
    std::array<std::optional<std::size_t>, 3> found;
    for (std::size_t c = 0; c < channels.size(); ++c) {
        const auto phase = static_cast<std::size_t>(channels[c].phase);
        if (channels[c].quantity == quantity && phase < 3 && !found[phase])
            found[phase] = c;
    }
    if (!found[0] || !found[1] || !found[2])
        return std::nullopt;
    return std::array<std::size_t, 3>{*found[0], *found[1], *found[2]};
}

namespace {

Phasor phasorOf(std::complex<double> z) {
    return {std::abs(z), degreesOf(z)};
}

PowerFigures withFactor(double p, double q, double s) {
    return {p, q, s, s > 0.0 ? p / s : 0.0};
}

} // namespace

SequenceComponents sequenceOf(const std::array<std::complex<double>, 3>& abc) {
    const std::complex<double> a = std::polar(1.0, 2 * std::numbers::pi / 3);
    const auto& [pa, pb, pc] = abc;
    SequenceComponents s;
    const std::complex<double> positive = (pa + a * pb + a * a * pc) / 3.0;
    const std::complex<double> negative = (pa + a * a * pb + a * pc) / 3.0;
    s.positive = phasorOf(positive);
    s.negative = phasorOf(negative);
    s.zero = phasorOf((pa + pb + pc) / 3.0);
    s.unbalance = std::abs(positive) > 0.0 ? 100.0 * std::abs(negative) / std::abs(positive) : 0.0;
    return s;
}

ThreePhasePower powerOf(const std::array<double, 3>& active,
                        const std::array<ChannelMeasurement, 3>& u,
                        const std::array<ChannelMeasurement, 3>& i) {
    ThreePhasePower power;
    double p = 0.0, q = 0.0, s = 0.0;
    for (std::size_t k = 0; k < 3; ++k) {
        const double shift =
            (u[k].fundamental.angleDeg - i[k].fundamental.angleDeg) * std::numbers::pi / 180.0;
        const double reactive = u[k].fundamental.rms * i[k].fundamental.rms * std::sin(shift);
        const double apparent = u[k].rms * i[k].rms;
        power.phases[k] = withFactor(active[k], reactive, apparent);
        p += active[k];
        q += reactive;
        s += apparent;
    }
    power.total = withFactor(p, q, s);
    return power;
}

} // namespace TavMeasure
