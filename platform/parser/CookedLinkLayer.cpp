#include "platform/parser/CookedLinkLayer.h"

#include "platform/parser/ByteReader.h"

#include <cstring>

namespace TavIec61850Parser {

namespace {

constexpr std::size_t kMacSize = 6;
constexpr std::size_t kEthernetAddresses = 12;

// Where the fields lie in the two header versions.
struct CookedHeader {
    std::size_t size;
    std::size_t protocolAt;
    std::size_t addressLengthAt;
    bool wideAddressLength; // 16 bits in version 1, 8 in version 2
    std::size_t addressAt;
};
constexpr CookedHeader kSll{16, 14, 4, true, 6};
constexpr CookedHeader kSll2{20, 0, 11, false, 12};

} // namespace

bool cookedToEthernet(std::uint32_t linkType, const std::uint8_t* frame, std::size_t size,
                      std::vector<std::uint8_t>& out) {
    const CookedHeader& h = linkType == kLinkTypeLinuxSll ? kSll : kSll2;
    if (size < h.size)
        return false;
    const std::uint16_t addressLength = h.wideAddressLength
                                            ? ByteReader::load16(frame + h.addressLengthAt, true)
                                            : frame[h.addressLengthAt];
    if (addressLength != kMacSize)
        return false;
    out.resize(kEthernetAddresses + 2 + (size - h.size));
    std::memset(out.data(), 0, kMacSize);
    std::memcpy(out.data() + kMacSize, frame + h.addressAt, kMacSize);
    std::memcpy(out.data() + kEthernetAddresses, frame + h.protocolAt, 2);
    if (size > h.size)
        std::memcpy(out.data() + kEthernetAddresses + 2, frame + h.size, size - h.size);
    return true;
}

} // namespace TavIec61850Parser
