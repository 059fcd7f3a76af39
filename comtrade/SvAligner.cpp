#include "comtrade/SvAligner.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace TavComtrade {

SvAligner::SvAligner(SvCursor& cursor, bool bySampleCounter, double toleranceNs)
    : cursor_(cursor), bySampleCounter_(bySampleCounter),
      tolerance_(static_cast<std::int64_t>(std::llround(toleranceNs))) {
    cursor_.rewind();
}

const SvSample* SvAligner::match(std::int64_t ns, std::uint16_t smpCnt) {
    while (!near_.empty() && near_.front().ns < ns - tolerance_)
        near_.pop_front();
    while (!exhausted_ && (near_.empty() || near_.back().ns <= ns + tolerance_)) {
        SvSample sample;
        if (!cursor_.next(sample)) {
            exhausted_ = true;
            break;
        }
        if (sample.ns >= ns - tolerance_)
            near_.push_back(std::move(sample));
    }
    // Outward from the row's instant, nearest first: the first sample that
    // qualifies is the best one, and it is usually the very first looked at.
    const auto at = std::lower_bound(near_.begin(), near_.end(), ns,
                                     [](const SvSample& s, std::int64_t t) { return s.ns < t; });
    auto right = at;
    auto left = at;
    while (true) {
        const bool hasRight = right != near_.end() && right->ns <= ns + tolerance_;
        const bool hasLeft = left != near_.begin() && std::prev(left)->ns >= ns - tolerance_;
        if (!hasRight && !hasLeft)
            return nullptr;
        const bool takeRight = hasRight && (!hasLeft || right->ns - ns < ns - std::prev(left)->ns);
        const SvSample& sample = takeRight ? *right++ : *--left;
        if (!bySampleCounter_ || sample.smpCnt == smpCnt)
            return &sample;
    }
}

} // namespace TavComtrade
