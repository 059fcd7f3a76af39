#include "presenter/SclDescPresenter.h"

namespace TavNA {

void SclDescPresenter::fill(const std::optional<TavScl::MatchedStream>& match) {
    if (!match) {
        view->setControlBlock("не описан в SCL");
        view->setMismatches("");
        return;
    }
    view->setControlBlock(match->control->reference + " (" + match->control->ied + ")");
    std::string lines;
    for (const auto& m : match->mismatches)
        lines +=
            (lines.empty() ? "" : "\n") + m.field + ": в SCL " + m.scl + ", в захвате " + m.seen;
    view->setMismatches(lines);
}

} // namespace TavNA
