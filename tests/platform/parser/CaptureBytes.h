#pragma once

#include "platform/parser/PcapParser.h"

#include "tests/support/TestCaptures.h"

#include <cstdint>
#include <string>
#include <vector>

namespace TavTest {

using Bytes = std::vector<std::uint8_t>;

// Builders of frames and capture files byte by byte, for the cases no capture
// writer produces: odd byte orders, resolutions, block kinds and damage.
Bytes tlv(std::uint8_t tag, const Bytes& value);
Bytes concat(std::initializer_list<Bytes> parts);
Bytes be16(std::uint16_t v);
Bytes be32(std::uint32_t v);
Bytes text(const std::string& s);

// The first frame of a real shared capture (a little-endian pcap).
Bytes firstFrameOf(const std::string& captureName);

// Ethernet II frame from the 12 address bytes of `model`, extra tags and the
// EtherType with its payload.
Bytes withTags(const Bytes& frame, const Bytes& tags);
Bytes withPrpTrailer(const Bytes& frame, std::uint8_t lan, std::uint16_t sequence);

// An SV frame with `asdus` ASDUs of `channels` values; value = 100*asdu + channel.
Bytes svFrame(const std::string& svId, int asdus, int channels, std::uint16_t firstSmpCnt = 0);

struct PcapRecord {
    std::uint32_t seconds;
    std::uint32_t fraction; // micro- or nanoseconds as the file says
    Bytes frame;
};
Bytes pcapFile(const std::vector<PcapRecord>& records, bool bigEndian, bool nanoseconds,
               std::uint32_t linkType = 1);

// pcapng blocks in a chosen byte order.
struct Pcapng {
    explicit Pcapng(bool bigEndian = false) : big(bigEndian) {}
    bool big;
    Bytes out;
    Pcapng& section();
    // resol < 0: no if_tsresol option.
    Pcapng& interface(std::uint16_t linkType, int resol = -1, std::int64_t offset = 0);
    Pcapng& enhanced(std::uint32_t itf, std::uint64_t ticks, const Bytes& frame);
    Pcapng& simple(const Bytes& frame);
    Pcapng& obsolete(std::uint16_t itf, std::uint64_t ticks, const Bytes& frame);
    Pcapng& block(std::uint32_t type, const Bytes& body);
    Bytes u16(std::uint16_t v) const;
    Bytes u32(std::uint32_t v) const;
};

// Writes bytes to a fresh file in the test's temporary folder.
std::string writeTemp(const std::string& name, const Bytes& bytes);

// Parses a file into `db` with no filter and no cancel.
TavIec61850Parser::FileStats parse(const std::string& path, TavIec61850Parser::Db& db);

} // namespace TavTest
