#pragma once

#include <compare>
#include <cstdint>

namespace TavIec61850Parser {

// A capture time stamp: whole seconds since the epoch and the nanoseconds within.
struct Timest {
    std::uint32_t seconds = 0;
    std::uint32_t nanoseconds = 0; // 0 .. 999'999'999

    friend constexpr auto operator<=>(const Timest&, const Timest&) = default;

    constexpr double toSeconds() const { return seconds + nanoseconds / 1e9; }

    // Truncates to whole seconds, then the truncated remainder in nanoseconds;
    // negative input clamps to 0.
    static Timest fromSeconds(double s);
};

// One captured frame of a stream: when it was captured and where its record
// starts in the capture file (the offset the frame parsers take).
struct Package {
    Timest time;
    std::uint64_t offset = 0;
};
static_assert(sizeof(Package) == 16, "a package is the time stamp followed by the offset");

} // namespace TavIec61850Parser
