#include "measure/BlockAnalysis.h"

#include "measure/FrequencyEstimate.h"
#include "measure/Resampler.h"
#include "measure/Spectrum.h"

#include <algorithm>

namespace TavMeasure {

namespace {

ChannelBlock channelBlock(Spectrum& spectrum, const std::vector<double>& signal, std::size_t cycles,
                          std::size_t perCycle) {
    ChannelBlock block;
    double square = 0.0;
    for (const double v : signal)
        square += v * v;
    const auto length = static_cast<double>(signal.size());
    block.meanSquare = square / length;
    const auto bins = spectrum.transform(signal);
    block.dc = bins[0].real() / length;
    block.harmonics.resize(kMaxHarmonic + 1);
    for (std::size_t h = 1; h <= kMaxHarmonic && 2 * h < perCycle; ++h)
        block.harmonics[h] = rmsPhasor(bins[h * cycles], signal.size());
    return block;
}

double meanProduct(const std::vector<double>& u, const std::vector<double>& i) {
    double sum = 0.0;
    for (std::size_t k = 0; k < u.size(); ++k)
        sum += u[k] * i[k];
    return u.empty() ? 0.0 : sum / static_cast<double>(u.size());
}

} // namespace

std::optional<BlockResult> analyseBlock(const SampleWindow& window, std::int64_t fromNs,
                                        std::int64_t toNs, std::size_t frequencyChannel,
                                        double nominalHz, const std::vector<PowerPair>& pairs) {
    if (window.size() < 2)
        return std::nullopt;
    fromNs = std::max(fromNs, window.instantsNs.front());
    toNs = std::min(toNs, window.instantsNs.back());
    if (toNs <= fromNs)
        return std::nullopt;
    BlockResult result;
    result.startNs = fromNs;
    result.frequencyHz = estimateFrequency(window, frequencyChannel, fromNs, toNs, nominalHz);
    result.cycles = wholeCycles(static_cast<double>(toNs - fromNs), result.frequencyHz);
    if (result.cycles == 0)
        return std::nullopt;
    const std::size_t perCycle = pointsPerCycle(window, result.frequencyHz);
    const Grid grid{static_cast<double>(fromNs),
                    1e9 / (result.frequencyHz * static_cast<double>(perCycle)),
                    result.cycles * perCycle};
    const auto signals = Resampler(window).all(grid);
    Spectrum spectrum(grid.length);
    for (const auto& signal : signals)
        result.channels.push_back(channelBlock(spectrum, signal, result.cycles, perCycle));
    for (const PowerPair& pair : pairs)
        result.activePower.push_back(meanProduct(signals[pair.voltage], signals[pair.current]));
    return result;
}

} // namespace TavMeasure
