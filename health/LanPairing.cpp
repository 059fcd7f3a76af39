#include "health/LanPairing.h"

namespace TavHealth {

bool LanPairing::isCopy(char lan, std::uint64_t key, const Timest& time) {
    if (lan == 0)
        return false;
    seen_[lan == 'B'] = true;
    for (auto& r : recent_) {
        if (!r.paired && r.lan != lan && r.key == key) {
            r.paired = true;
            ++duplicates_;
            return true;
        }
    }
    recent_.push_back({lan, key, time, false});
    if (recent_.size() > kWindow) {
        retire(recent_.front());
        recent_.pop_front();
    }
    return false;
}

void LanPairing::retire(const Recent& r) {
    // A stream seen on one LAN only is not redundant, or lost a whole LAN:
    // neither is a frame lost on one side.
    if (r.paired || !seen_[0] || !seen_[1])
        return;
    ++unpaired_;
    log_.add(r.time, "lan_unpaired", std::string("только в сети ") + r.lan);
}

void LanPairing::finish(StreamHealth& health) {
    for (const auto& r : recent_)
        retire(r);
    recent_.clear();
    health.lanDuplicates = duplicates_;
    health.lanUnpaired = unpaired_;
}

} // namespace TavHealth
