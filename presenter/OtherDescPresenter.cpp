#include "presenter/OtherDescPresenter.h"

#include "presenter/StreamPresenter.h"

#include <string>

namespace TavNA {

void OtherDescPresenter::fillSvGroup(const SvGroup* group) {
    _fill(*group);
}

void OtherDescPresenter::fillGooseGroup(const GooseGroup* group) {
    _fill(*group);
}

// Unlike the stream caption, which counts the latest record only, this sums
// every record of the stream.
template <typename Group> void OtherDescPresenter::_fill(const Group& group) {
    std::uint64_t count = 0;
    for (const auto* record : group.getRecords())
        count += packageCount(*record);
    view->clear();
    view->setPkgCount(std::to_string(count));
}

} // namespace TavNA
