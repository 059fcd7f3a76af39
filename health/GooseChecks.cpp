#include "health/GooseChecks.h"

#include "health/ArrivalTimingCheck.h"
#include "platform/parser/GooseDecoder.h"

#include <algorithm>
#include <cstdio>

namespace TavHealth {

using namespace TavIec61850Parser;

namespace {
constexpr std::uint64_t kLastStNum = 4294967295u;

std::string stSq(const GooseChecks::Frame& f) {
    return "stNum " + std::to_string(f.stNum) + " sqNum " + std::to_string(f.sqNum);
}
} // namespace

GooseChecks::Frame GooseChecks::decode(const EthernetFrame& eth) const {
    const GooseFrameView v = decodeGooseApdu(eth.payload, eth.payloadSize);
    return {v.stNum, v.sqNum, v.timeAllowedToLive, v.confRev, v.header.simulation || v.simulation,
            v.ndsCom};
}

void GooseChecks::use(const Timest& time, const Frame& frame, StreamHealth& health) {
    health.simulatedFrames += frame.simulated;
    log_.addFlagChange(time, "simulated_frames", lastSimulated_, frame.simulated,
                       "simulation установлен", "simulation снят");
    goose_.ndscomFrames += frame.ndsCom;
    log_.addFlagChange(time, "ndscom_frames", lastNdsCom_, frame.ndsCom, "ndsCom установлен",
                       "ndsCom снят");
    if (std::find(goose_.confRevs.begin(), goose_.confRevs.end(), frame.confRev) ==
        goose_.confRevs.end())
        goose_.confRevs.push_back(frame.confRev);
    if (previous_)
        checkSequence(time, *previous_, frame);
    followRetransmission(time, frame);
    previous_ = frame;
    previousTime_ = time;
}

void GooseChecks::checkSequence(const Timest& time, const Frame& p, const Frame& f) {
    const double gap = secondsBetween(previousTime_, time);
    if (gap * 1000 > static_cast<double>(p.timeAllowedToLiveMs)) {
        ++goose_.talExpiries;
        char text[128];
        std::snprintf(text, sizeof text,
                      "%.3f мс после предыдущего кадра, timeAllowedtoLive %llu мс", gap * 1e3,
                      static_cast<unsigned long long>(p.timeAllowedToLiveMs));
        log_.add(time, "tal_expiries", text);
    }
    if (f.stNum != p.stNum) {
        ++goose_.stateChanges;
        log_.add(time, "state_changes",
                 "stNum " + std::to_string(p.stNum) + " -> " + std::to_string(f.stNum));
        if (f.stNum < p.stNum && p.stNum != kLastStNum) {
            ++goose_.stnumRegressions;
            log_.add(time, "stnum_regressions", stSq(p) + " -> " + stSq(f));
        }
        if (f.sqNum != 0) {
            ++goose_.sqnumNotReset;
            log_.add(time, "sqnum_not_reset", stSq(f));
        }
        return;
    }
    if (f.sqNum == p.sqNum) {
        ++goose_.sqnumRepeats;
        log_.add(time, "sqnum_repeats", stSq(f) + " повторно");
    } else if (f.sqNum > p.sqNum + 1) {
        ++goose_.sqnumGaps;
        log_.add(time, "sqnum_gaps", stSq(p) + " -> " + stSq(f));
    }
}

void GooseChecks::followRetransmission(const Timest& time, const Frame& frame) {
    if (previous_ && frame.stNum != previous_->stNum) {
        following_ = goose_.retransmissions.size() < kMaxEvents;
        if (following_)
            goose_.retransmissions.push_back({time, {}});
        return;
    }
    if (!following_)
        return;
    auto& intervals = goose_.retransmissions.back().intervals;
    intervals.push_back(secondsBetween(previousTime_, time));
    following_ = intervals.size() < kRetransmissionIntervals;
}

void GooseChecks::finish(StreamHealth& health) {
    health.goose = std::move(goose_);
}

} // namespace TavHealth
