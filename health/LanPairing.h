#pragma once

#include "health/EventLog.h"

#include <deque>

namespace TavHealth {

// Tells the copy of a frame that came on the other redundant LAN from the
// frame itself. Copies arrive within a few frames of each other, and a key
// (smpCnt, or stNum and sqNum) does not come back that soon, so a short
// window of recent frames is enough.
class LanPairing {
public:
    explicit LanPairing(EventLog& log) : log_(log) {}

    // True when the frame on `lan` ('A', 'B', or 0 for none) is the other
    // LAN's copy of a recent frame with the same key.
    bool isCopy(char lan, std::uint64_t key, const Timest& time);
    // Counts what is left and stores the counts.
    void finish(StreamHealth& health);

private:
    struct Recent {
        char lan;
        std::uint64_t key;
        Timest time;
        bool paired;
    };
    void retire(const Recent& r);

    static constexpr std::size_t kWindow = 16;
    EventLog& log_;
    std::deque<Recent> recent_;
    bool seen_[2] = {false, false};
    std::uint64_t duplicates_ = 0;
    std::uint64_t unpaired_ = 0;
};

} // namespace TavHealth
