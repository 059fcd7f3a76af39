#pragma once

#include "tools/gen/CaptureWriter.h"

namespace TavGen {

// One section with one Ethernet interface whose if_tsresol gives the time
// resolution, then an Enhanced Packet Block per frame.
class PcapngWriter : public CaptureWriter {
public:
    PcapngWriter(const std::string& path, bool bigEndian, bool nanoseconds,
                 std::uint32_t linkType = 1);

    void writeFrame(std::uint64_t timeNs, std::span<const std::uint8_t> frame) override;

private:
    void writeSectionHeader();
    void writeInterface();

    bool nanoseconds_;
    std::uint32_t linkType_;
};

} // namespace TavGen
