#include "tools/gen/PcapngWriter.h"

namespace TavGen {

namespace {
constexpr std::uint32_t kSectionHeader = 0x0A0D0D0A;
constexpr std::uint32_t kInterface = 0x00000001;
constexpr std::uint32_t kEnhancedPacket = 0x00000006;
constexpr std::uint32_t kByteOrderMagic = 0x1A2B3C4D;
constexpr std::uint16_t kOptTsResol = 9;
constexpr std::uint32_t kSnapLen = 65535;

std::size_t pad4(std::size_t n) {
    return (4 - n % 4) % 4;
}
} // namespace

PcapngWriter::PcapngWriter(const std::string& path, bool bigEndian, bool nanoseconds,
                           std::uint32_t linkType)
    : CaptureWriter(path, bigEndian), nanoseconds_(nanoseconds), linkType_(linkType) {
    writeSectionHeader();
    writeInterface();
}

void PcapngWriter::writeSectionHeader() {
    const std::uint32_t length = 28;
    put32(kSectionHeader);
    put32(length);
    put32(kByteOrderMagic);
    put16(1);
    put16(0);
    put32(0xFFFFFFFFu); // section length unknown
    put32(0xFFFFFFFFu);
    put32(length);
}

void PcapngWriter::writeInterface() {
    const std::uint32_t length = 20 + 8 + 4; // header, if_tsresol padded, end of options
    put32(kInterface);
    put32(length);
    put16(static_cast<std::uint16_t>(linkType_));
    put16(0);
    put32(kSnapLen);
    put16(kOptTsResol);
    put16(1);
    const std::uint8_t resolution[4] = {static_cast<std::uint8_t>(nanoseconds_ ? 9 : 6), 0, 0, 0};
    putBytes(resolution);
    put32(0); // opt_endofopt
    put32(length);
}

void PcapngWriter::writeFrame(std::uint64_t timeNs, std::span<const std::uint8_t> frame) {
    const std::uint64_t ticks = nanoseconds_ ? timeNs : timeNs / 1000;
    const std::size_t padding = pad4(frame.size());
    const auto length = static_cast<std::uint32_t>(32 + frame.size() + padding);
    put32(kEnhancedPacket);
    put32(length);
    put32(0); // interface
    put32(static_cast<std::uint32_t>(ticks >> 32));
    put32(static_cast<std::uint32_t>(ticks));
    put32(static_cast<std::uint32_t>(frame.size()));
    put32(static_cast<std::uint32_t>(frame.size()));
    putBytes(frame);
    putZeros(padding);
    put32(length);
}

} // namespace TavGen
