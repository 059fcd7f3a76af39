#include "waveform/TraceWindow.h"

#include <algorithm>
#include <cmath>

namespace TavWaveform {

TavIec61850Parser::Timest TraceWindow::stampOf(std::int64_t ns) {
    if (ns <= 0)
        return {};
    return {static_cast<std::uint32_t>(ns / 1'000'000'000),
            static_cast<std::uint32_t>(ns % 1'000'000'000)};
}

long TraceWindow::columnOf(std::int64_t ns) const {
    if (ns < fromNs || ns > toNs || columns == 0)
        return -1;
    if (toNs == fromNs)
        return 0;
    // In double: the product of a long span and a wide plot overflows 64 bits.
    const double share = static_cast<double>(ns - fromNs) / static_cast<double>(toNs - fromNs);
    const auto column = static_cast<long>(std::floor(share * static_cast<double>(columns)));
    return std::min(column, static_cast<long>(columns) - 1);
}

} // namespace TavWaveform
