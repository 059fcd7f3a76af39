#include "tools/gen/OtherFrames.h"

#include "tools/gen/EthernetFrame.h"

namespace TavGen {

namespace {
constexpr std::uint16_t kIpv4 = 0x0800;
constexpr std::size_t kIpHeader = 20;
constexpr std::size_t kUdpHeader = 8;
constexpr std::size_t kUdpData = 18; // pads the frame to the Ethernet minimum of 60 bytes

std::vector<std::uint8_t> udpBroadcast() {
    std::vector<std::uint8_t> ip(kIpHeader + kUdpHeader + kUdpData, 0);
    ip[0] = 0x45;
    putBigEndian16(&ip[2], static_cast<std::uint16_t>(ip.size()));
    ip[8] = 64; // TTL
    ip[9] = 17; // UDP
    const std::uint8_t src[4] = {192, 168, 0, 10};
    for (int i = 0; i < 4; ++i) {
        ip[12 + i] = src[i];
        ip[16 + i] = 255;
    }
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < kIpHeader; i += 2)
        sum += static_cast<std::uint32_t>(ip[i] << 8 | ip[i + 1]);
    while (sum >> 16)
        sum = (sum & 0xFFFF) + (sum >> 16);
    putBigEndian16(&ip[10], static_cast<std::uint16_t>(~sum));
    putBigEndian16(&ip[20], 5000);
    putBigEndian16(&ip[22], 5000);
    putBigEndian16(&ip[24], static_cast<std::uint16_t>(kUdpHeader + kUdpData));
    return ip;
}
} // namespace

OtherFrames::OtherFrames(std::uint64_t count, std::uint64_t startNs, std::uint64_t durationNs)
    : count_(count), startNs_(startNs), durationNs_(durationNs) {
    const Mac broadcast{0xff, 0xff, 0xff, 0xff, 0xff, 0xff};
    const Mac src{0x02, 0x00, 0x00, 0x00, 0x03, 0x00};
    buildEthernetFrame(frame_, broadcast, src, Tagging{}, kIpv4, udpBroadcast(), 0);
}

std::span<const std::uint8_t> OtherFrames::frame() {
    return frame_;
}

} // namespace TavGen
