#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace TavIec61850Parser {

// The value bytes of a frame that may change from one frame of a stream to the
// next (sample counters, samples, sequence numbers); everything else - every
// tag and length included - stays the same while the stream does.
struct VaryingBytes {
    static constexpr std::size_t kMax = 48;
    struct Range {
        const std::uint8_t* at;
        std::size_t size;
    };
    std::array<Range, kMax> ranges;
    std::size_t count = 0;
    bool overflow = false;

    void add(const std::uint8_t* at, std::size_t size) {
        if (count == kMax)
            overflow = true;
        else
            ranges[count++] = {at, size};
    }
};

// A well-formed frame with its varying bytes marked. A later frame of the same
// size whose other bytes are equal is well-formed too and belongs to the same
// stream, so it needs no decoding at all: the parse's fast path.
class FrameTemplate {
public:
    static constexpr std::size_t kMaxSize = 1536; // an Ethernet frame with its tags

    // False (and an empty template) when the frame is too big or too varied.
    bool build(const std::uint8_t* frame, std::size_t size, const VaryingBytes& varying);
    void clear() { size_ = 0; }

    bool matches(const std::uint8_t* frame, std::size_t size) const;

private:
    std::size_t size_ = 0; // 0: no template
    std::array<std::uint8_t, kMaxSize> bytes_;
    // 0xFF where the byte must equal the template's, 0 where it may vary.
    std::array<std::uint8_t, kMaxSize> mask_;
};

} // namespace TavIec61850Parser
