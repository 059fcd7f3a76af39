#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace TavGen {

using Mac = std::array<std::uint8_t, 6>;

// How SV and GOOSE frames are carried on the wire.
struct Tagging {
    std::optional<std::uint16_t> vlanId;
    bool dropEligible = false;   // the DEI bit of the VLAN tag
    std::optional<char> hsrLine; // 'A' or 'B'
    std::optional<char> prpLine; // 'A' or 'B'
};

// Where the parts that change from frame to frame sit in a built frame.
struct FrameLayout {
    std::size_t payloadOffset = 0;
    std::optional<std::size_t> hsrSequenceOffset;
    std::optional<std::size_t> prpSequenceOffset;
};

// Builds an Ethernet II frame into `out` (replacing its contents): addresses,
// optional 802.1Q tag, optional HSR tag, the EtherType, the payload and an
// optional PRP redundancy control trailer.
FrameLayout buildEthernetFrame(std::vector<std::uint8_t>& out, const Mac& dst, const Mac& src,
                               const Tagging& tagging, std::uint16_t etherType,
                               std::span<const std::uint8_t> payload, std::uint16_t sequence);

// Rewrites the HSR and PRP sequence numbers of a frame built with `layout`.
void setRedundancySequence(std::span<std::uint8_t> frame, const FrameLayout& layout,
                           std::uint16_t sequence);

inline void putBigEndian16(std::uint8_t* at, std::uint16_t v) {
    at[0] = static_cast<std::uint8_t>(v >> 8);
    at[1] = static_cast<std::uint8_t>(v);
}
inline void putBigEndian32(std::uint8_t* at, std::uint32_t v) {
    at[0] = static_cast<std::uint8_t>(v >> 24);
    at[1] = static_cast<std::uint8_t>(v >> 16);
    at[2] = static_cast<std::uint8_t>(v >> 8);
    at[3] = static_cast<std::uint8_t>(v);
}

} // namespace TavGen
