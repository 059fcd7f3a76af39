#pragma once

#include "platform/parser/ByteReader.h"
#include "platform/parser/ContainerReader.h"

#include <optional>
#include <string>
#include <vector>

namespace TavIec61850Parser {

inline constexpr std::uint32_t kBlockSectionHeader = 0x0A0D0D0A;
inline constexpr std::uint32_t kBlockInterface = 1;
inline constexpr std::uint32_t kBlockObsoletePacket = 2;
inline constexpr std::uint32_t kBlockSimplePacket = 3;
inline constexpr std::uint32_t kBlockEnhancedPacket = 6;

// The byte order of a pcapng block from its type field alone: packet blocks
// have small type numbers, so the end holding the nonzero byte tells. Empty
// for a type that is not a packet block.
std::optional<bool> packetBlockIsBigEndian(const std::uint8_t* blockStart);

// Where the frame bytes of a packet block lie, given the block and its byte
// order; the time fields are left alone. Throws MalformedFrame for a block
// whose lengths do not fit.
struct PacketBlockFrame {
    std::uint32_t interfaceId = 0;
    std::uint64_t ticks = 0;
    const std::uint8_t* data = nullptr;
    std::size_t size = 0;
};
PacketBlockFrame packetBlockFrame(const std::uint8_t* block, std::size_t blockLength,
                                  std::uint32_t type, bool bigEndian);

class PcapngReader : public ContainerReader {
public:
    PcapngReader(std::string path, const std::uint8_t* data, std::size_t size);
    bool next(FrameRecord& out) override;
    std::size_t position() const override { return in_.position(); }
    const char* format() const override { return "pcapng"; }
    LinkLayout linkLayout() const override { return sections_; }

private:
    struct Interface {
        std::uint32_t linkType = 0;
        std::uint32_t snapLength = 0;
        std::uint64_t unitsPerSecond = 1'000'000;
        std::int64_t offsetSeconds = 0;
    };

    [[noreturn]] void fail(const char* what, std::size_t at) const;
    void readSectionHeader(std::size_t at);
    void readInterface(ByteReader body, std::size_t at);
    Timest toTime(const Interface& itf, std::uint64_t ticks) const;

    std::string path_;
    ByteReader in_;
    bool bigEndian_ = false;
    std::vector<Interface> interfaces_;
    LinkLayout sections_;
    Timest lastTime_;
};

} // namespace TavIec61850Parser
