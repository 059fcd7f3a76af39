#include "measure/StreamAccumulator.h"

#include "measure/ThreePhase.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace TavMeasure {

StreamAccumulator::StreamAccumulator(std::vector<ChannelSpec> channels,
                                     std::vector<PowerPair> pairs)
    : channels_(std::move(channels)), pairs_(std::move(pairs)), sums_(channels_.size()),
      active_(pairs_.size(), 0.0) {
    for (Sums& s : sums_) {
        s.harmonicSquares.assign(kMaxHarmonic + 1, 0.0);
        s.carried.assign(kMaxHarmonic + 1, true);
    }
}

void StreamAccumulator::add(const BlockResult& block, std::complex<double> reference) {
    const double seconds = static_cast<double>(block.cycles) / block.frequencyHz;
    const std::complex<double> turn =
        std::abs(reference) > 0.0 ? std::conj(reference) / std::abs(reference) : 1.0;
    for (std::size_t c = 0; c < sums_.size(); ++c) {
        Sums& s = sums_[c];
        const ChannelBlock& b = block.channels[c];
        s.meanSquare += b.meanSquare * seconds;
        s.dc += b.dc * seconds;
        for (std::size_t h = 1; h <= kMaxHarmonic; ++h) {
            if (!b.harmonics[h])
                s.carried[h] = false;
            else
                s.harmonicSquares[h] += std::norm(*b.harmonics[h]) * seconds;
        }
        if (b.harmonics[1])
            s.fundamental += *b.harmonics[1] * turn * seconds;
    }
    for (std::size_t k = 0; k < pairs_.size(); ++k)
        active_[k] += block.activePower[k] * seconds;
    const auto endNs = block.startNs + static_cast<std::int64_t>(std::llround(seconds * 1e9));
    fromNs_ = blocks_ == 0 ? block.startNs : std::min(fromNs_, block.startNs);
    toNs_ = blocks_ == 0 ? endNs : std::max(toNs_, endNs);
    weight_ += seconds;
    cycles_ += block.cycles;
    ++blocks_;
}

ChannelMeasurement StreamAccumulator::channelFigures(std::size_t c) const {
    const Sums& s = sums_[c];
    ChannelMeasurement m;
    m.spec = channels_[c];
    m.rms = std::sqrt(s.meanSquare / weight_);
    m.dc = s.dc / weight_;
    const double fundamental = std::sqrt(s.harmonicSquares[1] / weight_);
    m.fundamental = {fundamental, degreesOf(s.fundamental)};
    m.harmonics.assign(kMaxHarmonic + 1, std::nullopt);
    if (fundamental <= 0.0 || !s.carried[1])
        return m;
    double distortion = 0.0;
    for (std::size_t h = 2; h <= kMaxHarmonic && s.carried[h]; ++h) {
        const double share = std::sqrt(s.harmonicSquares[h] / weight_) / fundamental;
        m.harmonics[h] = 100.0 * share;
        distortion += share * share;
    }
    m.thd = 100.0 * std::sqrt(distortion);
    return m;
}

StreamMeasurement StreamAccumulator::finish() const {
    StreamMeasurement m;
    if (blocks_ == 0)
        return m;
    m.frequencyHz = static_cast<double>(cycles_) / weight_;
    m.cycles = cycles_;
    m.fromNs = fromNs_;
    m.toNs = toNs_;
    for (std::size_t c = 0; c < channels_.size(); ++c)
        m.channels.push_back(channelFigures(c));
    const auto phasorOf = [&](std::size_t c) {
        return std::polar(m.channels[c].fundamental.rms,
                          m.channels[c].fundamental.angleDeg * std::numbers::pi / 180.0);
    };
    const auto currents = phaseSet(channels_, Quantity::Current);
    const auto voltages = phaseSet(channels_, Quantity::Voltage);
    if (currents)
        m.current = sequenceOf(
            {phasorOf((*currents)[0]), phasorOf((*currents)[1]), phasorOf((*currents)[2])});
    if (voltages)
        m.voltage = sequenceOf(
            {phasorOf((*voltages)[0]), phasorOf((*voltages)[1]), phasorOf((*voltages)[2])});
    if (currents && voltages && pairs_.size() == 3) {
        std::array<double, 3> active{};
        std::array<ChannelMeasurement, 3> u, i;
        for (std::size_t k = 0; k < 3; ++k) {
            active[k] = active_[k] / weight_;
            u[k] = m.channels[(*voltages)[k]];
            i[k] = m.channels[(*currents)[k]];
        }
        m.power = powerOf(active, u, i);
    }
    return m;
}

} // namespace TavMeasure
