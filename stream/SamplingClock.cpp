#include "stream/SamplingClock.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace TavStream {

namespace {

constexpr double kNs = 1e9;
constexpr std::int64_t kSecondNs = 1'000'000'000;

enum SmpMod : std::uint8_t { PerNominalPeriod = 0, PerSecond = 1, SecondsPerSample = 2 };

constexpr std::array<double, 24> kStandardRates{
    960,  1000, 1200, 1920, 2000, 2400,  2880,  3000,  3200,  3840,  4000,  4800,
    5760, 6000, 7200, 8000, 9600, 12000, 12800, 14400, 15360, 19200, 24000, 28800};

// A measured rate within half a per cent of a standard one is that one.
double snapToStandard(double measured) {
    for (const double rate : kStandardRates)
        if (std::abs(measured / rate - 1.0) < 0.005)
            return rate;
    return measured;
}

// smpRate counts samples per nominal period unless smpMod says otherwise,
// yet many publishers send samples per second without smpMod. What the
// stream itself shows picks the reading.
double samplesPerSecond(const TavIec61850Parser::AsduCounters& c, double shownRate) {
    const double rate = c.smpRate;
    if (c.hasSmpMod && c.smpMod == PerSecond)
        return rate;
    if (c.hasSmpMod && c.smpMod == SecondsPerSample)
        return 1.0 / rate;
    const bool perPeriodSaid = c.hasSmpMod && c.smpMod == PerNominalPeriod;
    const std::array<double, 3> readings{rate * 50, rate * 60, rate};
    const std::size_t count = perPeriodSaid ? 2 : 3;
    if (shownRate <= 0)
        return perPeriodSaid || rate < 400 ? readings[0] : rate;
    double best = readings[0];
    for (std::size_t i = 1; i < count; ++i)
        if (std::abs(std::log(readings[i] / shownRate)) < std::abs(std::log(best / shownRate)))
            best = readings[i];
    return best;
}

std::uint32_t topCount(const std::vector<ClockFrame>& frames) {
    std::uint32_t top = 0;
    for (const auto& f : frames)
        top = std::max<std::uint32_t>(top, f.smpCnt + f.asdus - 1u);
    return top;
}

// A counter that goes from its top back to the bottom, and whose top + 1 is a
// standard rate, counts the samples of each second: the rate, exactly.
std::uint32_t secondWrap(const std::vector<ClockFrame>& frames) {
    const std::uint32_t top = topCount(frames);
    const double span = top + 1.0;
    if (snapToStandard(span) != span)
        return 0;
    for (std::size_t i = 1; i < frames.size(); ++i)
        if (frames[i].smpCnt < frames[i].asdus && frames[i - 1].smpCnt + frames[i - 1].asdus > top)
            return top + 1;
    return 0;
}

// Own ASDUs a second over the whole stream, a frame repeating its
// predecessor's counter (a copy from the other LAN) not counted. Never from
// one gap: capturing cards stamp frames in bursts.
double meanRate(const std::vector<ClockFrame>& frames) {
    if (frames.size() < 2 || frames.back().arrivalNs <= frames.front().arrivalNs)
        return 0.0;
    double samples = 0;
    for (std::size_t i = 1; i < frames.size(); ++i)
        if (frames[i].smpCnt != frames[i - 1].smpCnt)
            samples += frames[i].asdus;
    return samples * kNs / static_cast<double>(frames.back().arrivalNs - frames.front().arrivalNs);
}

} // namespace

SamplingClock SamplingClock::survey(const std::vector<ClockFrame>& frames,
                                    const TavIec61850Parser::AsduCounters& first) {
    SamplingClock clock;
    const std::uint32_t secondCount = secondWrap(frames);
    const double shown = secondCount ? secondCount : meanRate(frames);
    if (first.hasSmpRate && first.smpRate > 0) {
        clock.rate_ = samplesPerSecond(first, shown);
        if (clock.rate_ == first.smpRate * 60.0)
            clock.nominalHz_ = 60;
    } else {
        clock.rate_ = snapToStandard(shown);
    }
    const bool allSynchronised =
        !frames.empty() &&
        std::all_of(frames.begin(), frames.end(), [](const ClockFrame& f) { return f.smpSynch; });
    // A synchronised counter restarts at each second, also in a capture too
    // short to show it.
    const bool countsSeconds =
        secondCount == clock.rate_ || (allSynchronised && clock.rate_ == std::floor(clock.rate_) &&
                                       clock.rate_ <= 65536 && topCount(frames) < clock.rate_);
    if (clock.rate_ > 0 && countsSeconds)
        clock.wrap_ = static_cast<std::uint32_t>(clock.rate_);
    clock.synchronised_ = allSynchronised && clock.wrap_ == clock.rate_;
    if (clock.rate_ > 0 && !frames.empty())
        clock.splitRuns(frames);
    return clock;
}

