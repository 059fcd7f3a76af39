#pragma once

#include "tools/gen/FileSink.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace TavGen {

enum class Container { Pcap, PcapNs, Pcapng, PcapngNs };

// The link layer frames are written with: the Ethernet frame as built, or its
// Linux cooked form, which has the source but not the destination address.
enum class LinkLayer { Ethernet, LinuxSll, LinuxSll2 };

// The link type number a capture file's header gives for it.
std::uint32_t linkTypeNumber(LinkLayer link);

// Writes frames into a pcap or pcapng file, in the byte order asked for.
class CaptureWriter {
public:
    virtual ~CaptureWriter() = default;

    static std::unique_ptr<CaptureWriter> create(const std::string& path, Container container,
                                                 bool bigEndian,
                                                 LinkLayer link = LinkLayer::Ethernet);

    // `timeNs`: nanoseconds since the epoch; truncated to the file's resolution.
    virtual void writeFrame(std::uint64_t timeNs, std::span<const std::uint8_t> frame) = 0;
    void close() { sink_.close(); }

protected:
    CaptureWriter(const std::string& path, bool bigEndian) : sink_(path), bigEndian_(bigEndian) {}

    void put16(std::uint16_t v);
    void put32(std::uint32_t v);
    void putBytes(std::span<const std::uint8_t> bytes) { sink_.write(bytes.data(), bytes.size()); }
    void putZeros(std::size_t n);

private:
    FileSink sink_;
    bool bigEndian_;
};

} // namespace TavGen
