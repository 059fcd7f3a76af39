#pragma once

#include "measure/ChannelSpec.h"
#include "measure/Measurement.h"
#include "platform/parser/StreamRecords.h"
#include "stream/SamplingClock.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace TavMeasure {

struct StreamInput {
    const TavIec61850Parser::Sv* stream = nullptr;
    const TavStream::SamplingClock* clock = nullptr;
    std::vector<ChannelSpec> channels;
};

// A channel at 0° for every stream measured together: the place of its
// stream among the inputs and its place among that stream's channels.
struct ChannelRef {
    std::size_t stream = 0;
    std::size_t channel = 0;
};

// The reference a stream takes by itself: its phase A voltage, else its first channel.
std::size_t defaultReference(const std::vector<ChannelSpec>& channels);

// Measures each input over the whole cycles of [fromNs, toNs], in blocks of
// ten nominal cycles spread over every core. Each stream is turned to its own
// default reference unless `reference` names one for all of them (streams
// sampled on one clock). `progress` gets the share of blocks done; nothing is
// returned once `cancel` is set.
std::vector<StreamMeasurement> measure(const std::vector<StreamInput>& inputs, std::int64_t fromNs,
                                       std::int64_t toNs,
                                       std::optional<ChannelRef> reference = std::nullopt,
                                       const std::atomic<bool>* cancel = nullptr,
                                       const std::function<void(double)>& progress = {});

} // namespace TavMeasure
