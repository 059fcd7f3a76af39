#pragma once

#include "health/EventLog.h"
#include "health/StreamChecks.h"
#include "platform/parser/EthernetDecoder.h"
#include "platform/parser/SvParser.h"
#include "stream/SamplingClock.h"

#include <optional>

namespace TavHealth {

// Sequence, synchronisation, quality and arrival checks of one SV stream,
// fed frame by frame in capture order.
class SvChecks {
public:
    struct Frame {
        bool simulated = false;
        std::vector<TavIec61850Parser::ASDUData>* asdus = nullptr; // all of the frame's
    };

    SvChecks(std::string svId, const TavStream::SamplingClock& clock, EventLog& log,
             SvNominal nominal = {})
        : svId_(std::move(svId)), clock_(clock), log_(log), nominal_(std::move(nominal)) {}

    // Throws MalformedFrame.
    Frame decode(const TavIec61850Parser::EthernetFrame& eth);
    // smpCnt of the frame's first ASDU of this stream: what a LAN copy repeats.
    std::uint64_t key(const Frame& frame) const;
    void use(const Timest& time, const Frame& frame, StreamHealth& health);
    void finish(StreamHealth& health);

private:
    void useAsdu(const Timest& time, const TavIec61850Parser::ASDUData& asdu);
    void checkQuality(const Timest& time, const std::vector<TavIec61850Parser::SvValue>& values);
    void checkSequence();

    std::string svId_;
    const TavStream::SamplingClock& clock_;
    EventLog& log_;
    SvNominal nominal_;
    std::vector<std::int64_t> transferNs_; // arrival less the last own sample's instant
    std::vector<TavIec61850Parser::ASDUData> decoded_;
    SvHealth sv_;
    std::vector<std::uint16_t> counts_;
    std::vector<Timest> countTimes_;
    std::vector<Timest> frameTimes_;
    std::uint64_t lastFrameAsdus_ = 0;
    std::optional<std::uint8_t> synch_;
    std::optional<std::uint16_t> smpRate_;
    std::vector<std::uint32_t> lastQuality_; // of the channels seen so far
    std::optional<bool> lastSimulated_;
};

} // namespace TavHealth
