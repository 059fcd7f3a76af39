#pragma once

#include "tools/gen/FrameSource.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

namespace TavGen {

// A delay of the frames sent from `atNs` (after the capture's start) for
// `count` frames: they reach the capturing computer `delayNs` late.
struct ArrivalDelay {
    std::uint64_t atNs = 0;
    std::uint64_t count = 1;
    std::uint64_t delayNs = 0;
};

// "T@SECONDS[xCOUNT]": 0.005@0.5x100. Throws UsageError.
ArrivalDelay parseDelay(const std::string& text);

// Stamps a publisher's frames as a capturing computer does: handed over in
// bursts of `burst` frames on the time of the burst's last one, and late
// where a delay says so. The bytes are the publisher's own.
class ArrivalStamps : public FrameSource {
public:
    ArrivalStamps(std::unique_ptr<FrameSource> inner, std::uint32_t burst,
                  std::vector<ArrivalDelay> delays, std::uint64_t startNs);

    bool done() const override { return pending_.empty(); }
    std::uint64_t timeNs() const override { return pending_.front().timeNs; }
    std::span<const std::uint8_t> frame() override { return pending_.front().bytes; }
    void advance() override;

private:
    struct Held {
        std::uint64_t timeNs = 0;
        std::vector<std::uint8_t> bytes;
    };
    void _fill();
    std::uint64_t _delayOf(std::uint64_t sentNs);

    std::unique_ptr<FrameSource> inner_;
    std::uint32_t burst_;
    std::vector<ArrivalDelay> delays_;
    std::vector<std::uint64_t> delayed_; // frames delayed so far, per delay
    std::uint64_t startNs_;
    std::deque<Held> pending_;
};

} // namespace TavGen
