#include "health/ArrivalTimingCheck.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace TavHealth {

double secondsBetween(const Timest& a, const Timest& b) {
    const std::int64_t ns = (static_cast<std::int64_t>(b.seconds) - a.seconds) * 1'000'000'000LL +
                            (static_cast<std::int64_t>(b.nanoseconds) - a.nanoseconds);
    return ns / 1e9;
}

namespace {

constexpr double kLateSeconds = 0.003;

// Nearest rank: the smallest value with at least p of them at or below it.
double rank(std::vector<double>& values, double p) {
    const auto k = static_cast<std::size_t>(std::ceil(p * values.size()));
    const std::size_t at = k == 0 ? 0 : k - 1;
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(at),
                     values.end());
    return values[at];
}

} // namespace

ArrivalTiming checkArrivalTiming(const std::vector<Timest>& times, EventLog&) {
    ArrivalTiming timing;
    if (times.size() < 2)
        return timing;
    std::vector<double> intervals;
    intervals.reserve(times.size() - 1);
    for (std::size_t i = 1; i < times.size(); ++i)
        intervals.push_back(secondsBetween(times[i - 1], times[i]));
    timing.largest = *std::max_element(intervals.begin(), intervals.end());
    timing.median = rank(intervals, 0.5);
    timing.p99 = rank(intervals, 0.99);
    return timing;
}

TransferTime checkTransferTime(const std::vector<Timest>& times,
                               const std::vector<std::int64_t>& transferNs, EventLog& log) {
    TransferTime transfer;
    if (transferNs.empty() || transferNs.size() != times.size())
        return transfer;
    const std::int64_t fastest = *std::min_element(transferNs.begin(), transferNs.end());
    std::vector<double> seconds;
    seconds.reserve(transferNs.size());
    for (std::size_t i = 0; i < transferNs.size(); ++i) {
        seconds.push_back((transferNs[i] - fastest) / 1e9);
        if (seconds.back() <= kLateSeconds)
            continue;
        ++transfer.lateFrames;
        char text[64];
        std::snprintf(text, sizeof text, "%.3f мс после самого быстрого кадра",
                      seconds.back() * 1e3);
        log.add(times[i], "late_frames", text);
    }
    transfer.largest = *std::max_element(seconds.begin(), seconds.end());
    transfer.median = rank(seconds, 0.5);
    transfer.p99 = rank(seconds, 0.99);
    return transfer;
}

} // namespace TavHealth
