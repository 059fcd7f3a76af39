#pragma once

#include "measure/BlockAnalysis.h"
#include "measure/Measurement.h"

#include <complex>
#include <vector>

namespace TavMeasure {

// Blocks of one stream, each weighted by its length, folded into the
// window's figures: RMS values as the RMS over the blocks, fundamentals as
// the mean of their phasors turned so that the reference lies at 0°.
class StreamAccumulator {
public:
    StreamAccumulator(std::vector<ChannelSpec> channels, std::vector<PowerPair> pairs);

    // `reference`: the reference channel's fundamental in the same block.
    void add(const BlockResult& block, std::complex<double> reference);
    std::size_t blocks() const { return blocks_; }

    // The figures of every channel, sequence components and power where the
    // stream has the channels for them.
    StreamMeasurement finish() const;

private:
    struct Sums {
        double meanSquare = 0.0;
        double dc = 0.0;
        std::vector<double> harmonicSquares; // per h, absent ones never added
        std::vector<bool> carried;
        std::complex<double> fundamental;
    };
    ChannelMeasurement channelFigures(std::size_t c) const;

    std::vector<ChannelSpec> channels_;
    std::vector<PowerPair> pairs_;
    std::vector<Sums> sums_;
    std::vector<double> active_;
    double weight_ = 0.0;
    std::size_t cycles_ = 0;
    std::size_t blocks_ = 0;
    std::int64_t fromNs_ = 0;
    std::int64_t toNs_ = 0;
};

} // namespace TavMeasure
