#include "platform/parser/EthernetDecoder.h"

#include "platform/parser/ByteReader.h"

namespace TavIec61850Parser {

namespace {

constexpr std::uint16_t kVlan = 0x8100;
constexpr std::uint16_t kQinQ = 0x88A8;
constexpr std::uint16_t kQinQLegacy = 0x9100;
constexpr std::uint16_t kHsr = 0x892F;
constexpr std::uint16_t kPrpSuffix = 0x88FB;
constexpr std::size_t kHeader = 14;
constexpr std::size_t kPrpTrailer = 6;

std::uint16_t be16(const std::uint8_t* p) {
    return ByteReader::load16(p, true);
}

bool isVlan(std::uint16_t type) {
    return type == kVlan || type == kQinQ || type == kQinQLegacy;
}

// The trailer is recognised by its suffix and a LAN identifier of A or B; a
// payload that merely ends in 0x88FB with another nibble there is left alone.
void findPrpTrailer(const std::uint8_t* frame, std::size_t start, std::size_t& end,
                    EthernetFrame& out) {
    if (end < start + kPrpTrailer)
        return;
    const std::uint8_t* t = frame + end - kPrpTrailer;
    if (be16(t + 4) != kPrpSuffix)
        return;
    std::uint8_t lan = t[2] >> 4;
    if (lan != 0xA && lan != 0xB)
        return;
    out.hasPrp = true;
    out.prpLan = lan;
    out.prpSequence = be16(t);
    out.prpSequenceAt = t;
    end -= kPrpTrailer;
}

} // namespace

bool decodeEthernet(const std::uint8_t* frame, std::size_t size, EthernetFrame& out) {
    out = EthernetFrame{};
    if (size < kHeader)
        return false;
    out.dst = frame;
    out.src = frame + 6;
    std::size_t pos = 12;
    std::uint16_t type = be16(frame + pos);
    pos += 2;
    // Tags, outermost first: at most two VLAN tags and one HSR tag.
    for (int tags = 0; tags < 3; ++tags) {
        if (isVlan(type) && out.vlanCount < 2) {
            if (size - pos < 4)
                return false;
            std::uint16_t tci = be16(frame + pos);
            if (out.vlanCount == 0) {
                out.vlanId = tci & 0x0FFF;
                out.vlanPriority = static_cast<std::uint8_t>(tci >> 13);
            } else {
                out.innerVlanId = tci & 0x0FFF;
            }
            ++out.vlanCount;
            type = be16(frame + pos + 2);
            pos += 4;
        } else if (type == kHsr && !out.hasHsr) {
            if (size - pos < 6)
                return false;
            out.hasHsr = true;
            out.hsrPath = frame[pos] >> 4;
            out.hsrSequence = be16(frame + pos + 2);
            out.hsrSequenceAt = frame + pos + 2;
            type = be16(frame + pos + 4);
            pos += 6;
        } else {
            break;
        }
    }
    out.etherType = type >= 0x0600 ? type : 0;
    std::size_t end = size;
    findPrpTrailer(frame, pos, end, out);
    out.payload = frame + pos;
    out.payloadSize = end - pos;
    return true;
}

void formatMac(const std::uint8_t* mac, char out[18]) {
    static const char digits[] = "0123456789abcdef";
    for (int i = 0; i < 6; ++i) {
        out[i * 3] = digits[mac[i] >> 4];
        out[i * 3 + 1] = digits[mac[i] & 0xF];
        out[i * 3 + 2] = i == 5 ? '\0' : ':';
    }
}

} // namespace TavIec61850Parser
