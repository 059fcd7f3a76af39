#include "tools/gen/PcapWriter.h"

namespace TavGen {

namespace {
constexpr std::uint32_t kMagicUs = 0xa1b2c3d4;
constexpr std::uint32_t kMagicNs = 0xa1b23c4d;
constexpr std::uint32_t kSnapLen = 65535;
} // namespace

PcapWriter::PcapWriter(const std::string& path, bool bigEndian, bool nanoseconds,
                       std::uint32_t linkType)
    : CaptureWriter(path, bigEndian), nanoseconds_(nanoseconds), linkType_(linkType) {
    put32(nanoseconds ? kMagicNs : kMagicUs);
    put16(2);
    put16(4);
    put32(0); // thiszone
    put32(0); // sigfigs
    put32(kSnapLen);
    put32(linkType_);
}

void PcapWriter::writeFrame(std::uint64_t timeNs, std::span<const std::uint8_t> frame) {
    const std::uint64_t seconds = timeNs / 1'000'000'000u;
    const std::uint64_t fraction = timeNs % 1'000'000'000u;
    put32(static_cast<std::uint32_t>(seconds));
    put32(static_cast<std::uint32_t>(nanoseconds_ ? fraction : fraction / 1000));
    put32(static_cast<std::uint32_t>(frame.size()));
    put32(static_cast<std::uint32_t>(frame.size()));
    putBytes(frame);
}

} // namespace TavGen
