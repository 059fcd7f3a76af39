#pragma once

#include "platform/parser/FrameTemplate.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace TavIec61850Parser {

// The frame layouts of the SV streams met so far: what lets a frame be filed
// under its stream without decoding it. Streams of one publisher may share
// every byte up to the svID, or differ only in a counter's width deep in the
// APDU, so a frame is recognised by its whole template, never by a key taken
// from a fixed place. Each stream keeps a few layouts, so that one whose
// frames change shape (an optional field now and then) costs a slow frame
// when a shape is new, not one per frame.
class LayoutCache {
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFFu;
    static constexpr std::size_t kPerStream = 4;
    static constexpr std::size_t kMaxLayouts = 1 << 14;

    // The stream number whose layout the frame matches, or kNone.
    std::uint32_t find(const std::uint8_t* frame, std::size_t size);
    // Remembers the frame's layout for `stream`, in place of that stream's
    // oldest one when it has kPerStream already.
    void learn(std::uint32_t stream, const std::uint8_t* frame, std::size_t size,
               const VaryingBytes& varying);

private:
    static constexpr std::size_t kBuckets = 256;

    struct Layout {
        FrameTemplate frame;
        std::size_t size = 0;
        std::uint32_t stream = kNone;
        std::uint32_t next = kNone;       // the layout whose frame came after this one's last
        std::uint32_t sameBucket = kNone; // the bucket's next layout
    };
    struct StreamLayouts {
        std::array<std::uint32_t, kPerStream> ids{};
        std::uint8_t count = 0;
        std::uint8_t oldest = 0;
    };

    std::uint32_t hit(std::uint32_t layout);
    std::uint32_t place(std::uint32_t stream);
    void link(std::uint32_t layout);
    void unlink(std::uint32_t layout);
    static std::size_t bucketOf(std::size_t size) { return size % kBuckets; }

    std::vector<Layout> layouts_;
    std::vector<StreamLayouts> streams_;
    std::array<std::uint32_t, kBuckets> buckets_ = filled();
    std::uint32_t last_ = kNone;

    static std::array<std::uint32_t, kBuckets> filled() {
        std::array<std::uint32_t, kBuckets> a;
        a.fill(kNone);
        return a;
    }
};

} // namespace TavIec61850Parser
