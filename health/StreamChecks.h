#pragma once

#include "health/StreamHealth.h"
#include "platform/parser/StreamRecords.h"
#include "stream/SamplingClock.h"

#include <atomic>

namespace TavHealth {

// Reads every frame of the stream back from its capture files and checks it.
// Throws ParseError when a file cannot be read; returns early, with what was
// seen so far, once `cancel` is set. Without `clock` the stream is surveyed
// for one of its own.
StreamHealth checkStream(const TavIec61850Parser::Sv& stream,
                         const TavStream::SamplingClock* clock = nullptr,
                         const std::atomic<bool>* cancel = nullptr);
StreamHealth checkStream(const TavIec61850Parser::Goose& stream,
                         const std::atomic<bool>* cancel = nullptr);

} // namespace TavHealth
