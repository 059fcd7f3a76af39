#pragma once

#include "health/EventLog.h"
#include "platform/parser/EthernetDecoder.h"

#include <optional>

namespace TavHealth {

// Sequence, time-to-live and flag checks of one GOOSE stream, fed frame by
// frame in capture order.
class GooseChecks {
public:
    struct Frame {
        std::uint64_t stNum = 0;
        std::uint64_t sqNum = 0;
        std::uint64_t timeAllowedToLiveMs = 0;
        std::uint64_t confRev = 0;
        bool simulated = false;
        bool ndsCom = false;
    };

    explicit GooseChecks(EventLog& log) : log_(log) {}

    // Throws MalformedFrame.
    Frame decode(const TavIec61850Parser::EthernetFrame& eth) const;
    // stNum and sqNum: what a LAN copy repeats.
    std::uint64_t key(const Frame& f) const { return (f.stNum << 32) ^ f.sqNum; }
    void use(const Timest& time, const Frame& frame, StreamHealth& health);
    void finish(StreamHealth& health);

private:
    void checkSequence(const Timest& time, const Frame& previous, const Frame& frame);
    void followRetransmission(const Timest& time, const Frame& frame);

    // Intervals kept of the retransmission after each state change.
    static constexpr std::size_t kRetransmissionIntervals = 5;

    EventLog& log_;
    GooseHealth goose_;
    std::optional<Frame> previous_;
    Timest previousTime_;
    std::optional<bool> lastSimulated_;
    std::optional<bool> lastNdsCom_;
    bool following_ = false; // a retransmission whose intervals are being kept
};

} // namespace TavHealth
