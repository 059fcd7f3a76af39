#pragma once

#include "health/StreamHealth.h"
#include "platform/parser/StreamRecords.h"
#include "stream/SamplingClock.h"

#include <atomic>
#include <optional>
#include <vector>

namespace TavHealth {

// What the substation's configuration says a stream sends: its samples per
// second (a rate per period gives one for 50 and one for 60 Hz, the nearer
// one is taken) and its ASDUs per frame. What the stream shows otherwise.
struct SvNominal {
    std::vector<double> samplesPerSecond;
    std::optional<std::uint32_t> asdusPerFrame;
};

// Reads every frame of the stream back from its capture files and checks it.
// Throws ParseError when a file cannot be read; returns early, with what was
// seen so far, once `cancel` is set. Without `clock` the stream is surveyed
// for one of its own.
StreamHealth checkStream(const TavIec61850Parser::Sv& stream,
                         const TavStream::SamplingClock* clock = nullptr,
                         const std::atomic<bool>* cancel = nullptr, const SvNominal& nominal = {});
StreamHealth checkStream(const TavIec61850Parser::Goose& stream,
                         const std::atomic<bool>* cancel = nullptr);

} // namespace TavHealth
