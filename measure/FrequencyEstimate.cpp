#include "measure/FrequencyEstimate.h"

#include "measure/Resampler.h"
#include "measure/Spectrum.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace TavMeasure {

namespace {

constexpr double kRefineSteps = 3;

double meanOf(const std::vector<double>& v, std::size_t begin, std::size_t end) {
    double sum = 0.0;
    for (std::size_t i = begin; i < end; ++i)
        sum += v[i];
    return end > begin ? sum / static_cast<double>(end - begin) : 0.0;
}

// Rising crossings of the mean, armed only after the signal went a tenth of
// its RMS below it, so that noise and harmonics near zero count once a cycle.
double fromZeroCrossings(const SampleWindow& w, std::size_t channel, std::size_t begin,
                         std::size_t end) {
    const auto& v = w.values[channel];
    const double mean = meanOf(v, begin, end);
    double square = 0.0;
    for (std::size_t i = begin; i < end; ++i)
        square += (v[i] - mean) * (v[i] - mean);
    const double hysteresis =
        0.1 * std::sqrt(square / static_cast<double>(std::max<std::size_t>(1, end - begin)));
    if (hysteresis <= 0.0)
        return 0.0;
    bool armed = false;
    double first = 0.0, last = 0.0;
    std::size_t crossings = 0;
    for (std::size_t i = begin + 1; i < end; ++i) {
        const double a = v[i - 1] - mean, b = v[i] - mean;
        if (b < -hysteresis)
            armed = true;
        if (!armed || a >= 0.0 || b < 0.0)
            continue;
        const double ta = static_cast<double>(w.instantsNs[i - 1]);
        const double tb = static_cast<double>(w.instantsNs[i]);
        const double at = ta + (tb - ta) * (-a) / (b - a);
        (crossings++ == 0 ? first : last) = at;
        armed = false;
    }
    return crossings >= 2 ? 1e9 * static_cast<double>(crossings - 1) / (last - first) : 0.0;
}

std::complex<double> fundamentalAt(const Resampler& resampler, std::size_t channel, double startNs,
                                   double frequencyHz, std::size_t cycles, std::size_t perCycle) {
    const Grid grid{startNs, 1e9 / (frequencyHz * static_cast<double>(perCycle)),
                    cycles * perCycle};
    Spectrum spectrum(grid.length);
    return spectrum.transform(resampler.channel(grid, channel))[cycles];
}

} // namespace

std::size_t pointsPerCycle(const SampleWindow& window, double frequencyHz) {
    if (window.size() < 2 || frequencyHz <= 0.0)
        return 8;
    const double spacing =
        static_cast<double>(window.instantsNs.back() - window.instantsNs.front()) /
        static_cast<double>(window.size() - 1);
    return std::max<std::size_t>(
        8, static_cast<std::size_t>(std::lround(1e9 / (spacing * frequencyHz))));
}

std::size_t wholeCycles(double spanNs, double frequencyHz) {
    return static_cast<std::size_t>(std::max(0.0, std::floor(spanNs * frequencyHz / 1e9 + 0.01)));
}

double estimateFrequency(const SampleWindow& window, std::size_t channel, std::int64_t fromNs,
                         std::int64_t toNs, double nominalHz) {
    const auto& at = window.instantsNs;
    const std::size_t begin = std::lower_bound(at.begin(), at.end(), fromNs) - at.begin();
    const std::size_t end = std::upper_bound(at.begin(), at.end(), toNs) - at.begin();
    double f = fromZeroCrossings(window, channel, begin, end);
    if (f < nominalHz * 0.5 || f > nominalHz * 1.5)
        return nominalHz;
    const Resampler resampler(window);
    const double span = static_cast<double>(toNs - fromNs);
    for (int step = 0; step < kRefineSteps; ++step) {
        const std::size_t cycles = wholeCycles(span, f);
        if (cycles < 2)
            break;
        const std::size_t half = cycles / 2;
        const std::size_t perCycle = pointsPerCycle(window, f);
        const double apartNs = static_cast<double>(cycles - half) * 1e9 / f;
        const auto early =
            fundamentalAt(resampler, channel, static_cast<double>(fromNs), f, half, perCycle);
        const auto late = fundamentalAt(resampler, channel, static_cast<double>(fromNs) + apartNs,
                                        f, half, perCycle);
        if (std::abs(early) == 0.0 || std::abs(late) == 0.0)
            break;
        f += std::arg(late / early) / (2 * std::numbers::pi * apartNs / 1e9);
    }
    return f;
}

} // namespace TavMeasure
