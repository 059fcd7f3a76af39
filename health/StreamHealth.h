#pragma once

#include "platform/parser/Timest.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace TavHealth {

using TavIec61850Parser::Timest;

// One finding, at the capture time of the frame that shows it.
struct HealthEvent {
    Timest time;
    std::string kind; // the count it belongs to, e.g. "smpcnt_discontinuities"
    std::string text;
};

// Samples of one channel whose quality says so (9-2LE quality word).
struct ChannelQuality {
    std::uint64_t invalid = 0;
    std::uint64_t questionable = 0;
    std::uint64_t test = 0;
    std::uint64_t derived = 0;
    std::uint64_t operatorBlocked = 0;
};

// Intervals between consecutive frames, in seconds.
struct ArrivalTiming {
    double median = 0;
    double p99 = 0;
    double largest = 0;
};

// A frame's arrival less its last sample's instant, less that of the fastest
// frame (the capturing computer's clock is not the merging unit's), seconds.
struct TransferTime {
    double median = 0;
    double p99 = 0;
    double largest = 0;
    std::uint64_t lateFrames = 0; // more than 3 ms after the fastest
};

struct SvHealth {
    std::uint32_t smpcntWrap = 0;
    std::optional<std::uint32_t> nominalWrap;
    std::uint64_t smpcntDuplicates = 0;
    std::uint64_t smpcntDiscontinuities = 0;
    std::uint64_t missingSamples = 0;
    double sampleRate = 0;
    std::uint32_t asdusPerFrame = 0;
    std::optional<std::uint32_t> configuredAsdus; // nofASDU of the stream's configuration
    std::uint64_t framesOffConfiguredAsdus = 0;
    std::vector<std::uint8_t> smpsynchValues; // in the order first seen
    std::uint64_t smpsynchChanges = 0;
    std::vector<ChannelQuality> quality; // per channel
    ArrivalTiming timing;
    TransferTime transfer;
};

// The intervals of the first frames after one state change, in seconds.
struct Retransmission {
    Timest time;
    std::vector<double> intervals;
};

struct GooseHealth {
    std::uint64_t stateChanges = 0;
    std::uint64_t stnumRegressions = 0;
    std::uint64_t sqnumGaps = 0;
    std::uint64_t sqnumRepeats = 0;
    std::uint64_t sqnumNotReset = 0;
    std::uint64_t talExpiries = 0;
    std::uint64_t ndscomFrames = 0;
    std::vector<std::uint64_t> confRevs; // in the order first seen
    std::vector<Retransmission> retransmissions;
};

// What the checks found in one stream.
struct StreamHealth {
    std::uint64_t frames = 0;
    std::uint64_t lanDuplicates = 0;
    // Frames of a stream sent on two LANs whose copy never came on the other.
    std::uint64_t lanUnpaired = 0;
    std::uint64_t simulatedFrames = 0;
    std::uint64_t unreadableFrames = 0;
    std::optional<SvHealth> sv;
    std::optional<GooseHealth> goose;
    std::vector<HealthEvent> events; // in time order, the first kMaxEvents
    std::uint64_t eventCount = 0;    // all of them
};

inline constexpr std::size_t kMaxEvents = 1000;

} // namespace TavHealth
