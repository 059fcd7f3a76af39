#include "platform/parser/FrameTemplate.h"

#include <cstring>

namespace TavIec61850Parser {

namespace {

std::uint64_t load64(const std::uint8_t* p) {
    std::uint64_t v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

} // namespace

bool FrameTemplate::build(const std::uint8_t* frame, std::size_t size,
                          const VaryingBytes& varying) {
    clear();
    if (size == 0 || size > kMaxSize || varying.overflow)
        return false;
    std::memset(mask_.data(), 0xFF, size);
    for (std::size_t i = 0; i < varying.count; ++i) {
        const VaryingBytes::Range& r = varying.ranges[i];
        if (r.at < frame || static_cast<std::size_t>(r.at - frame) > size ||
            r.size > size - static_cast<std::size_t>(r.at - frame))
            return false; // a range outside the frame: no template
        std::memset(mask_.data() + (r.at - frame), 0, r.size);
    }
    std::memcpy(bytes_.data(), frame, size);
    size_ = size;
    return true;
}

// Eight bytes at a time under the mask: no call and no branch per field, so
// a frame costs about as much as reading it.
bool FrameTemplate::matches(const std::uint8_t* frame, std::size_t size) const {
    if (size != size_)
        return false;
    std::size_t i = 0;
    for (; i + 8 <= size; i += 8)
        if (((load64(frame + i) ^ load64(bytes_.data() + i)) & load64(mask_.data() + i)) != 0)
            return false;
    for (; i < size; ++i)
        if (((frame[i] ^ bytes_[i]) & mask_[i]) != 0)
            return false;
    return true;
}

} // namespace TavIec61850Parser
