#pragma once

#include "measure/SampleWindow.h"

#include <cstddef>
#include <cstdint>

namespace TavMeasure {

// The frequency of one channel's fundamental over [fromNs, toNs]: first from
// its rising zero crossings, then refined by how far the fundamental's phase
// turns between the first and the last half of the window's whole cycles,
// which averages noise over every sample. `nominalHz` when the channel never
// crosses zero twice.
double estimateFrequency(const SampleWindow& window, std::size_t channel, std::int64_t fromNs,
                         std::int64_t toNs, double nominalHz);

// Grid points per cycle for the window's sampling rate at `frequencyHz`.
std::size_t pointsPerCycle(const SampleWindow& window, double frequencyHz);

// Whole cycles of `frequencyHz` in `spanNs`, with a hundredth of a cycle to
// spare so that a window of exactly ten cycles holds ten.
std::size_t wholeCycles(double spanNs, double frequencyHz);

} // namespace TavMeasure
