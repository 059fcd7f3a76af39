#pragma once

#include "measure/Measurement.h"

#include <complex>
#include <optional>
#include <vector>

namespace TavMeasure {

// The first A, B and C channels of one quantity, by their places.
std::optional<std::array<std::size_t, 3>> phaseSet(const std::vector<ChannelSpec>& channels,
                                                   Quantity quantity);

// Positive, negative and zero sequence of three fundamental phasors.
SequenceComponents sequenceOf(const std::array<std::complex<double>, 3>& abc);

// Per phase and in total, from each phase's mean u × i, true RMS values and
// fundamental phasors (voltage first).
ThreePhasePower powerOf(const std::array<double, 3>& active,
                        const std::array<ChannelMeasurement, 3>& u,
                        const std::array<ChannelMeasurement, 3>& i);

} // namespace TavMeasure
