#pragma once

#include "platform/parser/ByteReader.h"
#include "platform/parser/ContainerReader.h"

#include <optional>

namespace TavIec61850Parser {

// What the 24-byte pcap file header says about the records after it.
struct PcapHeader {
    bool bigEndian = false;
    bool nanoseconds = false;
    std::uint32_t linkType = 0;
};

// The header's fields, or nothing when the magic is not a pcap one.
std::optional<PcapHeader> readPcapHeader(const std::uint8_t* data, std::size_t size);

// Converts the record header's two time fields, carrying an overlong fraction.
Timest pcapTime(std::uint32_t seconds, std::uint32_t fraction, bool nanoseconds);

// Upper bound of a record's captured length; anything larger is corruption.
inline constexpr std::uint32_t kMaxFrameSize = 256 * 1024;
inline constexpr std::size_t kPcapFileHeaderSize = 24;

// A record header captures no more than the frame's original length, which is
// of sane size. The reader and the re-read by offset apply the same test, so
// that every frame the one accepts the other accepts too.
inline bool plausibleRecord(std::uint32_t captured, std::uint32_t original) {
    return captured <= original && original <= kMaxFrameSize;
}
inline constexpr std::size_t kPcapRecordHeaderSize = 16;

class PcapReader : public ContainerReader {
public:
    PcapReader(std::string path, const std::uint8_t* data, std::size_t size,
               const PcapHeader& header);
    bool next(FrameRecord& out) override;
    std::size_t position() const override { return in_.position(); }
    const char* format() const override { return header_.nanoseconds ? "pcap-ns" : "pcap-us"; }
    const PcapHeader& header() const { return header_; }
    // Goes on from a record starting at `offset`; the caller knows one does.
    void seek(std::size_t offset);

private:
    std::string path_;
    const std::uint8_t* data_;
    std::size_t size_;
    ByteReader in_;
    PcapHeader header_;
};

// The first offset at or after `from` where a run of plausible record headers
// starts that chains up to the end of the file or for several records: where
// a thread given the bytes from `from` on begins. A guess, to be checked
// against where the records before it end; none within reach gives nothing.
std::optional<std::size_t> findPcapRecord(const std::uint8_t* data, std::size_t size,
                                          const PcapHeader& header, std::size_t from);

} // namespace TavIec61850Parser
