#include "comtrade/AsduClock.h"

#include <array>
#include <cmath>

namespace TavComtrade {

namespace {

enum SmpMod : std::uint8_t { PerNominalPeriod = 0, PerSecond = 1, SecondsPerSample = 2 };

// smpRate counts samples per nominal period unless smpMod says otherwise,
// yet many publishers send samples per second without smpMod. The frames'
// own spacing picks the reading; without it, a few hundred or more can only
// be per second.
double samplesPerSecond(const TavIec61850Parser::AsduCounters& c, double measuredRate) {
    const double rate = c.smpRate;
    if (c.hasSmpMod && c.smpMod == PerSecond)
        return rate;
    if (c.hasSmpMod && c.smpMod == SecondsPerSample)
        return 1.0 / rate;
    const bool perPeriodSaid = c.hasSmpMod && c.smpMod == PerNominalPeriod;
    const std::array<double, 3> readings{rate * 50, rate * 60, rate};
    const std::size_t count = perPeriodSaid ? 2 : 3;
    if (measuredRate <= 0)
        return perPeriodSaid || rate < 400 ? readings[0] : rate;
    double best = readings[0];
    for (std::size_t i = 1; i < count; ++i)
        if (std::abs(std::log(readings[i] / measuredRate)) <
            std::abs(std::log(best / measuredRate)))
            best = readings[i];
    return best;
}

} // namespace

AsduClock::AsduClock(const TavIec61850Parser::AsduCounters& counters, double frameSpacingNs,
                     std::uint32_t asdusPerFrame) {
    const double measuredNs = asdusPerFrame > 0 ? frameSpacingNs / asdusPerFrame : 0.0;
    const double measuredRate = measuredNs > 0 ? 1e9 / measuredNs : 0.0;
    if (counters.hasSmpRate && counters.smpRate > 0) {
        const double rate = samplesPerSecond(counters, measuredRate);
        intervalNs_ = 1e9 / rate;
        if (rate == counters.smpRate * 60.0)
            nominalHz_ = 60;
    } else
        intervalNs_ = measuredNs;
}

std::int64_t AsduClock::instant(std::int64_t frameNs, std::size_t index, std::size_t count) const {
    const double before = static_cast<double>(count - 1 - index) * intervalNs_;
    return frameNs - static_cast<std::int64_t>(std::llround(before));
}

} // namespace TavComtrade
