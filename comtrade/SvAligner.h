#pragma once

#include "comtrade/SvCursor.h"

#include <deque>

namespace TavComtrade {

// Finds, for each row of the first stream, the sample of another stream that
// belongs to it: the one with the same smpCnt, or the nearest in time, within
// a tolerance. Rows must be asked for in time order.
class SvAligner {
public:
    SvAligner(SvCursor& cursor, bool bySampleCounter, double toleranceNs);

    // Null when no sample lies within the tolerance.
    const SvSample* match(std::int64_t ns, std::uint16_t smpCnt);

private:
    SvCursor& cursor_;
    bool bySampleCounter_;
    std::int64_t tolerance_;
    std::deque<SvSample> near_; // the samples within the tolerance of the last row
    bool exhausted_ = false;
};

} // namespace TavComtrade
