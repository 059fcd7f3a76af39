#pragma once

#include "platform/parser/Timest.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TavWaveform {

// One drawn sample: its own instant and its value.
struct TracePoint {
    std::int64_t ns = 0; // nanoseconds since the epoch
    float value = 0.0f;
};

// The time window a curve is drawn over, split into the plot's pixel columns.
struct TraceWindow {
    std::int64_t fromNs = 0;
    std::int64_t toNs = 0;
    std::size_t columns = 0;

    // Up to this many samples every one is drawn: two a column.
    std::size_t budget() const { return 2 * columns; }
    TavIec61850Parser::Timest fromStamp() const { return stampOf(fromNs); }
    TavIec61850Parser::Timest toStamp() const { return stampOf(toNs); }
    static TavIec61850Parser::Timest stampOf(std::int64_t ns);

    // The column a time falls in; times outside the window give none (-1).
    long columnOf(std::int64_t ns) const;
};

// What a stream gives for its ticked channels, one point list each.
struct Traces {
    std::vector<std::vector<TracePoint>> channels;
    // The points are a min/max envelope of more samples than fit.
    bool envelope = false;
};

} // namespace TavWaveform
