#pragma once

#include "platform/parser/Timest.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace TavIec61850Parser {

inline constexpr std::uint32_t kLinkTypeEthernet = 1;

// One frame record of a capture file; the bytes stay in the caller's buffer.
struct FrameRecord {
    Timest time;
    std::uint64_t offset = 0; // where the record (pcap) or block (pcapng) starts
    const std::uint8_t* data = nullptr;
    std::size_t size = 0; // captured bytes
    std::uint32_t linkType = 0;
};

// The link type of each interface of one pcapng section, by the byte where
// the section begins: what a frame read again by offset needs to know.
struct SectionLinkTypes {
    std::uint64_t start = 0;
    std::vector<std::uint32_t> linkTypes;
};
using LinkLayout = std::vector<SectionLinkTypes>;

// The link type of interface `interfaceId` for the block at `offset`;
// Ethernet when the layout does not say.
std::uint32_t linkTypeAt(const LinkLayout& layout, std::uint64_t offset, std::uint32_t interfaceId);

// Yields the frame records of one capture file in file order. A cut-short or
// corrupt record throws ParseError naming the file and the byte.
class ContainerReader {
public:
    virtual ~ContainerReader() = default;
    // False at the end of the file.
    virtual bool next(FrameRecord& out) = 0;
    // Bytes consumed so far.
    virtual std::size_t position() const = 0;
    // "pcap-us", "pcap-ns" or "pcapng".
    virtual const char* format() const = 0;
    // The pcapng sections read so far; empty for pcap, whose header says all.
    virtual LinkLayout linkLayout() const { return {}; }
};

// Picks the reader by magic number. Throws ParseError for an empty file or one
// that is neither pcap nor pcapng.
std::unique_ptr<ContainerReader> openContainer(const std::string& path, const std::uint8_t* data,
                                               std::size_t size);

} // namespace TavIec61850Parser
