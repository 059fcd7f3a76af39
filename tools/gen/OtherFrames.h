#pragma once

#include "tools/gen/FrameSource.h"

#include <vector>

namespace TavGen {

// Unrelated traffic (small IPv4/UDP broadcasts) spread evenly over the capture,
// which a reader must count and step over.
class OtherFrames : public FrameSource {
public:
    OtherFrames(std::uint64_t count, std::uint64_t startNs, std::uint64_t durationNs);

    bool done() const override { return index_ >= count_; }
    std::uint64_t timeNs() const override { return startNs_ + index_ * durationNs_ / count_; }
    std::span<const std::uint8_t> frame() override;
    void advance() override { ++index_; }

private:
    std::uint64_t count_;
    std::uint64_t startNs_;
    std::uint64_t durationNs_;
    std::uint64_t index_ = 0;
    std::vector<std::uint8_t> frame_;
};

} // namespace TavGen
