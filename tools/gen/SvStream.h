#pragma once

#include "tools/gen/ArrivalStamps.h"
#include "tools/gen/EthernetFrame.h"
#include "tools/gen/Faults.h"
#include "tools/gen/FrameSource.h"
#include "tools/gen/SvSignal.h"

#include <optional>
#include <string>
#include <vector>

namespace TavGen {

struct SvStreamConfig {
    Mac src{};
    Mac dst{};
    std::uint16_t appId = 0x4000;
    std::string svId;
    std::string datSet;
    std::uint32_t confRev = 1;
    std::uint32_t rate = 4000;  // samples per second
    std::uint32_t asdus = 1;    // per frame
    std::uint32_t channels = 8; // per ASDU
    // seqData length when it is not 8 bytes a channel: the complete entries
    // carry channels, the bytes after them a fixed pattern (restByte).
    std::optional<std::uint32_t> seqDataBytes;
    // ASDU k > 0 carries svId + "/" + k: a publisher of several logical
    // streams, all ASDUs of a frame the same sample instant.
    bool distinctSvIds = false;
    std::uint8_t smpSynch = 2; // synchronised to a global clock
    bool simulation = false;
    Tagging tagging;
    SvSignal signal;
    std::vector<Fault> faults; // Synch and Quality act here, the rest in FaultySource
    // The first frame this long after the capture's start: a long capture
    // with samples only near its end stays small.
    std::uint64_t startOffsetNs = 0;
    // Frames that reach the capturing computer late.
    std::vector<ArrivalDelay> delays;
};

// The frames of one SV publisher over [start, start + duration). The frame is
// built once; each step rewrites only the counters, the samples and the
// redundancy sequence number in place.
// The byte at place i of a seqData's incomplete tail.
inline std::uint8_t restByte(std::size_t i) {
    return static_cast<std::uint8_t>(0xE0 + i % 16);
}

// The svID of ASDU `index` of a frame.
std::string asduSvId(const SvStreamConfig& config, std::uint32_t index);

class SvStream : public FrameSource {
public:
    SvStream(const SvStreamConfig& config, std::uint64_t startNs, std::uint64_t durationNs);

    bool done() const override;
    std::uint64_t timeNs() const override;
    std::span<const std::uint8_t> frame() override;
    void advance() override { ++frameIndex_; }

private:
    struct AsduSlots {
        std::size_t smpCnt = 0;
        std::size_t seqData = 0;
        std::size_t smpSynch = 0;
    };

    // Samples of one svID a frame carries: each ASDU its own, or one for all.
    std::uint64_t samplesPerFrame() const;
    void buildTemplate();
    void applyFaults(std::uint8_t* apdu);

    SvStreamConfig config_;
    std::uint64_t startNs_;
    std::uint64_t durationNs_;
    std::uint64_t frameIndex_ = 0;
    std::vector<std::uint8_t> frame_;
    FrameLayout layout_;
    std::vector<AsduSlots> slots_;
    std::vector<std::int32_t> values_;
    std::vector<std::uint64_t> qualityFrames_; // per fault, frames already marked
};

} // namespace TavGen
