#include "health/SvChecks.h"

#include "health/ArrivalTimingCheck.h"
#include "platform/parser/SvDecoder.h"
#include "stream/WindowFrames.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace TavHealth {

using namespace TavIec61850Parser;

namespace {

// The 9-2LE quality word: validity in the two low bits, then flags.
constexpr std::uint32_t kValidityMask = 0x3;
constexpr std::uint32_t kInvalid = 0x1;
constexpr std::uint32_t kQuestionable = 0x3;
constexpr std::uint32_t kTest = 1u << 11;
constexpr std::uint32_t kOperatorBlocked = 1u << 12;
constexpr std::uint32_t kDerived = 1u << 13;

// smpCnt wraps once a second when smpRate counts samples per second; some
// publishers count per nominal period instead, which says nothing of the wrap.
constexpr std::uint16_t kLowestPerSecondRate = 1000;

} // namespace

SvChecks::Frame SvChecks::decode(const EthernetFrame& eth) {
    decoded_.clear();
    const SvFrameView view = decodeSvApdu(eth.payload, eth.payloadSize, &decoded_);
    return {view.header.simulation, &decoded_};
}

std::uint64_t SvChecks::key(const Frame& frame) const {
    for (const auto& a : *frame.asdus) {
        if (a.svId == svId_)
            return a.counters.smpCnt;
    }
    return 0x10000; // no ASDU of this stream: pairs only with its like
}

void SvChecks::use(const Timest& time, const Frame& frame, StreamHealth& health) {
    health.simulatedFrames += frame.simulated;
    log_.addFlagChange(time, "simulated_frames", lastSimulated_, frame.simulated,
                       "бит S установлен", "бит S снят");
    frameTimes_.push_back(time);
    std::vector<const ASDUData*> mine;
    for (const auto& a : *frame.asdus) {
        if (a.svId == svId_)
            mine.push_back(&a);
    }
    sv_.asdusPerFrame = std::max<std::uint32_t>(sv_.asdusPerFrame, mine.size());
    if (nominal_.asdusPerFrame && !mine.empty() && mine.size() != *nominal_.asdusPerFrame)
        ++sv_.framesOffConfiguredAsdus;
    lastFrameAsdus_ = mine.size();
    for (std::size_t i = 0; i < mine.size(); ++i)
        useAsdu(time, *mine[i]);
    if (!mine.empty()) {
        const std::int64_t arrival = TavStream::toNanoseconds(time);
        transferNs_.push_back(arrival - clock_.instant(arrival, mine.back()->counters.smpCnt,
                                                       mine.size() - 1, mine.size()));
    }
}

void SvChecks::useAsdu(const Timest& time, const ASDUData& asdu) {
    counts_.push_back(asdu.counters.smpCnt);
    countTimes_.push_back(time);
    if (!smpRate_ && asdu.counters.hasSmpRate)
        smpRate_ = asdu.counters.smpRate;
    const std::uint8_t synch = asdu.counters.smpSynch;
    if (std::find(sv_.smpsynchValues.begin(), sv_.smpsynchValues.end(), synch) ==
        sv_.smpsynchValues.end())
        sv_.smpsynchValues.push_back(synch);
    if (synch_ && *synch_ != synch) {
        ++sv_.smpsynchChanges;
        log_.add(time, "smpsynch",
                 "smpSynch " + std::to_string(*synch_) + " -> " + std::to_string(synch));
    }
    synch_ = synch;
    checkQuality(time, asdu.values);
}

// A channel's first quality is its starting state, not a change from zero.
void SvChecks::checkQuality(const Timest& time, const std::vector<SvValue>& values) {
    const std::size_t seen = lastQuality_.size();
    if (sv_.quality.size() < values.size()) {
        sv_.quality.resize(values.size());
        for (std::size_t c = seen; c < values.size(); ++c)
            lastQuality_.push_back(values[c].quality);
    }
    for (std::size_t c = 0; c < values.size(); ++c) {
        const std::uint32_t q = values[c].quality;
        ChannelQuality& count = sv_.quality[c];
        count.invalid += (q & kValidityMask) == kInvalid;
        count.questionable += (q & kValidityMask) == kQuestionable;
        count.test += (q & kTest) != 0;
        count.derived += (q & kDerived) != 0;
        count.operatorBlocked += (q & kOperatorBlocked) != 0;
        if (q != lastQuality_[c]) {
            char text[64];
            std::snprintf(text, sizeof text, "канал %zu, quality 0x%04X -> 0x%04X", c + 1,
                          lastQuality_[c], q);
            log_.add(time, "quality", text);
            lastQuality_[c] = q;
        }
    }
}

void SvChecks::checkSequence() {
    if (counts_.empty())
        return;
    const std::uint32_t wrap = *std::max_element(counts_.begin(), counts_.end()) + 1u;
    sv_.smpcntWrap = wrap;
    for (std::size_t i = 1; i < counts_.size(); ++i) {
        const std::uint32_t a = counts_[i - 1], b = counts_[i];
        if (b == a) {
            ++sv_.smpcntDuplicates;
            log_.add(countTimes_[i], "smpcnt_duplicates",
                     "smpCnt " + std::to_string(b) + " повторно");
            continue;
        }
        if (b == (a + 1) % wrap)
            continue;
        ++sv_.smpcntDiscontinuities;
        const std::uint32_t d = ((b + 2 * wrap) - a - 1) % wrap;
        std::string text = "smpCnt " + std::to_string(a) + " -> " + std::to_string(b);
        if (d > 0 && 2 * d < wrap) {
            sv_.missingSamples += d;
            text += ", пропущено " + std::to_string(d);
        }
        log_.add(countTimes_[i], "smpcnt_discontinuities", text);
    }
}

void SvChecks::finish(StreamHealth& health) {
    checkSequence();
    if (frameTimes_.size() > 1) {
        const double span = secondsBetween(frameTimes_.front(), frameTimes_.back());
        if (span > 0)
            sv_.sampleRate = (counts_.size() - lastFrameAsdus_) / span;
    }
    if (smpRate_ && *smpRate_ >= kLowestPerSecondRate)
        sv_.nominalWrap = *smpRate_;
    else if (sv_.sampleRate > 0)
        sv_.nominalWrap = static_cast<std::uint32_t>(std::lround(sv_.sampleRate));
    // The configuration, where there is one, says what the stream should do.
    if (!nominal_.samplesPerSecond.empty()) {
        const double seen = sv_.nominalWrap ? *sv_.nominalWrap : sv_.sampleRate;
        const auto nearest = std::min_element(
            nominal_.samplesPerSecond.begin(), nominal_.samplesPerSecond.end(),
            [&](double a, double b) { return std::fabs(a - seen) < std::fabs(b - seen); });
        sv_.nominalWrap = static_cast<std::uint32_t>(std::lround(*nearest));
    }
    sv_.configuredAsdus = nominal_.asdusPerFrame;
    sv_.timing = checkArrivalTiming(frameTimes_, log_);
    sv_.transfer = checkTransferTime(frameTimes_, transferNs_, log_);
    health.sv = std::move(sv_);
}

} // namespace TavHealth
