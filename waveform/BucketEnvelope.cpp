#include "waveform/BucketEnvelope.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace TavWaveform {

BucketEnvelope::BucketEnvelope(const TraceWindow& window, Shape shape, std::vector<TracePoint>& out)
    : window_(window), shape_(shape), out_(out) {}

void BucketEnvelope::add(const TracePoint& p) {
    if (std::isnan(p.value))
        return;
    const long column = window_.columnOf(p.ns);
    if (column < 0)
        return;
    if (column != column_ && count_ > 0)
        flush();
    column_ = column;
    const Pick pick{p, count_++};
    if (pick.order == 0) {
        first_ = min_ = max_ = last_ = pick;
        return;
    }
    last_ = pick;
    if (p.value < min_.point.value)
        min_ = pick;
    if (p.value > max_.point.value)
        max_ = pick;
}

void BucketEnvelope::finish() {
    if (count_ > 0)
        flush();
}

void BucketEnvelope::flush() {
    std::array<Pick, 4> picks{first_, min_, max_, last_};
    std::size_t n = 4;
    if (shape_ == Shape::Band) {
        picks = {min_, max_, {}, {}};
        n = 2;
    }
    std::sort(picks.begin(), picks.begin() + static_cast<std::ptrdiff_t>(n),
              [](const Pick& a, const Pick& b) { return a.order < b.order; });
    for (std::size_t i = 0; i < n; ++i) {
        if (i > 0 && picks[i].order == picks[i - 1].order)
            continue;
        emit(picks[i].point);
    }
    count_ = 0;
}

void BucketEnvelope::emit(const TracePoint& p) {
    // A step curve holds its state until the next point: a repeat adds nothing.
    if (shape_ == Shape::Steps && !out_.empty() && out_.back().value == p.value)
        return;
    out_.push_back(p);
}

} // namespace TavWaveform
