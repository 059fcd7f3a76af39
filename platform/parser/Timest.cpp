#include "platform/parser/Timest.h"

#include <cmath>

namespace TavIec61850Parser {

Timest Timest::fromSeconds(double s) {
    if (!(s > 0))
        return {0, 0};
    if (s >= 4294967296.0)
        return {0xFFFFFFFFu, 999'999'999u};
    double whole = std::trunc(s);
    auto nanos = static_cast<std::uint32_t>((s - whole) * 1e9);
    if (nanos > 999'999'999u)
        nanos = 999'999'999u;
    return {static_cast<std::uint32_t>(whole), nanos};
}

} // namespace TavIec61850Parser
