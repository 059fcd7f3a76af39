#pragma once

#include "tools/gen/ArrivalStamps.h"
#include "tools/gen/CaptureWriter.h"
#include "tools/gen/GooseStream.h"
#include "tools/gen/SvStream.h"

#include <string>
#include <vector>

namespace TavGen {

// Everything one capture file holds.
struct Scenario {
    Container container = Container::Pcap;
    bool bigEndian = false;
    std::uint64_t startNs = 1'700'000'000ull * 1'000'000'000ull;
    std::uint64_t durationNs = 1'000'000'000ull;
    std::vector<SvStreamConfig> sv;
    std::vector<GooseStreamConfig> goose;
    std::uint64_t otherFrames = 0;
    // Every frame on LAN A and again on LAN B (the streams carry a PRP trailer).
    bool lanPairs = false;
    LinkLayer link = LinkLayer::Ethernet;
    bool gzip = false; // the whole file compressed
    // Frames handed over this many at a time on one time stamp, as a
    // capturing card does.
    std::uint32_t bursts = 1;
};

// Writes the frames of every publisher, merged by time (ties in the order SV
// streams, GOOSE streams, other frames), and returns the number of frames.
std::uint64_t writeCapture(const std::string& path, const Scenario& scenario);

} // namespace TavGen
