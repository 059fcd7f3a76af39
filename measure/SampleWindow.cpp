#include "measure/SampleWindow.h"

#include "stream/SvSampleReader.h"
#include "stream/WindowFrames.h"

#include <algorithm>
#include <numeric>

namespace TavMeasure {

namespace {

constexpr std::size_t kCancelEvery = 4096;

TavIec61850Parser::Timest timestOf(std::int64_t ns) {
    constexpr std::int64_t second = 1'000'000'000;
    ns = std::max<std::int64_t>(ns, 0);
    return {static_cast<std::uint32_t>(ns / second), static_cast<std::uint32_t>(ns % second)};
}

// Sorts by instant and keeps the first sample of each instant.
void orderAndDeduplicate(SampleWindow& w) {
    std::vector<std::size_t> order(w.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return w.instantsNs[a] < w.instantsNs[b];
    });
    SampleWindow sorted;
    sorted.values.resize(w.values.size());
    for (const std::size_t i : order) {
        if (!sorted.empty() && sorted.instantsNs.back() == w.instantsNs[i])
            continue;
        sorted.instantsNs.push_back(w.instantsNs[i]);
        for (std::size_t c = 0; c < w.values.size(); ++c)
            sorted.values[c].push_back(w.values[c][i]);
    }
    w = std::move(sorted);
}

} // namespace

SampleWindow readSampleWindow(const TavIec61850Parser::Sv& stream,
                              const TavStream::SamplingClock& clock,
                              const std::vector<ChannelSpec>& channels, std::int64_t fromNs,
                              std::int64_t toNs, const std::atomic<bool>* cancel) {
    SampleWindow window;
    window.values.resize(channels.size());
    const auto frames = TavStream::framesInWindow(stream, timestOf(fromNs),
                                                  timestOf(toNs + TavStream::kTransferMarginNs));
    TavStream::SvSampleReader reader(clock, stream.svId);
    bool ordered = true;
    for (std::size_t begin = 0; begin < frames.frames.size(); begin += kCancelEvery) {
        if (cancel != nullptr && cancel->load())
            return {};
        const std::size_t end = std::min(frames.frames.size(), begin + kCancelEvery);
        TavStream::readFrames(
            frames.frames, begin, end, [&](std::size_t i, const std::vector<std::uint8_t>& bytes) {
                reader.read(bytes, frames.frames[i].ns, [&](std::int64_t ns, const auto& asdu) {
                    if (ns < fromNs || ns > toNs)
                        return;
                    if (!window.empty() && ns <= window.instantsNs.back())
                        ordered = false;
                    window.instantsNs.push_back(ns);
                    for (std::size_t c = 0; c < channels.size(); ++c) {
                        const std::size_t index = channels[c].index;
                        const double raw = index < asdu.valueCount()
                                               ? TavStream::SvSampleReader::value(asdu, index)
                                               : 0.0;
                        window.values[c].push_back(raw * channels[c].scale);
                    }
                });
            });
    }
    if (!ordered)
        orderAndDeduplicate(window);
    return window;
}

} // namespace TavMeasure
