#include "waveform/SvTrace.h"

#include "platform/parser/WindowQuery.h"
#include "stream/SvSampleReader.h"
#include "stream/WindowFrames.h"
#include "waveform/BucketEnvelope.h"
#include "waveform/FrameRuns.h"
#include "waveform/SummaryStore.h"

#include <algorithm>
#include <exception>
#include <memory>

namespace TavWaveform {

using TavIec61850Parser::Sv;
using TavStream::PlacedFrame;
using TavStream::WindowFrames;

namespace {

// Where the samples of one channel go: straight to its points, or through
// its column envelope.
class ChannelSink {
public:
    ChannelSink(const TraceWindow& window, bool envelope, std::vector<TracePoint>& points)
        : toNs_(window.toNs) {
        if (envelope)
            envelope_ =
                std::make_unique<BucketEnvelope>(window, BucketEnvelope::Shape::Band, points);
        else
            points_ = &points;
    }
    // Frames are read past the window's end for its last samples; the samples
    // after its end stay out.
    void add(const TracePoint& p) {
        if (p.ns > toNs_)
            return;
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
    std::int64_t toNs_;
    std::unique_ptr<BucketEnvelope> envelope_;
    std::vector<TracePoint>* points_ = nullptr;
};

// Whole summary blocks a column must hold before the summary stands in for
// the frames: a block is then placed within an eighth of a column.
constexpr std::size_t kSummaryBlocksPerColumn = 4;

// Of the window's frames, the first `headEnd` and those from `tailBegin` on
// are read; the blocks [firstBlock, endBlock) between them come from the
// summary.
struct FrameSpan {
    std::size_t headEnd = 0;
    std::size_t firstBlock = 0;
    std::size_t endBlock = 0;
    std::size_t tailBegin = 0;
};

FrameSpan split(std::size_t first, std::size_t count, std::size_t blockFrames) {
    FrameSpan span;
    span.firstBlock = (first + blockFrames - 1) / blockFrames;
    span.endBlock = std::max(span.firstBlock, (first + count) / blockFrames);
    span.headEnd = std::min(count, span.firstBlock * blockFrames - first);
    span.tailBegin = std::max(span.headEnd, span.endBlock * blockFrames - first);
    return span;
}

// The window's frames by their place in the stream's only file, when it has
// one file whose times never go backwards: found without copying a frame.
std::optional<std::pair<std::size_t, std::size_t>> orderedSpan(const Sv& stream,
                                                               const TraceWindow& window) {
    if (stream.files.size() != 1 || !stream.files.begin()->timeOrdered)
        return std::nullopt;
    return stream.files.begin()->orderedWindow(window.fromStamp(), window.toStamp());
}

std::vector<PlacedFrame> placed(const TavIec61850Parser::PackageFile& file, std::size_t begin,
                                std::size_t end) {
    std::vector<PlacedFrame> frames;
    frames.reserve(end > begin ? end - begin : 0);
    for (std::size_t i = begin; i < end; ++i)
        frames.push_back(
            {TavStream::toNanoseconds(file.packages[i].time), file.packages[i].offset, &file.path});
    return frames;
}

} // namespace

Traces SvTrace::build(const Sv& stream, const std::vector<std::size_t>& indices,
                      const TraceWindow& window, ReadFailures& failure,
                      TavStream::StreamClocks* clocks, SummaryStore* summaries) {
    TavStream::StreamClocks own;
    const TavStream::SamplingClock& clock = (clocks != nullptr ? *clocks : own).of(stream);
    // The window's last samples come in frames that arrive after its end.
    TraceWindow arrivals = window;
    arrivals.toNs += TavStream::kTransferMarginNs;
    const auto span = orderedSpan(stream, arrivals);
    WindowFrames merged; // of several files, or one out of time order
    if (!span)
        merged = TavStream::framesInWindow(stream, arrivals.fromStamp(), arrivals.toStamp());
    const std::size_t count = span ? span->second - span->first : merged.frames.size();
    Traces traces;
    traces.channels.resize(indices.size());
    traces.envelope = count * std::max<std::uint32_t>(1, stream.asdusPerFrame) > window.budget();
    std::vector<ChannelSink> sinks;
    sinks.reserve(indices.size());
    for (auto& points : traces.channels)
        sinks.emplace_back(window, traces.envelope, points);

    TavStream::SvSampleReader samples(clock, stream.svId);
    const auto read = [&](const std::vector<PlacedFrame>& frames) {
        readFrameRuns(frames, failure, [&](std::size_t k, const std::vector<std::uint8_t>& bytes) {
            // A frame that no longer decodes gives no sample.
            samples.read(bytes, frames[k].ns,
                         [&](std::int64_t ns, const TavIec61850Parser::SvAsduView& asdu) {
                             for (std::size_t c = 0; c < indices.size(); ++c)
                                 if (indices[c] < asdu.valueCount())
                                     sinks[c].add(
                                         {ns, static_cast<float>(TavStream::SvSampleReader::value(
                                                  asdu, indices[c]))});
                         });
        });
    };
    // Asked for as soon as the stream is drawn at all, so that it is ready,
    // built on the worker, by the time the user zooms out.
    const std::size_t wide = kSummaryBlocksPerColumn *
                             SampleSummary::blockFramesFor(stream.valuesPerAsdu) * window.columns;
    std::shared_ptr<const SampleSummary> summary;
    if (span && summaries != nullptr && stream.files.begin()->packages.size() >= wide)
        summary = summaries->find(stream, clock);
    if (!summary || !traces.envelope || count < wide) {
        read(span ? placed(*stream.files.begin(), span->first, span->second) : merged.frames);
    } else {
        // The frames before the first whole block and after the last one are
        // read; the blocks between come from the summary, each at its middle.
        const auto& file = *stream.files.begin();
        const FrameSpan parts = split(span->first, count, summary->blockFrames());
        read(placed(file, span->first, span->first + parts.headEnd));
        for (std::size_t b = parts.firstBlock; b < parts.endBlock; ++b) {
            const auto& block = summary->block(b);
            const std::int64_t mid = block.firstNs + (block.lastNs - block.firstNs) / 2;
            for (std::size_t c = 0; c < indices.size(); ++c) {
                std::int32_t lo = 0, hi = 0;
                if (!summary->range(b, indices[c], lo, hi))
                    continue;
                sinks[c].add({mid, static_cast<float>(lo)});
                sinks[c].add({mid, static_cast<float>(hi)});
            }
        }
        read(placed(file, span->first + parts.tailBegin, span->second));
    }
    for (auto& sink : sinks)
        sink.finish();
    return traces;
}

} // namespace TavWaveform
