#include "comtrade/ChannelScale.h"

#include <algorithm>
#include <charconv>

namespace TavComtrade {

ChannelScale ChannelScale::choose(std::int64_t rawMin, std::int64_t rawMax, float ratio,
                                  std::int64_t limit) {
    ChannelScale s;
    s.limit = limit;
    s.a = ratio;
    if (rawMin > rawMax)
        return s;
    if (rawMin < -limit || rawMax > limit) {
        s.offset = rawMin + (rawMax - rawMin) / 2;
        const std::int64_t span = std::max(rawMax - s.offset, s.offset - rawMin);
        s.divisor = std::max<std::int64_t>(1, (span + limit - 1) / limit);
    }
    // The stored text of a and b is a float's: readers get what is written.
    s.a = static_cast<float>(static_cast<double>(ratio) * static_cast<double>(s.divisor));
    s.b = static_cast<float>(static_cast<double>(ratio) * static_cast<double>(s.offset));
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

} // namespace TavComtrade
