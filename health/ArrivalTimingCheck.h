#pragma once

#include "health/EventLog.h"

#include <cstdint>
#include <vector>

namespace TavHealth {

// Median, 99th percentile and largest interval between consecutive frames.
ArrivalTiming checkArrivalTiming(const std::vector<Timest>& times, EventLog& log);

// Median, 99th percentile and largest transfer time, each frame's
// `transferNs` less the smallest; an event for every frame more than 3 ms
// (the transfer time class of raw sampled values) after the fastest.
TransferTime checkTransferTime(const std::vector<Timest>& times,
                               const std::vector<std::int64_t>& transferNs, EventLog& log);

// Seconds from a to b, signed.
double secondsBetween(const Timest& a, const Timest& b);

} // namespace TavHealth
