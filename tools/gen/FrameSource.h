#pragma once

#include <cstdint>
#include <span>

namespace TavGen {

// One publisher's frames in time order; the capture merges several by time.
class FrameSource {
public:
    virtual ~FrameSource() = default;

    virtual bool done() const = 0;
    // Nanoseconds since the epoch of the current frame.
    virtual std::uint64_t timeNs() const = 0;
    // The current frame's bytes; valid until advance().
    virtual std::span<const std::uint8_t> frame() = 0;
    virtual void advance() = 0;
};

} // namespace TavGen
