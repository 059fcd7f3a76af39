#include "platform/parser/ContainerReader.h"

#include "platform/parser/ParseError.h"
#include "platform/parser/PcapReader.h"
#include "platform/parser/PcapngReader.h"

namespace TavIec61850Parser {

std::uint32_t linkTypeAt(const LinkLayout& layout, std::uint64_t offset,
                         std::uint32_t interfaceId) {
    const SectionLinkTypes* section = nullptr;
    for (const SectionLinkTypes& s : layout) {
        if (s.start > offset)
            break;
        section = &s;
    }
    if (!section || interfaceId >= section->linkTypes.size())
        return kLinkTypeEthernet;
    return section->linkTypes[interfaceId];
}

std::unique_ptr<ContainerReader> openContainer(const std::string& path, const std::uint8_t* data,
                                               std::size_t size) {
    if (size == 0)
        throw ParseError(path, "empty file");
    if (auto header = readPcapHeader(data, size))
        return std::make_unique<PcapReader>(path, data, size, *header);
    if (size >= 4 && ByteReader::load32(data, false) == kBlockSectionHeader)
        return std::make_unique<PcapngReader>(path, data, size);
    throw ParseError(path, "not a pcap or pcapng file");
}

} // namespace TavIec61850Parser
