#include "tests/platform/parser/CaptureBytes.h"

#include "tests/support/TestCaptures.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace TavTest {

Bytes tlv(std::uint8_t tag, const Bytes& value) {
    Bytes out{tag};
    if (value.size() < 0x80) {
        out.push_back(static_cast<std::uint8_t>(value.size()));
    } else if (value.size() < 0x100) {
        out.push_back(0x81);
        out.push_back(static_cast<std::uint8_t>(value.size()));
    } else {
        out.push_back(0x82);
        out.push_back(static_cast<std::uint8_t>(value.size() >> 8));
        out.push_back(static_cast<std::uint8_t>(value.size()));
    }
    out.insert(out.end(), value.begin(), value.end());
    return out;
}

Bytes concat(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes& p : parts)
        out.insert(out.end(), p.begin(), p.end());
    return out;
}

Bytes be16(std::uint16_t v) {
    return {static_cast<std::uint8_t>(v >> 8), static_cast<std::uint8_t>(v)};
}
Bytes be32(std::uint32_t v) {
    return concat({be16(v >> 16), be16(v & 0xFFFF)});
}
Bytes text(const std::string& s) {
    return Bytes(s.begin(), s.end());
}

Bytes firstFrameOf(const std::string& captureName) {
    std::ifstream in(sharedCapture(captureName), std::ios::binary);
    Bytes file((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (file.size() < 40)
        throw std::runtime_error("capture missing: " + captureName);
    std::uint32_t len = file[32] | file[33] << 8 | file[34] << 16 | file[35] << 24;
    return Bytes(file.begin() + 40, file.begin() + 40 + len);
}

Bytes withTags(const Bytes& frame, const Bytes& tags) {
    Bytes out(frame.begin(), frame.begin() + 12);
    out.insert(out.end(), tags.begin(), tags.end());
    out.insert(out.end(), frame.begin() + 12, frame.end());
    return out;
}

Bytes withPrpTrailer(const Bytes& frame, std::uint8_t lan, std::uint16_t sequence) {
    std::uint16_t lanAndSize = static_cast<std::uint16_t>(lan << 12 | ((frame.size() - 8) & 0xFFF));
    return concat({frame, be16(sequence), be16(lanAndSize), be16(0x88FB)});
}

Bytes svFrame(const std::string& svId, int asdus, int channels, std::uint16_t firstSmpCnt) {
    Bytes seq;
    for (int a = 0; a < asdus; ++a) {
        Bytes values;
        for (int c = 0; c < channels; ++c)
            values = concat({values, be32(static_cast<std::uint32_t>(100 * a + c)), be32(0)});
        Bytes asdu = concat({tlv(0x80, text(svId)), tlv(0x82, be16(firstSmpCnt + a)),
                             tlv(0x83, be32(1)), tlv(0x85, {2}), tlv(0x87, values)});
        seq = concat({seq, tlv(0x30, asdu)});
    }
    Bytes pdu = tlv(0x60, concat({tlv(0x80, {static_cast<std::uint8_t>(asdus)}), tlv(0xA2, seq)}));
    Bytes apdu = concat(
        {be16(0x4000), be16(static_cast<std::uint16_t>(pdu.size() + 8)), be16(0), be16(0), pdu});
    Bytes eth{0x01, 0x0c, 0xcd, 0x04, 0x00, 0x01, 0x02, 0x00, 0x00, 0x00, 0x01, 0x01, 0x88, 0xBA};
    return concat({eth, apdu});
}

namespace {
Bytes ordered32(std::uint32_t v, bool big) {
    Bytes b = be32(v);
    return big ? b : Bytes(b.rbegin(), b.rend());
}
Bytes ordered16(std::uint16_t v, bool big) {
    Bytes b = be16(v);
    return big ? b : Bytes(b.rbegin(), b.rend());
}
Bytes padded(Bytes b) {
    b.resize((b.size() + 3) & ~std::size_t{3}, 0);
    return b;
}
} // namespace

Bytes pcapFile(const std::vector<PcapRecord>& records, bool big, bool ns, std::uint32_t linkType) {
    Bytes out = concat({ordered32(ns ? 0xA1B23C4D : 0xA1B2C3D4, big), ordered16(2, big),
                        ordered16(4, big), ordered32(0, big), ordered32(0, big),
                        ordered32(65535, big), ordered32(linkType, big)});
    for (const PcapRecord& r : records) {
        auto n = static_cast<std::uint32_t>(r.frame.size());
        out = concat({out, ordered32(r.seconds, big), ordered32(r.fraction, big), ordered32(n, big),
                      ordered32(n, big), r.frame});
    }
    return out;
}

Bytes Pcapng::u16(std::uint16_t v) const {
    return ordered16(v, big);
}
Bytes Pcapng::u32(std::uint32_t v) const {
    return ordered32(v, big);
}

Pcapng& Pcapng::block(std::uint32_t type, const Bytes& body) {
    Bytes b = padded(body);
    auto total = static_cast<std::uint32_t>(b.size() + 12);
    out = concat({out, u32(type), u32(total), b, u32(total)});
    return *this;
}

Pcapng& Pcapng::section() {
    return block(0x0A0D0D0A,
                 concat({u32(0x1A2B3C4D), u16(1), u16(0), u32(0xFFFFFFFF), u32(0xFFFFFFFF)}));
}

Pcapng& Pcapng::interface(std::uint16_t linkType, int resol, std::int64_t offset) {
    Bytes body = concat({u16(linkType), u16(0), u32(0)});
    if (resol >= 0)
        body = concat({body, u16(9), u16(1), padded({static_cast<std::uint8_t>(resol)})});
    if (offset != 0) {
        auto v = static_cast<std::uint64_t>(offset);
        Bytes value = big ? concat({u32(v >> 32), u32(v & 0xFFFFFFFF)})
                          : concat({u32(v & 0xFFFFFFFF), u32(v >> 32)});
        body = concat({body, u16(14), u16(8), value});
    }
    body = concat({body, u16(0), u16(0)});
    return block(1, body);
}

Pcapng& Pcapng::enhanced(std::uint32_t itf, std::uint64_t ticks, const Bytes& frame) {
    auto n = static_cast<std::uint32_t>(frame.size());
    return block(
        6, concat({u32(itf), u32(ticks >> 32), u32(ticks & 0xFFFFFFFF), u32(n), u32(n), frame}));
}

Pcapng& Pcapng::simple(const Bytes& frame) {
    return block(3, concat({u32(static_cast<std::uint32_t>(frame.size())), frame}));
}

Pcapng& Pcapng::obsolete(std::uint16_t itf, std::uint64_t ticks, const Bytes& frame) {
    auto n = static_cast<std::uint32_t>(frame.size());
    return block(2, concat({u16(itf), u16(0), u32(ticks >> 32), u32(ticks & 0xFFFFFFFF), u32(n),
                            u32(n), frame}));
}

std::string writeTemp(const std::string& name, const Bytes& bytes) {
    std::string path = tempDir() + "/" + name;
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    return path;
}

TavIec61850Parser::FileStats parse(const std::string& path, TavIec61850Parser::Db& db) {
    std::atomic<bool> cancel{false};
    TavIec61850Parser::FileStats stats;
    TavIec61850Parser::PcapParser::parseFile(path, db, {}, cancel, nullptr, stats);
    return stats;
}

} // namespace TavTest
