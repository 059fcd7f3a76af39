#pragma once

#include "tools/gen/EthernetFrame.h"
#include "tools/gen/Faults.h"
#include "tools/gen/FrameSource.h"

#include <optional>
#include <string>
#include <vector>

namespace TavGen {

enum class GooseEntry { Boolean, DoublePoint }; // DoublePoint: a 2-bit bit-string

// A new state of the data set, `atNs` after the start of the capture.
struct GooseChange {
    std::uint64_t atNs = 0;
    std::vector<std::uint8_t> values;
};

struct GooseStreamConfig {
    Mac src{};
    Mac dst{};
    std::uint16_t appId = 0x1000;
    std::string gocbRef;
    std::string goId;
    std::string datSet;
    std::uint32_t confRev = 1;
    std::uint32_t timeAllowedToLiveMs = 2000;
    bool simulation = false;
    Tagging tagging;
    std::vector<GooseEntry> entries;
    std::vector<std::uint8_t> initial; // one value per entry
    std::vector<GooseChange> changes;  // in time order
    std::vector<Fault> faults;         // StNumBack acts here, the rest in FaultySource
    // A last data-set entry that is an integer with no content octets.
    bool emptyInteger = false;
    // numDatSetEntries as sent, when it is to disagree with the entries.
    std::optional<std::uint32_t> declaredEntries;
};

// The frames of one GOOSE publisher: a frame at the start and at each change,
// then retransmissions 2, 4, 8 ... ms apart, the interval doubling up to
// 1000 ms and staying there.
class GooseStream : public FrameSource {
public:
    GooseStream(const GooseStreamConfig& config, std::uint64_t startNs, std::uint64_t durationNs);

    bool done() const override { return offsetNs_ >= durationNs_; }
    std::uint64_t timeNs() const override { return startNs_ + offsetNs_; }
    std::span<const std::uint8_t> frame() override;
    void advance() override;

private:
    GooseStreamConfig config_;
    std::uint64_t startNs_;
    std::uint64_t durationNs_;
    std::uint64_t offsetNs_ = 0;
    std::uint64_t changedAtNs_ = 0;
    std::uint64_t intervalNs_ = 0; // to the next retransmission
    std::size_t nextChange_ = 0;
    const std::vector<std::uint8_t>* state_;
    std::uint32_t stNum_ = 1;
    std::uint32_t sqNum_ = 0;
    std::uint16_t sequence_ = 0;
    std::size_t stNumFallen_ = 0; // StNumBack faults applied
    std::vector<std::uint8_t> apdu_;
    std::vector<std::uint8_t> frame_;
};

} // namespace TavGen
