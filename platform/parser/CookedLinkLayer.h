#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TavIec61850Parser {

// Linux cooked captures (a capture on the "any" interface): a header of their
// own in place of the Ethernet addresses and EtherType.
inline constexpr std::uint32_t kLinkTypeLinuxSll = 113;
inline constexpr std::uint32_t kLinkTypeLinuxSll2 = 276;

inline bool isCookedLinkType(std::uint32_t linkType) {
    return linkType == kLinkTypeLinuxSll || linkType == kLinkTypeLinuxSll2;
}

// Rewrites a cooked frame into `out` as the Ethernet II frame it stands for:
// the header's protocol type becomes the EtherType (a VLAN tag stays in the
// payload behind it), its address the source. The header carries no
// destination, so the six destination bytes are zero and mean nothing.
// False when the frame is too short for its header or has no Ethernet source.
bool cookedToEthernet(std::uint32_t linkType, const std::uint8_t* frame, std::size_t size,
                      std::vector<std::uint8_t>& out);

} // namespace TavIec61850Parser
