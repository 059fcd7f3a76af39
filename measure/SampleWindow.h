#pragma once

#include "measure/ChannelSpec.h"
#include "platform/parser/StreamRecords.h"
#include "stream/SamplingClock.h"

#include <atomic>
#include <cstdint>
#include <vector>

namespace TavMeasure {

// The samples of some channels of one SV stream taken within a span, in
// primary units, one instant per sample, in instant order without repeats
// (the second copy of a redundant LAN is the same sample).
struct SampleWindow {
    std::vector<std::int64_t> instantsNs;
    std::vector<std::vector<double>> values; // per channel asked for, one per instant

    std::size_t size() const { return instantsNs.size(); }
    bool empty() const { return instantsNs.empty(); }
};

// Reads what the stream sampled in [fromNs, toNs]. A frame arrives after its
// samples were taken, so frames are looked for up to a transfer margin later.
// Channels beyond an ASDU's values read as 0. Throws the parser's ParseError
// when a file can no longer be read.
SampleWindow readSampleWindow(const TavIec61850Parser::Sv& stream,
                              const TavStream::SamplingClock& clock,
                              const std::vector<ChannelSpec>& channels, std::int64_t fromNs,
                              std::int64_t toNs, const std::atomic<bool>* cancel = nullptr);

} // namespace TavMeasure
