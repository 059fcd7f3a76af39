#pragma once

#include "platform/parser/SvParser.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace TavStream {

// What the clock needs of one frame of an SV stream: when it arrived, and the
// counter of its first ASDU of the stream's own svID.
struct ClockFrame {
    std::int64_t arrivalNs = 0;
    std::uint16_t smpCnt = 0;
    std::uint16_t asdus = 1; // of the stream's own svID
    std::uint8_t smpSynch = 0;
};

// When each sample of an SV stream was taken. A frame's capture time is when
// it reached the capturing computer, often several frames on one time stamp;
// the samples themselves are 1/rate apart by their counter. So a sample's
// instant is its unwrapped smpCnt over the rate, from an anchor set by the
// fastest frame of its run: no sample lies after its frame's arrival.
class SamplingClock {
public:
    // `frames` in time order; `first` the counters of the stream's first ASDU.
    static SamplingClock survey(const std::vector<ClockFrame>& frames,
                                const TavIec61850Parser::AsduCounters& first);

    // Samples per second; 0 when neither the counters nor the frames tell.
    double rateHz() const { return rate_; }
    double intervalNs() const { return rate_ > 0 ? 1e9 / rate_ : 0.0; }
    // The counter's modulus: the rate when it counts within each second.
    std::uint32_t wrap() const { return wrap_; }
    // 60 when smpRate read as samples per nominal period fits 60 Hz, else 50.
    int nominalHz() const { return nominalHz_; }
    // Every frame said it was synchronised and the counter restarts each second.
    bool synchronised() const { return synchronised_; }
    // Placed by arrival (no rate, or a counter that restarts at random).
    bool byArrival() const { return runs_.empty(); }
    std::size_t runCount() const { return runs_.size(); }

    // The instant of the ASDU `index` of `count` (own ASDUs) with counter
    // `smpCnt`, in a frame that arrived at `arrivalNs`.
    std::int64_t instant(std::int64_t arrivalNs, std::uint16_t smpCnt, std::size_t index,
                         std::size_t count) const;

    // Where, within a second, each run puts smpCnt 0: for a synchronised
    // clock, the top of the merging unit's second plus the fastest delay.
    std::vector<std::int64_t> secondPhasesNs() const;
    // Moves each run back so that smpCnt 0 falls at `phaseNs` within the
    // second: streams synchronised to one clock then share their instants.
    void alignTo(std::int64_t phaseNs);

private:
    struct Run {
        std::int64_t firstArrivalNs = 0;
        std::int64_t anchorNs = 0; // the instant of unwrapped index 0
    };
    const Run& runAt(std::int64_t arrivalNs) const;
    void splitRuns(const std::vector<ClockFrame>& frames);

    double rate_ = 0.0;
    std::uint32_t wrap_ = 65536;
    int nominalHz_ = 50;
    bool synchronised_ = false;
    std::vector<Run> runs_;
};

} // namespace TavStream
