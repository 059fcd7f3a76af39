#include "waveform/SvTrace.h"

#include "comtrade/AsduClock.h"
#include "comtrade/WindowFrames.h"
#include "platform/parser/ByteReader.h"
#include "platform/parser/EthernetDecoder.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/SvDecoder.h"
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

// Every ASDU of an SV frame as a view into its bytes; false when the bytes are
// not a well-formed SV frame.
bool decodeFrame(const std::vector<std::uint8_t>& bytes,
                 std::vector<TavIec61850Parser::SvAsduView>& views) {
    using namespace TavIec61850Parser;
    EthernetFrame eth;
    if (!decodeEthernet(bytes.data(), bytes.size(), eth) || eth.etherType != kEtherTypeSv)
        return false;
    try {
        decodeSvApdu(eth.payload, eth.payloadSize, views);
    } catch (const MalformedFrame&) {
        return false;
    }
    return true;
}

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
    // Views into the frame, not copies: a zoomed-out window reads millions.
    std::vector<TavIec61850Parser::SvAsduView> asduViews;
    const auto take = [&](std::size_t k, const std::vector<std::uint8_t>& bytes) {
        if (!decodeFrame(bytes, asduViews) || asduViews.empty())
            return; // a frame that no longer decodes gives no sample
        if (!clock)
            clock.emplace(asduViews.front().counters, spacing, stream.asdusPerFrame);
        const std::int64_t frameNs = frames.frames[k].ns;
        for (std::size_t a = 0; a < asduViews.size(); ++a) {
            const std::int64_t ns = clock->instant(frameNs, a, asduViews.size());
            const auto& view = asduViews[a];
            for (std::size_t c = 0; c < indices.size(); ++c)
                if (indices[c] < view.valueCount())
                    sinks[c].add({ns, static_cast<float>(static_cast<std::int32_t>(
                                          TavIec61850Parser::ByteReader::load32(
                                              view.seqData + 8 * indices[c], true)))});
        }
    };
    readFrameRuns(frames.frames, failure, take);
    for (auto& sink : sinks)
        sink.finish();
    return traces;
}

} // namespace TavWaveform
