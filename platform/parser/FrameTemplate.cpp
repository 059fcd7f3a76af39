#include "platform/parser/FrameTemplate.h"

#include <algorithm>
#include <cstring>

namespace TavIec61850Parser {

bool FrameTemplate::build(const std::uint8_t* frame, std::size_t size,
                          const VaryingBytes& varying) {
    clear();
    if (size == 0 || size > kMaxSize || varying.overflow)
        return false;
    std::array<VaryingBytes::Range, VaryingBytes::kMax> ranges = varying.ranges;
    std::sort(ranges.begin(), ranges.begin() + varying.count,
              [](const auto& a, const auto& b) { return a.at < b.at; });
    segmentCount_ = 0;
    std::size_t pos = 0;
    for (std::size_t i = 0; i <= varying.count; ++i) {
        std::size_t end = size;
        std::size_t next = size;
        if (i < varying.count) {
            end = static_cast<std::size_t>(ranges[i].at - frame);
            next = end + ranges[i].size;
            if (end < pos || next > size)
                return false; // ranges outside the frame or overlapping: no template
        }
        if (end > pos)
            segments_[segmentCount_++] = {static_cast<std::uint16_t>(pos),
                                          static_cast<std::uint16_t>(end - pos)};
        pos = next;
    }
    std::memcpy(bytes_.data(), frame, size);
    size_ = size;
    return true;
}

bool FrameTemplate::matches(const std::uint8_t* frame, std::size_t size) const {
    if (size != size_)
        return false;
    for (std::size_t i = 0; i < segmentCount_; ++i) {
        const Segment& s = segments_[i];
        if (std::memcmp(frame + s.offset, bytes_.data() + s.offset, s.size) != 0)
            return false;
    }
    return true;
}

} // namespace TavIec61850Parser
