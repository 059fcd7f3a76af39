#include "tools/gen/SvSignal.h"

#include <cmath>
#include <numbers>

namespace TavGen {

namespace {

// A standard normal value that depends only on the sample and the channel,
// so that a capture written twice is the same capture.
double gaussian(std::uint64_t n, std::uint64_t channel) {
    const auto mix = [](std::uint64_t x) {
        x += 0x9E3779B97F4A7C15ull;
        x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ull;
        x = (x ^ (x >> 27)) * 0x94D049BB133111EBull;
        return x ^ (x >> 31);
    };
    const std::uint64_t a = mix(n * 16 + channel), b = mix(a);
    const double u1 = (static_cast<double>(a >> 11) + 1.0) / 9007199254740993.0;
    const double u2 = static_cast<double>(b >> 11) / 9007199254740992.0;
    return std::sqrt(-2.0 * std::log(u1)) * std::cos(2 * std::numbers::pi * u2);
}

} // namespace

double SvSignal::phaseAngle(int phase) const {
    if (phaseAnglesDeg)
        return (*phaseAnglesDeg)[static_cast<std::size_t>(phase)] * std::numbers::pi / 180.0;
    return -phase * (2 * std::numbers::pi / 3);
}

double SvSignal::currentWave(double angle) const {
    double wave = std::sin(angle);
    for (const Harmonic& h : harmonics)
        wave += h.percent / 100.0 * std::sin(h.order * angle);
    return wave;
}

void SvSignal::sample(std::uint64_t n, std::uint32_t rate, std::span<std::int32_t> out) const {
    const double t = static_cast<double>(n) / rate;
    const double omegaT = 2 * std::numbers::pi * frequency * t;
    const double lag = currentLagDeg * std::numbers::pi / 180.0;
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
        const double angle = omegaT + phaseAngle(c);
        const double amplitude = phaseAmplitudes[static_cast<std::size_t>(c)];
        double current =
            currentScale[c] * amplitude * currentPeak * 1000 * currentWave(angle - lag);
        double voltage = voltageScale[c] * amplitude * voltagePeak * 100 * std::sin(angle);
        if (noise > 0.0) {
            current += noise * currentPeak * 1000 * gaussian(n, static_cast<std::uint64_t>(c));
            voltage += noise * voltagePeak * 100 * gaussian(n, static_cast<std::uint64_t>(4 + c));
        }
        base[c] = static_cast<std::int32_t>(std::lround(current));
        base[4 + c] = static_cast<std::int32_t>(std::lround(voltage));
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
