#include "tools/gen/CaptureWriter.h"

#include "tools/gen/PcapWriter.h"
#include "tools/gen/PcapngWriter.h"

namespace TavGen {

std::uint32_t linkTypeNumber(LinkLayer link) {
    switch (link) {
    case LinkLayer::LinuxSll:
        return 113;
    case LinkLayer::LinuxSll2:
        return 276;
    case LinkLayer::Ethernet:
        break;
    }
    return 1;
}

std::unique_ptr<CaptureWriter> CaptureWriter::create(const std::string& path, Container container,
                                                     bool bigEndian, LinkLayer link) {
    const std::uint32_t type = linkTypeNumber(link);
    switch (container) {
    case Container::Pcap:
        return std::make_unique<PcapWriter>(path, bigEndian, false, type);
    case Container::PcapNs:
        return std::make_unique<PcapWriter>(path, bigEndian, true, type);
    case Container::Pcapng:
        return std::make_unique<PcapngWriter>(path, bigEndian, false, type);
    case Container::PcapngNs:
        return std::make_unique<PcapngWriter>(path, bigEndian, true, type);
    }
    return nullptr;
}

void CaptureWriter::put16(std::uint16_t v) {
    std::uint8_t b[2];
    if (bigEndian_) {
        b[0] = static_cast<std::uint8_t>(v >> 8);
        b[1] = static_cast<std::uint8_t>(v);
    } else {
        b[0] = static_cast<std::uint8_t>(v);
        b[1] = static_cast<std::uint8_t>(v >> 8);
    }
    sink_.write(b, 2);
}

void CaptureWriter::put32(std::uint32_t v) {
    std::uint8_t b[4];
    for (int i = 0; i < 4; ++i) {
        int shift = bigEndian_ ? 24 - 8 * i : 8 * i;
        b[i] = static_cast<std::uint8_t>(v >> shift);
    }
    sink_.write(b, 4);
}

void CaptureWriter::putZeros(std::size_t n) {
    static constexpr std::uint8_t zeros[8] = {};
    while (n > 0) {
        std::size_t k = n < sizeof zeros ? n : sizeof zeros;
        sink_.write(zeros, k);
        n -= k;
    }
}

} // namespace TavGen
