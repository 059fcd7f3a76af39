#pragma once

#include "platform/parser/StreamRecords.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace TavNA {

// Names as a person reads them: runs of digits compare by their value, so
// "TavnaSV2" comes before "TavnaSV10". Names equal that way (leading zeros)
// are ordered by their bytes, so the order is total.
bool naturalLess(std::string_view a, std::string_view b);

// What places a stream in the list: destination MAC, then its name (svID or
// goID) in natural order, then source MAC.
struct StreamSortKey {
    std::string_view dstMac;
    std::string_view name;
    std::string_view srcMac;
};

bool streamBefore(const StreamSortKey& a, const StreamSortKey& b);

inline StreamSortKey sortKeyOf(const TavIec61850Parser::Sv& r) {
    return {r.dstMac, r.svId, r.srcMac};
}
inline StreamSortKey sortKeyOf(const TavIec61850Parser::Goose& r) {
    return {r.dstMac, r.goId, r.srcMac};
}

// The groups in list order, each by the record its entry shows (its last);
// a group without records goes last.
template <typename Items> auto inListOrder(const Items& items) {
    using Group = typename Items::value_type::element_type;
    std::vector<Group*> ordered;
    ordered.reserve(items.size());
    for (const auto& item : items)
        ordered.push_back(item.get());
    std::stable_sort(ordered.begin(), ordered.end(), [](const Group* a, const Group* b) {
        const auto& ra = a->getRecords();
        const auto& rb = b->getRecords();
        if (ra.empty() || rb.empty())
            return !ra.empty() && rb.empty();
        return streamBefore(sortKeyOf(*ra.back()), sortKeyOf(*rb.back()));
    });
    return ordered;
}

} // namespace TavNA
