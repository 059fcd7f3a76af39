#include "measure/Measure.h"

#include "job/EveryCore.h"

#include "measure/SampleWindow.h"
#include "measure/StreamAccumulator.h"
#include "measure/ThreePhase.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <thread>

namespace TavMeasure {

namespace {

constexpr double kBlockCycles = 10.0;
// Samples read beyond a block on each side for the interpolation's support.
constexpr std::int64_t kSupportNs = 2'000'000;

using StreamBlocks = std::vector<std::optional<BlockResult>>; // one per input

// The channel the frequency is taken from: the strongest voltage, else the
// strongest channel, so that a dead input never sets the grid.
std::size_t frequencyChannel(const SampleWindow& window, const std::vector<ChannelSpec>& specs) {
    std::size_t best = 0;
    double bestPower = -1.0;
    bool bestIsVoltage = false;
    for (std::size_t c = 0; c < specs.size(); ++c) {
        double square = 0.0;
        for (const double v : window.values[c])
            square += v * v;
        const bool voltage = specs[c].quantity == Quantity::Voltage && square > 0.0;
        if ((voltage && !bestIsVoltage) || (voltage == bestIsVoltage && square > bestPower)) {
            best = c;
            bestPower = square;
            bestIsVoltage = voltage;
        }
    }
    return best;
}

std::vector<PowerPair> powerPairs(const std::vector<ChannelSpec>& channels) {
    const auto u = phaseSet(channels, Quantity::Voltage);
    const auto i = phaseSet(channels, Quantity::Current);
    if (!u || !i)
        return {};
    return {{(*u)[0], (*i)[0]}, {(*u)[1], (*i)[1]}, {(*u)[2], (*i)[2]}};
}

std::optional<BlockResult> blockOf(const StreamInput& input, std::int64_t fromNs, std::int64_t toNs,
                                   const std::atomic<bool>* cancel) {
    const SampleWindow window = readSampleWindow(*input.stream, *input.clock, input.channels,
                                                 fromNs - kSupportNs, toNs + kSupportNs, cancel);
    if (window.empty() || input.channels.empty())
        return std::nullopt;
    return analyseBlock(window, fromNs, toNs, frequencyChannel(window, input.channels),
                        input.clock->nominalHz(), powerPairs(input.channels));
}

std::complex<double> fundamentalOf(const std::optional<BlockResult>& block, std::size_t channel) {
    if (!block || channel >= block->channels.size() || !block->channels[channel].harmonics[1])
        return 0.0;
    return *block->channels[channel].harmonics[1];
}

} // namespace

std::size_t defaultReference(const std::vector<ChannelSpec>& channels) {
    for (std::size_t c = 0; c < channels.size(); ++c)
        if (channels[c].quantity == Quantity::Voltage && channels[c].phase == Phase::A)
            return c;
    return 0;
}

std::vector<StreamMeasurement> measure(const std::vector<StreamInput>& inputs, std::int64_t fromNs,
                                       std::int64_t toNs, std::optional<ChannelRef> reference,
                                       const std::atomic<bool>* cancel,
                                       const std::function<void(double)>& progress) {
    if (inputs.empty() || toNs <= fromNs)
        return {};
    const double cycleNs = 1e9 / inputs.front().clock->nominalHz();
    const auto span = static_cast<double>(toNs - fromNs);
    // Blocks of ten nominal cycles, the last one taking what is left, so that
    // no block is too short to tell its frequency.
    const double blockNs = kBlockCycles * cycleNs;
    const auto blocks = static_cast<std::size_t>(std::max(1.0, std::floor(span / blockNs + 1e-6)));
    std::vector<StreamBlocks> results(blocks, StreamBlocks(inputs.size()));
    std::atomic<std::size_t> done{0};
    std::mutex progressMutex;
    TavJob::forEachOnEveryCore(blocks, [&](std::size_t b) {
        if (cancel != nullptr && cancel->load())
            return;
        const auto from = fromNs + static_cast<std::int64_t>(blockNs * static_cast<double>(b));
        const auto to =
            b + 1 == blocks
                ? toNs
                : fromNs + static_cast<std::int64_t>(blockNs * static_cast<double>(b + 1));
        for (std::size_t s = 0; s < inputs.size(); ++s)
            results[b][s] = blockOf(inputs[s], from, to, cancel);
        const double share = static_cast<double>(++done) / static_cast<double>(blocks);
        if (progress) {
            std::lock_guard<std::mutex> lock(progressMutex);
            progress(share);
        }
    });
    if (cancel != nullptr && cancel->load())
        return {};

    std::vector<StreamMeasurement> measured;
    for (std::size_t s = 0; s < inputs.size(); ++s) {
        const StreamInput& input = inputs[s];
        const ChannelRef ref = reference.value_or(ChannelRef{s, defaultReference(input.channels)});
        StreamAccumulator sums(input.channels, powerPairs(input.channels));
        for (const StreamBlocks& block : results)
            if (block[s])
                sums.add(*block[s], fundamentalOf(block[ref.stream], ref.channel));
        StreamMeasurement m = sums.finish();
        m.svId = input.stream->svId;
        m.appId = input.stream->appId;
        m.rateHz = input.clock->rateHz();
        if (ref.channel < inputs[ref.stream].channels.size())
            m.reference = inputs[ref.stream].channels[ref.channel].name;
        measured.push_back(std::move(m));
    }
    return measured;
}

} // namespace TavMeasure
