#pragma once

#include "health/EventLog.h"

namespace TavHealth {

// Median, 99th percentile and largest interval between consecutive frames,
// and an event for every frame later than twice the median.
ArrivalTiming checkArrivalTiming(const std::vector<Timest>& times, EventLog& log);

// Seconds from a to b, signed.
double secondsBetween(const Timest& a, const Timest& b);

} // namespace TavHealth
