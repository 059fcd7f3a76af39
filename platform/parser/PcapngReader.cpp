#include "platform/parser/PcapngReader.h"

#include "platform/parser/ParseError.h"
#include "platform/parser/PcapReader.h"

#include <algorithm>

namespace TavIec61850Parser {

namespace {

constexpr std::uint32_t kByteOrderMagic = 0x1A2B3C4D;
constexpr std::size_t kBlockOverhead = 12; // type, length, trailing length
constexpr std::uint16_t kOptionTsResolution = 9;
constexpr std::uint16_t kOptionTsOffset = 14;

std::size_t padded(std::size_t n) {
    return (n + 3) & ~std::size_t{3};
}

// Units per second from if_tsresol: 10^-n, or 2^-n when the top bit is set.
// Resolutions finer than a 64-bit count can hold are refused.
bool unitsFromResolution(std::uint8_t resol, std::uint64_t& units) {
    std::uint8_t exponent = resol & 0x7F;
    if (resol & 0x80) {
        if (exponent > 63)
            return false;
        units = std::uint64_t{1} << exponent;
        return true;
    }
    if (exponent > 19)
        return false;
    units = 1;
    for (int i = 0; i < exponent; ++i)
        units *= 10;
    return true;
}

} // namespace

std::optional<bool> packetBlockIsBigEndian(const std::uint8_t* blockStart) {
    for (bool big : {false, true}) {
        std::uint32_t type = ByteReader::load32(blockStart, big);
        if (type == kBlockEnhancedPacket || type == kBlockSimplePacket ||
            type == kBlockObsoletePacket)
            return big;
    }
    return std::nullopt;
}

PacketBlockFrame packetBlockFrame(const std::uint8_t* block, std::size_t blockLength,
                                  std::uint32_t type, bool big) {
    ByteReader body(block + 8, blockLength - kBlockOverhead);
    PacketBlockFrame f;
    std::size_t captured = 0;
    try {
        if (type == kBlockSimplePacket) {
            captured = std::min<std::size_t>(body.u32(big), body.remaining());
        } else {
            if (type == kBlockEnhancedPacket) {
                f.interfaceId = body.u32(big);
            } else {
                f.interfaceId = body.u16(big);
                body.skip(2); // drops count
            }
            std::uint64_t high = body.u32(big);
            f.ticks = high << 32 | body.u32(big);
            captured = body.u32(big);
            body.skip(4); // original length
        }
        f.size = captured;
        f.data = body.bytes(captured);
    } catch (const OutOfBounds&) {
        throw MalformedFrame("packet block too short for its frame");
    }
    return f;
}

PcapngReader::PcapngReader(std::string path, const std::uint8_t* data, std::size_t size)
    : path_(std::move(path)), in_(data, size) {}

void PcapngReader::fail(const char* what, std::size_t at) const {
    throw ParseError(path_, std::string(what) + " at byte " + std::to_string(at));
}

void PcapngReader::readSectionHeader(std::size_t at) {
    if (in_.remaining() < kBlockOverhead)
        fail("truncated", at);
    std::uint32_t magic = ByteReader::load32(in_.here() + 8, false);
    if (magic == kByteOrderMagic)
        bigEndian_ = false;
    else if (__builtin_bswap32(magic) == kByteOrderMagic)
        bigEndian_ = true;
    else
        fail("corrupt section header", at);
    interfaces_.clear();
    sections_.push_back({at, {}});
}

void PcapngReader::readInterface(ByteReader body, std::size_t at) {
    Interface itf;
    try {
        itf.linkType = body.u16(bigEndian_);
        body.skip(2);
        itf.snapLength = body.u32(bigEndian_);
        while (body.remaining() >= 4) {
            std::uint16_t code = body.u16(bigEndian_);
            std::uint16_t length = body.u16(bigEndian_);
            if (code == 0)
                break;
            ByteReader value = body.sub(length);
            body.skip(std::min(padded(length) - length, body.remaining()));
            if (code == kOptionTsResolution && length == 1) {
                if (!unitsFromResolution(value.u8(), itf.unitsPerSecond))
                    fail("unsupported time resolution in interface block", at);
            } else if (code == kOptionTsOffset && length == 8) {
                itf.offsetSeconds = static_cast<std::int64_t>(value.u64(bigEndian_));
            }
        }
    } catch (const OutOfBounds&) {
        fail("corrupt interface block", at);
    }
    interfaces_.push_back(itf);
    sections_.back().linkTypes.push_back(itf.linkType);
}

Timest PcapngReader::toTime(const Interface& itf, std::uint64_t ticks) const {
    std::uint64_t seconds = 0;
    std::uint64_t nanos = 0;
    // The usual resolutions get a division by a constant.
    if (itf.unitsPerSecond == 1'000'000) {
        seconds = ticks / 1'000'000;
        nanos = ticks % 1'000'000 * 1000;
    } else if (itf.unitsPerSecond == 1'000'000'000) {
        seconds = ticks / 1'000'000'000;
        nanos = ticks % 1'000'000'000;
    } else {
        seconds = ticks / itf.unitsPerSecond;
        unsigned __int128 rest = ticks % itf.unitsPerSecond;
        nanos = static_cast<std::uint64_t>(rest * 1'000'000'000u / itf.unitsPerSecond);
    }
    std::int64_t s = static_cast<std::int64_t>(std::min<std::uint64_t>(seconds, INT64_MAX / 2));
    if (itf.offsetSeconds > 0)
        s = s > INT64_MAX - itf.offsetSeconds ? INT64_MAX : s + itf.offsetSeconds;
    else
        s += itf.offsetSeconds; // s >= 0 and offset >= INT64_MIN cannot overflow
    if (s < 0)
        return {0, 0};
    if (s > 0xFFFFFFFFLL)
        return {0xFFFFFFFFu, static_cast<std::uint32_t>(nanos)};
    return {static_cast<std::uint32_t>(s), static_cast<std::uint32_t>(nanos)};
}

bool PcapngReader::next(FrameRecord& out) {
    while (!in_.atEnd()) {
        const std::size_t at = in_.position();
        if (in_.remaining() < kBlockOverhead)
            fail("truncated", at);
        const std::uint8_t* block = in_.here();
        std::uint32_t type = ByteReader::load32(block, bigEndian_);
        if (type == kBlockSectionHeader)
            readSectionHeader(at);
        else if (at == 0)
            fail("corrupt section header", at);
        std::uint32_t length = ByteReader::load32(block + 4, bigEndian_);
        if (length < kBlockOverhead || length % 4 != 0)
            fail("corrupt block header", at);
        if (length > in_.remaining())
            fail("truncated", at);
        if (ByteReader::load32(block + length - 4, bigEndian_) != length)
            fail("corrupt block length", at);
        in_.skip(length);

        if (type == kBlockInterface) {
            readInterface(ByteReader(block + 8, length - kBlockOverhead), at);
            continue;
        }
        if (type != kBlockEnhancedPacket && type != kBlockSimplePacket &&
            type != kBlockObsoletePacket)
            continue;
        PacketBlockFrame f;
        try {
            f = packetBlockFrame(block, length, type, bigEndian_);
        } catch (const MalformedFrame&) {
            fail("corrupt packet block", at);
        }
        if (f.interfaceId >= interfaces_.size())
            fail("packet block of an undeclared interface", at);
        const Interface& itf = interfaces_[f.interfaceId];
        if (type == kBlockSimplePacket) {
            // No time of its own: it keeps the order by taking the last one seen.
            out.time = lastTime_;
            if (itf.snapLength != 0 && f.size > itf.snapLength)
                f.size = itf.snapLength;
        } else {
            out.time = toTime(itf, f.ticks);
        }
        if (f.size > kMaxFrameSize)
            fail("corrupt packet block", at);
        lastTime_ = out.time;
        out.offset = at;
        out.data = f.data;
        out.size = f.size;
        out.linkType = itf.linkType;
        return true;
    }
    return false;
}

} // namespace TavIec61850Parser
