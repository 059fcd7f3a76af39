#include "measure/Resampler.h"

#include <algorithm>

namespace TavMeasure {

std::size_t Resampler::weights(double t, std::size_t& cursor, double (&w)[kNodes]) const {
    const auto& at = window_.instantsNs;
    const std::size_t n = at.size();
    while (cursor + 1 < n && static_cast<double>(at[cursor + 1]) <= t)
        ++cursor;
    // Nodes centred on the interval that holds t, moved inwards at the ends.
    std::size_t first = cursor >= kNodes / 2 - 1 ? cursor - (kNodes / 2 - 1) : 0;
    const std::size_t count = std::min(kNodes, n);
    first = std::min(first, n - count);
    // Instants relative to the first node keep the products exact in doubles.
    const double origin = static_cast<double>(at[first]);
    const double x = t - origin;
    for (std::size_t k = 0; k < count; ++k) {
        const double xk = static_cast<double>(at[first + k]) - origin;
        double weight = 1.0;
        for (std::size_t m = 0; m < count; ++m)
            if (m != k)
                weight *= (x - (static_cast<double>(at[first + m]) - origin)) /
                          (xk - (static_cast<double>(at[first + m]) - origin));
        w[k] = weight;
    }
    for (std::size_t k = count; k < kNodes; ++k)
        w[k] = 0.0;
    return first;
}

std::vector<double> Resampler::channel(const Grid& grid, std::size_t channel) const {
    return std::move(pick(grid, {channel}).front());
}

std::vector<std::vector<double>> Resampler::all(const Grid& grid) const {
    std::vector<std::size_t> channels(window_.values.size());
    for (std::size_t c = 0; c < channels.size(); ++c)
        channels[c] = c;
    return pick(grid, channels);
}

std::vector<std::vector<double>> Resampler::pick(const Grid& grid,
                                                 const std::vector<std::size_t>& channels) const {
    std::vector<std::vector<double>> out(channels.size(), std::vector<double>(grid.length, 0.0));
    if (window_.empty())
        return out;
    std::size_t cursor = 0;
    double w[kNodes];
    for (std::size_t j = 0; j < grid.length; ++j) {
        const std::size_t first =
            weights(grid.startNs + static_cast<double>(j) * grid.stepNs, cursor, w);
        for (std::size_t c = 0; c < channels.size(); ++c) {
            const auto& values = window_.values[channels[c]];
            double sum = 0.0;
            for (std::size_t k = 0; k < kNodes && first + k < values.size(); ++k)
                sum += w[k] * values[first + k];
            out[c][j] = sum;
        }
    }
    return out;
}

} // namespace TavMeasure
