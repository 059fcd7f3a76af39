#pragma once

#include "platform/parser/SvParser.h"

#include <cstddef>
#include <cstdint>

namespace TavComtrade {

// When each ASDU of a frame was sampled: the frame leaves once its last ASDU
// is taken, so that one is at the frame's capture time and each earlier one a
// sample interval before the next.
class AsduClock {
public:
    // `counters` of the stream's first ASDU; `frameSpacingNs` the measured
    // spacing of its frames (0 when unknown).
    AsduClock(const TavIec61850Parser::AsduCounters& counters, double frameSpacingNs,
              std::uint32_t asdusPerFrame);

    double intervalNs() const { return intervalNs_; }
    // Samples per second; 0 when neither the counters nor the frames tell.
    double rateHz() const { return intervalNs_ > 0 ? 1e9 / intervalNs_ : 0.0; }

    std::int64_t instant(std::int64_t frameNs, std::size_t index, std::size_t count) const;

    // 60 when smpRate read as samples per nominal period fits 60 Hz, else 50.
    int nominalHz() const { return nominalHz_; }

private:
    double intervalNs_ = 0.0;
    int nominalHz_ = 50;
};

} // namespace TavComtrade
