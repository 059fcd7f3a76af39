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

ArrivalTiming checkArrivalTiming(const std::vector<Timest>& times, EventLog& log) {
    ArrivalTiming timing;
    if (times.size() < 2)
        return timing;
    std::vector<double> intervals;
    intervals.reserve(times.size() - 1);
    for (std::size_t i = 1; i < times.size(); ++i)
        intervals.push_back(secondsBetween(times[i - 1], times[i]));
    std::vector<double> sorted = intervals;
    // Nearest rank: the smallest interval with at least p of them at or below it.
    const auto rank = [&](double p) {
        const auto k = static_cast<std::size_t>(std::ceil(p * sorted.size()));
        const std::size_t at = k == 0 ? 0 : k - 1;
        std::nth_element(sorted.begin(), sorted.begin() + at, sorted.end());
        return sorted[at];
    };
    timing.median = rank(0.5);
    timing.p99 = rank(0.99);
    timing.largest = *std::max_element(intervals.begin(), intervals.end());
    for (std::size_t i = 0; i < intervals.size(); ++i) {
        if (intervals[i] <= 2 * timing.median)
            continue;
        ++timing.lateFrames;
        char text[64];
        std::snprintf(text, sizeof text, "%.3f мс после предыдущего кадра", intervals[i] * 1e3);
        log.add(times[i + 1], "late_frames", text);
    }
    return timing;
}

} // namespace TavHealth
