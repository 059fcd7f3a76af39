#include "waveform/SvTrace.h"

#include "comtrade/AsduClock.h"
#include "comtrade/WindowFrames.h"
#include "platform/parser/SvParser.h"
#include "waveform/BucketEnvelope.h"
#include "waveform/FrameRuns.h"

#include <algorithm>
#include <exception>
#include <memory>

namespace TavWaveform {

using TavComtrade::AsduClock;
using TavComtrade::PlacedFrame;
using TavComtrade::WindowFrames;
using TavIec61850Parser::Sv;
using TavIec61850Parser::SvParser;

namespace {

constexpr std::size_t kSpacingFrames = 4097;

// Where the samples of one channel go: straight to its points, or through
// its column envelope.
class ChannelSink {
public:
    ChannelSink(const TraceWindow& window, bool envelope, std::vector<TracePoint>& points) {
        if (envelope)
            envelope_ =
                std::make_unique<BucketEnvelope>(window, BucketEnvelope::Shape::Band, points);
        else
            points_ = &points;
    }
    void add(const TracePoint& p) {
        if (envelope_)
            envelope_->add(p);
        else
            points_->push_back(p);
    }
    void finish() {
        if (envelope_)
            envelope_->finish();
    }

private:
    std::unique_ptr<BucketEnvelope> envelope_;
    std::vector<TracePoint>* points_ = nullptr;
};

} // namespace

double SvTrace::frameSpacingNs(const Sv& stream) {
    const TavIec61850Parser::PackageFile* largest = nullptr;
    for (const auto& file : stream.files)
        if (largest == nullptr || file.packages.size() > largest->packages.size())
            largest = &file;
    if (largest == nullptr)
        return 0.0;
    WindowFrames sample;
    const std::size_t n = std::min(kSpacingFrames, largest->packages.size());
    for (std::size_t i = 0; i < n; ++i)
        sample.frames.push_back(
            {TavComtrade::toNanoseconds(largest->packages[i].time), 0, &largest->path});
    return sample.frameSpacingNs();
}

Traces SvTrace::build(const Sv& stream, const std::vector<std::size_t>& indices,
                      const TraceWindow& window, std::optional<std::string>& failure) {
    const WindowFrames frames =
        TavComtrade::framesInWindow(stream, window.fromStamp(), window.toStamp());
    Traces traces;
    traces.channels.resize(indices.size());
    const std::size_t asdus = std::max<std::uint32_t>(1, stream.asdusPerFrame);
    traces.envelope = frames.frames.size() * asdus > window.budget();
    std::vector<ChannelSink> sinks;
    sinks.reserve(indices.size());
    for (auto& points : traces.channels)
        sinks.emplace_back(window, traces.envelope, points);

    std::optional<AsduClock> clock;
    const double spacing = frameSpacingNs(stream);
    const auto take = [&](std::size_t k, const std::vector<std::uint8_t>& bytes) {
        const PlacedFrame& frame = frames.frames[k];
        std::vector<TavIec61850Parser::ASDUData> decoded;
        try {
            decoded = SvParser::parseASDUFromFrame(bytes.data(), bytes.size());
        } catch (const std::exception&) {
            return; // a frame that no longer decodes gives no sample
        }
        if (decoded.empty())
            return;
        if (!clock)
            clock.emplace(decoded.front().counters, spacing, stream.asdusPerFrame);
        for (std::size_t a = 0; a < decoded.size(); ++a) {
            const std::int64_t ns = clock->instant(frame.ns, a, decoded.size());
            const auto& values = decoded[a].values;
            for (std::size_t c = 0; c < indices.size(); ++c)
                if (indices[c] < values.size())
                    sinks[c].add({ns, static_cast<float>(values[indices[c]].value)});
        }
    };
    readFrameRuns(frames.frames, failure, take);
    for (auto& sink : sinks)
        sink.finish();
    return traces;
}

} // namespace TavWaveform
