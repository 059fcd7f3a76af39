#pragma once

#include "measure/SampleWindow.h"

#include <complex>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace TavMeasure {

constexpr std::size_t kMaxHarmonic = 50;

// One channel over one block of whole cycles.
struct ChannelBlock {
    double meanSquare = 0.0;
    double dc = 0.0;
    // RMS phasors of harmonics 0 … kMaxHarmonic at the block's start; those at
    // or above half the sampling rate are not carried and stay absent.
    std::vector<std::optional<std::complex<double>>> harmonics;
};

// A voltage and the current of the same phase, by their places in the window.
struct PowerPair {
    std::size_t voltage = 0;
    std::size_t current = 0;
};

struct BlockResult {
    std::int64_t startNs = 0;
    double frequencyHz = 0.0;
    std::size_t cycles = 0;
    std::vector<ChannelBlock> channels;
    std::vector<double> activePower; // mean of u × i, per pair
};

// The whole cycles within [fromNs, toNs] at the frequency of the window's
// channel `frequencyChannel`, on a grid from `fromNs` (or the first sample, if
// later). Nothing when the samples there span less than one cycle.
std::optional<BlockResult> analyseBlock(const SampleWindow& window, std::int64_t fromNs,
                                        std::int64_t toNs, std::size_t frequencyChannel,
                                        double nominalHz, const std::vector<PowerPair>& pairs);

} // namespace TavMeasure
