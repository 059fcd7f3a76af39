#include "platform/parser/LayoutCache.h"

namespace TavIec61850Parser {

std::uint32_t LayoutCache::hit(std::uint32_t layout) {
    if (last_ != kNone)
        layouts_[last_].next = layout;
    last_ = layout;
    return layouts_[layout].stream;
}

std::uint32_t LayoutCache::find(const std::uint8_t* frame, std::size_t size) {
    // Interleaved streams repeat their order, so the layout that followed the
    // last one before is the best guess; a lone stream follows itself.
    if (last_ != kNone) {
        for (std::uint32_t guess : {layouts_[last_].next, last_})
            if (guess != kNone && layouts_[guess].frame.matches(frame, size))
                return hit(guess);
    }
    for (std::uint32_t i = buckets_[bucketOf(size)]; i != kNone; i = layouts_[i].sameBucket)
        if (layouts_[i].size == size && layouts_[i].frame.matches(frame, size))
            return hit(i);
    return kNone;
}

void LayoutCache::link(std::uint32_t layout) {
    std::uint32_t& head = buckets_[bucketOf(layouts_[layout].size)];
    layouts_[layout].sameBucket = head;
    head = layout;
}

void LayoutCache::unlink(std::uint32_t layout) {
    std::uint32_t* at = &buckets_[bucketOf(layouts_[layout].size)];
    while (*at != kNone && *at != layout)
        at = &layouts_[*at].sameBucket;
    if (*at == layout)
        *at = layouts_[layout].sameBucket;
}

// A fresh layout for the stream, or its oldest one to overwrite; kNone when
// the cache is full and the stream has none.
std::uint32_t LayoutCache::place(std::uint32_t stream) {
    if (stream >= streams_.size())
        streams_.resize(static_cast<std::size_t>(stream) + 1);
    StreamLayouts& s = streams_[stream];
    if (s.count < kPerStream && layouts_.size() < kMaxLayouts) {
        const auto id = static_cast<std::uint32_t>(layouts_.size());
        layouts_.emplace_back();
        s.ids[s.count++] = id;
        return id;
    }
    if (s.count == 0)
        return kNone;
    const std::uint32_t id = s.ids[s.oldest];
    s.oldest = static_cast<std::uint8_t>((s.oldest + 1) % s.count);
    unlink(id);
    return id;
}

void LayoutCache::learn(std::uint32_t stream, const std::uint8_t* frame, std::size_t size,
                        const VaryingBytes& varying) {
    FrameTemplate probe;
    if (!probe.build(frame, size, varying))
        return; // too big or too varied: this frame's stream is always decoded
    const std::uint32_t id = place(stream);
    if (id == kNone)
        return;
    Layout& l = layouts_[id];
    l.frame = probe;
    l.size = size;
    l.stream = stream;
    l.next = kNone;
    link(id);
    if (last_ != kNone && last_ != id)
        layouts_[last_].next = id;
    last_ = id;
}

} // namespace TavIec61850Parser
