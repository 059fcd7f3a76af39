#include "waveform/GooseTrace.h"

#include "platform/parser/GooseParser.h"
#include "stream/WindowFrames.h"
#include "waveform/BucketEnvelope.h"
#include "waveform/FrameRuns.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>

namespace TavWaveform {

using TavIec61850Parser::GooseParser;
using TavStream::PlacedFrame;

namespace {

constexpr float kNoState = std::numeric_limits<float>::quiet_NaN();

// The entries' states in one frame; NaN where the frame does not decode or
// holds fewer entries.
std::vector<float> statesOf(const std::vector<std::uint8_t>& bytes,
                            const std::vector<std::size_t>& indices) {
    std::vector<float> states(indices.size(), kNoState);
    try {
        const auto pdu = GooseParser::parsePduFromFrame(bytes.data(), bytes.size());
        const auto values = GooseParser::parseBooleanValues(pdu.data);
        for (std::size_t c = 0; c < indices.size(); ++c)
            if (indices[c] < values.size())
                states[c] = values[indices[c]];
    } catch (const std::exception&) {
    }
    return states;
}

// The step curve spans the whole window: the state in force before it from
// the left edge, the last known state up to the right edge.
void completeSteps(std::vector<TracePoint>& points, std::optional<float> before,
                   const TraceWindow& window) {
    if (before && std::isnan(*before))
        before.reset();
    if (points.empty()) {
        if (!before)
            return;
        points.push_back({window.fromNs, *before});
    } else if (before && points.front().ns > window.fromNs) {
        points.insert(points.begin(), {window.fromNs, *before});
    }
    points.push_back({window.toNs, points.back().value});
}

} // namespace

Traces GooseTrace::build(const TavIec61850Parser::Goose& stream,
                         const std::vector<std::size_t>& indices, const TraceWindow& window,
                         ReadFailures& failure) {
    const auto frames = TavStream::framesInWindow(stream, window.fromStamp(), window.toStamp());
    Traces traces;
    traces.channels.resize(indices.size());
    traces.envelope = frames.frames.size() > window.budget();
    // A bucket gives up to four points; one column fewer than the plot keeps
    // a curve, with its two edge points, under four points a column.
    TraceWindow buckets = window;
    buckets.columns = std::max<std::size_t>(1, window.columns - 1);
    std::vector<BucketEnvelope> envelopes;
    envelopes.reserve(indices.size());
    for (auto& points : traces.channels)
        envelopes.emplace_back(buckets, BucketEnvelope::Shape::Steps, points);

    readFrameRuns(frames.frames, failure,
                  [&](std::size_t k, const std::vector<std::uint8_t>& bytes) {
                      const auto states = statesOf(bytes, indices);
                      for (std::size_t c = 0; c < indices.size(); ++c) {
                          const TracePoint p{frames.frames[k].ns, states[c]};
                          if (traces.envelope)
                              envelopes[c].add(p);
                          else if (!std::isnan(p.value))
                              traces.channels[c].push_back(p);
                      }
                  });
    for (auto& envelope : envelopes)
        envelope.finish();

    std::vector<float> before(indices.size(), kNoState);
    if (frames.before) {
        readFrameRuns({*frames.before}, failure,
                      [&](std::size_t, const std::vector<std::uint8_t>& bytes) {
                          before = statesOf(bytes, indices);
                      });
    }
    for (std::size_t c = 0; c < indices.size(); ++c)
        completeSteps(traces.channels[c],
                      frames.before ? std::optional<float>(before[c]) : std::nullopt, window);
    return traces;
}

} // namespace TavWaveform
