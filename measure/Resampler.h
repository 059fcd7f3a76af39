#pragma once

#include "measure/SampleWindow.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TavMeasure {

// A uniform grid of `length` points from `startNs`, `stepNs` apart.
struct Grid {
    double startNs = 0.0;
    double stepNs = 0.0;
    std::size_t length = 0;
};

// The window's channels on a grid of whole cycles: so that every harmonic
// falls on one bin whatever the frequency and whatever samples are missing.
// Interpolates through six neighbouring samples at their true instants,
// which is exact to far below the figures' resolution for every harmonic
// the sampling rate carries.
class Resampler {
public:
    explicit Resampler(const SampleWindow& window) : window_(window) {}

    // One channel (its place in the window) on the grid.
    std::vector<double> channel(const Grid& grid, std::size_t channel) const;
    // Every channel on the grid; the weights are shared, so this is cheaper.
    std::vector<std::vector<double>> all(const Grid& grid) const;

private:
    std::vector<std::vector<double>> pick(const Grid& grid,
                                          const std::vector<std::size_t>& channels) const;
    static constexpr std::size_t kNodes = 6;
    // The first node and the weights for the grid point at `t`.
    std::size_t weights(double t, std::size_t& cursor, double (&w)[kNodes]) const;

    const SampleWindow& window_;
};

} // namespace TavMeasure