// A run goes on while each counter step is what the arrivals allow; a restart
// or a jump starts a new one. Within a run the fastest frame sets the anchor.
void SamplingClock::splitRuns(const std::vector<ClockFrame>& frames) {
    const double perNs = rate_ / kNs;
    const double tolerance = std::min(0.25 * rate_, wrap_ / 4.0);
    const auto anchorOf = [&](const ClockFrame& f, double unwrapped) {
        const double last = unwrapped + f.asdus - 1;
        return f.arrivalNs - static_cast<std::int64_t>(std::llround(last / perNs));
    };
    double unwrapped = frames.front().smpCnt;
    runs_.push_back({frames.front().arrivalNs, anchorOf(frames.front(), unwrapped)});
    for (std::size_t i = 1; i < frames.size(); ++i) {
        const ClockFrame& f = frames[i];
        std::int64_t step = (static_cast<std::int64_t>(f.smpCnt) - frames[i - 1].smpCnt) % wrap_;
        if (step < 0)
            step += wrap_;
        if (step > wrap_ / 2)
            step -= wrap_; // a copy from the other LAN, a little behind
        const double expected = (f.arrivalNs - frames[i - 1].arrivalNs) * perNs;
        if (std::abs(step - expected) > tolerance) {
            unwrapped = f.smpCnt;
            runs_.push_back({f.arrivalNs, anchorOf(f, unwrapped)});
            continue;
        }
        unwrapped += step;
        runs_.back().anchorNs = std::min(runs_.back().anchorNs, anchorOf(f, unwrapped));
    }
    // A counter that restarts at random tells nothing: such a stream keeps
    // its frames' arrivals.
    if (runs_.size() > frames.size() / 8 + 1)
        runs_.clear();
}

const SamplingClock::Run& SamplingClock::runAt(std::int64_t arrivalNs) const {
    auto after =
        std::upper_bound(runs_.begin(), runs_.end(), arrivalNs,
                         [](std::int64_t ns, const Run& run) { return ns < run.firstArrivalNs; });
    return after == runs_.begin() ? runs_.front() : *(after - 1);
}

std::int64_t SamplingClock::instant(std::int64_t arrivalNs, std::uint16_t smpCnt, std::size_t index,
                                    std::size_t count) const {
    if (runs_.empty()) {
        const double before = static_cast<double>(count - 1 - index) * intervalNs();
        return arrivalNs - static_cast<std::int64_t>(std::llround(before));
    }
    const Run& run = runAt(arrivalNs);
    // The latest index with this counter that is not after the arrival.
    const double latest = (arrivalNs - run.anchorNs) * rate_ / kNs + 0.5;
    const double cycles = std::floor((latest - smpCnt) / wrap_);
    const double unwrapped = cycles * wrap_ + smpCnt;
    return run.anchorNs + static_cast<std::int64_t>(std::llround(unwrapped * kNs / rate_));
}

std::vector<std::int64_t> SamplingClock::secondPhasesNs() const {
    std::vector<std::int64_t> phases;
    for (const auto& run : runs_)
        phases.push_back(((run.anchorNs % kSecondNs) + kSecondNs) % kSecondNs);
    return phases;
}

void SamplingClock::alignTo(std::int64_t phaseNs) {
    for (auto& run : runs_) {
        const std::int64_t phase = ((run.anchorNs % kSecondNs) + kSecondNs) % kSecondNs;
        run.anchorNs -= ((phase - phaseNs) % kSecondNs + kSecondNs) % kSecondNs;
    }
}

} // namespace TavStream
