#pragma once

#include "tools/gen/CaptureWriter.h"

namespace TavGen {

// The classic pcap container: one global header, then a record per frame.
class PcapWriter : public CaptureWriter {
public:
    PcapWriter(const std::string& path, bool bigEndian, bool nanoseconds,
               std::uint32_t linkType = 1);

    void writeFrame(std::uint64_t timeNs, std::span<const std::uint8_t> frame) override;

private:
    bool nanoseconds_;
    std::uint32_t linkType_;
};

} // namespace TavGen
