#include "comtrade/ChannelScale.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace TavComtrade {

ChannelScale ChannelScale::choose(std::int64_t rawMin, std::int64_t rawMax, float ratio,
                                  std::int64_t limit) {
    ChannelScale s;
    s.limit = limit;
    s.a = decimalOf(ratio);
    if (rawMin > rawMax)
        return s;
    if (rawMin < -limit || rawMax > limit) {
        s.offset = rawMin + (rawMax - rawMin) / 2;
        const std::int64_t span = std::max(rawMax - s.offset, s.offset - rawMin);
        s.divisor = std::max<std::int64_t>(1, (span + limit - 1) / limit);
    }
    // The scale as the decimal it was meant to be (0.001, not the float
    // nearest it), so that a and b read as plain numbers and b keeps its
    // precision for offsets in the millions.
    const double unit = decimalOf(ratio);
    s.a = unit * static_cast<double>(s.divisor);
    s.b = unit * static_cast<double>(s.offset);
    // A unit of one thousandth is best divided by: -8777 / 1000 is -8.777,
    // where -8777 × 0.001 is -8.777000000000001.
    const double inverse = std::round(1.0 / unit);
    if (inverse > 1.0 && std::abs(inverse * unit - 1.0) < 1e-12) {
        s.a = static_cast<double>(s.divisor) / inverse;
        s.b = static_cast<double>(s.offset) / inverse;
    }
    s.storedMin = s.store(rawMin);
    s.storedMax = s.store(rawMax);
    return s;
}

std::int64_t ChannelScale::store(std::int64_t raw) const {
    const std::int64_t shifted = raw - offset;
    // Rounded half away from zero, in integers: no double loses a 32-bit sample.
    const std::int64_t half = divisor / 2;
    const std::int64_t q =
        shifted >= 0 ? (shifted + half) / divisor : -((-shifted + half) / divisor);
    return std::clamp(q, -limit, limit);
}

std::string shortestText(float value) {
    char text[32];
    const auto result = std::to_chars(text, text + sizeof text, value);
    return std::string(text, result.ptr);
}

std::string shortestText(double value) {
    char text[32];
    const auto result = std::to_chars(text, text + sizeof text, value);
    return std::string(text, result.ptr);
}

double decimalOf(float value) {
    const std::string text = shortestText(value);
    double decimal = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), decimal);
    return decimal;
}

} // namespace TavComtrade
