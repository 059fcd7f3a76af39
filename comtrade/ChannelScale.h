#pragma once

#include <cstdint>
#include <string>

namespace TavComtrade {

// How one analog channel's raw samples become the integers of the data file,
// value = a × stored + b: as they are when they fit, else about the middle of
// their range and divided by a whole number until they do.
struct ChannelScale {
    double a = 1.0;
    double b = 0.0;
    std::int64_t offset = 0; // raw
    std::int64_t divisor = 1;
    std::int64_t limit = 32767;
    std::int64_t storedMin = 0;
    std::int64_t storedMax = 0;

    // `rawMin` > `rawMax`: the channel holds no value.
    static ChannelScale choose(std::int64_t rawMin, std::int64_t rawMax, float ratio,
                               std::int64_t limit);
    std::int64_t store(std::int64_t raw) const;
};

// The shortest text that reads back as the same number.
std::string shortestText(float value);
std::string shortestText(double value);
// The shortest decimal that reads back as `value`, as a double: 0.001f gives 0.001.
double decimalOf(float value);

} // namespace TavComtrade
