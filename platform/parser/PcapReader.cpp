#include "platform/parser/PcapReader.h"

#include "platform/parser/ParseError.h"

namespace TavIec61850Parser {

namespace {
constexpr std::uint32_t kMagicMicro = 0xA1B2C3D4;
constexpr std::uint32_t kMagicNano = 0xA1B23C4D;
} // namespace

std::optional<PcapHeader> readPcapHeader(const std::uint8_t* data, std::size_t size) {
    if (size < 4)
        return std::nullopt;
    PcapHeader h;
    for (bool big : {false, true}) {
        std::uint32_t magic = ByteReader::load32(data, big);
        if (magic == kMagicMicro || magic == kMagicNano) {
            h.bigEndian = big;
            h.nanoseconds = magic == kMagicNano;
            if (size >= kPcapFileHeaderSize)
                h.linkType = ByteReader::load32(data + 20, big) & 0xFFFF;
            return h;
        }
    }
    return std::nullopt;
}

Timest pcapTime(std::uint32_t seconds, std::uint32_t fraction, bool nanoseconds) {
    const std::uint32_t perSecond = nanoseconds ? 1'000'000'000u : 1'000'000u;
    if (fraction < perSecond) // nearly always: no division
        return {seconds, nanoseconds ? fraction : fraction * 1000u};
    std::uint64_t s = seconds + fraction / perSecond;
    std::uint32_t rest = fraction % perSecond;
    if (s > 0xFFFFFFFFu)
        s = 0xFFFFFFFFu;
    return {static_cast<std::uint32_t>(s), nanoseconds ? rest : rest * 1000u};
}

PcapReader::PcapReader(std::string path, const std::uint8_t* data, std::size_t size,
                       const PcapHeader& header)
    : path_(std::move(path)), in_(data, size), header_(header) {
    if (size < kPcapFileHeaderSize)
        throw ParseError(path_, "truncated at byte 0");
    in_.skip(kPcapFileHeaderSize);
}

bool PcapReader::next(FrameRecord& out) {
    if (in_.atEnd())
        return false;
    const std::size_t at = in_.position();
    if (in_.remaining() < kPcapRecordHeaderSize)
        throw ParseError(path_, "truncated at byte " + std::to_string(at));
    const bool big = header_.bigEndian;
    const std::uint8_t* h = in_.bytes(kPcapRecordHeaderSize);
    std::uint32_t seconds = ByteReader::load32(h, big);
    std::uint32_t fraction = ByteReader::load32(h + 4, big);
    std::uint32_t captured = ByteReader::load32(h + 8, big);
    std::uint32_t original = ByteReader::load32(h + 12, big);
    if (!plausibleRecord(captured, original))
        throw ParseError(path_, "corrupt record header at byte " + std::to_string(at));
    if (captured > in_.remaining())
        throw ParseError(path_, "truncated at byte " + std::to_string(at));
    out.time = pcapTime(seconds, fraction, header_.nanoseconds);
    out.offset = at;
    out.data = in_.bytes(captured);
    out.size = captured;
    out.linkType = header_.linkType;
    return true;
}

} // namespace TavIec61850Parser
