#pragma once

#include "waveform/TraceWindow.h"

#include <cstddef>
#include <vector>

namespace TavWaveform {

// Folds samples, given in time order, into one bucket per pixel column of the
// window, so that the curve covers exactly the band the samples cover.
class BucketEnvelope {
public:
    enum class Shape {
        // Each bucket's minimum and maximum, in time order: every peak survives.
        Band,
        // A step curve: each bucket's first, lowest, highest and last state, in
        // time order, leaving out repeats of the state drawn before, so that a
        // change inside a bucket is still drawn.
        Steps,
    };

    BucketEnvelope(const TraceWindow& window, Shape shape, std::vector<TracePoint>& out);

    // A sample outside the window has no column and is left out.
    void add(const TracePoint& p);
    // Writes the last bucket; call once after the last sample.
    void finish();

private:
    struct Pick {
        TracePoint point;
        std::size_t order = 0;
    };

    void flush();
    void emit(const TracePoint& p);

    const TraceWindow& window_;
    Shape shape_;
    std::vector<TracePoint>& out_;
    long column_ = -1;
    std::size_t count_ = 0;
    Pick first_, min_, max_, last_;
};

} // namespace TavWaveform
