#pragma once

#include <cstddef>
#include <cstdint>

namespace TavIec61850Parser {

inline constexpr std::uint16_t kEtherTypeSv = 0x88BA;
inline constexpr std::uint16_t kEtherTypeGoose = 0x88B8;

// The layer-2 view of one frame: addresses, tags and where the payload lies.
// Pointers point into the frame; nothing is copied.
struct EthernetFrame {
    const std::uint8_t* dst = nullptr;
    const std::uint8_t* src = nullptr;
    bool dstKnown = true;        // false for a link layer that does not carry it
    std::uint16_t etherType = 0; // 0 for an 802.3 length-field frame
    const std::uint8_t* payload = nullptr;
    std::size_t payloadSize = 0; // to the end of the frame, PRP trailer excluded

    std::uint8_t vlanCount = 0; // 0, 1 or 2 tags
    std::uint16_t vlanId = 0;   // of the outer tag
    std::uint16_t innerVlanId = 0;
    std::uint8_t vlanPriority = 0;

    bool hasHsr = false;
    std::uint8_t hsrPath = 0;
    std::uint16_t hsrSequence = 0;
    const std::uint8_t* hsrSequenceAt = nullptr;

    bool hasPrp = false;
    std::uint8_t prpLan = 0; // 0xA or 0xB
    std::uint16_t prpSequence = 0;
    const std::uint8_t* prpSequenceAt = nullptr;
};

// Decodes the Ethernet II header with up to two VLAN tags and an HSR tag, and
// a PRP trailer at the end. Returns false for a frame too short to carry an
// EtherType; such a frame is neither SV nor GOOSE.
bool decodeEthernet(const std::uint8_t* frame, std::size_t size, EthernetFrame& out);

// "aa:bb:cc:dd:ee:ff".
void formatMac(const std::uint8_t* mac, char out[18]);

// How an address the capture does not hold is shown: the shape of a MAC
// with no digit in it, so that nobody takes it for a real one.
inline constexpr const char* kUnknownMac = "??:??:??:??:??:??";

} // namespace TavIec61850Parser
