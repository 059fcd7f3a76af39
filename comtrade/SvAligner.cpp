#include "comtrade/SvAligner.h"

#include <cmath>
#include <cstdlib>

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
    const SvSample* best = nullptr;
    for (const auto& sample : near_) {
        if (sample.ns > ns + tolerance_)
            break;
        if (bySampleCounter_ && sample.smpCnt != smpCnt)
            continue;
        if (best == nullptr || std::llabs(sample.ns - ns) < std::llabs(best->ns - ns))
            best = &sample;
    }
    return best;
}

} // namespace TavComtrade
