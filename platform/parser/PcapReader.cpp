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
    : path_(std::move(path)), data_(data), size_(size), in_(data, size), header_(header) {
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

void PcapReader::seek(std::size_t offset) {
    in_ = ByteReader(data_, size_);
    in_.skip(offset);
}

namespace {

constexpr int kChainRecords = 8;
constexpr std::uint32_t kChainSecondsApart = 86400;

bool chainStartsAt(const std::uint8_t* data, std::size_t size, const PcapHeader& h,
                   std::size_t at) {
    const std::uint32_t perSecond = h.nanoseconds ? 1'000'000'000u : 1'000'000u;
    std::uint32_t firstSeconds = 0;
    for (int i = 0; i < kChainRecords; ++i) {
        if (at == size)
            return i > 0;
        if (size - at < kPcapRecordHeaderSize)
            return false;
        const std::uint8_t* r = data + at;
        const std::uint32_t seconds = ByteReader::load32(r, h.bigEndian);
        const std::uint32_t captured = ByteReader::load32(r + 8, h.bigEndian);
        if (i == 0)
            firstSeconds = seconds;
        const std::uint32_t apart =
            seconds > firstSeconds ? seconds - firstSeconds : firstSeconds - seconds;
        if (ByteReader::load32(r + 4, h.bigEndian) >= perSecond || apart > kChainSecondsApart ||
            !plausibleRecord(captured, ByteReader::load32(r + 12, h.bigEndian)) ||
            captured > size - at - kPcapRecordHeaderSize)
            return false;
        at += kPcapRecordHeaderSize + captured;
    }
    return true;
}

} // namespace

std::optional<std::size_t> findPcapRecord(const std::uint8_t* data, std::size_t size,
                                          const PcapHeader& header, std::size_t from) {
    const std::size_t reach = 2 * (kMaxFrameSize + kPcapRecordHeaderSize);
    const std::size_t last = size - from > reach ? from + reach : size;
    for (std::size_t at = from; at < last; ++at)
        if (chainStartsAt(data, size, header, at))
            return at;
    return std::nullopt;
}

} // namespace TavIec61850Parser
