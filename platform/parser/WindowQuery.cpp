#include "platform/parser/WindowQuery.h"

namespace TavIec61850Parser {

namespace {

FilteredPackagesResult orderedWindowOf(const PackageFile& file, const Timest& from,
                                       const Timest& to) {
    FilteredPackagesResult r;
    auto [first, last] = file.orderedWindow(from, to);
    r.firstIndex = first;
    if (first > 0)
        r.lastBefore = &file.packages[first - 1];
    r.packages.reserve(last > first ? last - first : 0);
    for (std::size_t i = first; i < last; ++i)
        r.packages.push_back(&file.packages[i]);
    return r;
}

// With times going backwards, "before the window" is by time: of the packages
// earlier than `from`, the latest, and of equal times the one captured last.
FilteredPackagesResult scannedWindowOf(const PackageFile& file, const Timest& from,
                                       const Timest& to) {
    FilteredPackagesResult r;
    r.firstIndex = file.packages.size();
    for (std::size_t i = 0; i < file.packages.size(); ++i) {
        const Package& p = file.packages[i];
        if (p.time < from) {
            if (r.lastBefore == nullptr || !(p.time < r.lastBefore->time))
                r.lastBefore = &p;
        } else if (!(to < p.time)) {
            if (r.packages.empty())
                r.firstIndex = i;
            r.packages.push_back(&p);
        }
    }
    return r;
}

template <class Result, class Stream, class Convert>
Result filtered(const Stream& s, const Timest& from, const Timest& to, Convert convert) {
    Result out;
    for (const PackageFile& f : s.files) {
        out.emplace(&f, convert(windowOf(f, from, to)));
    }
    return out;
}

} // namespace

FilteredPackagesResult windowOf(const PackageFile& file, const Timest& from, const Timest& to) {
    return file.timeOrdered ? orderedWindowOf(file, from, to) : scannedWindowOf(file, from, to);
}

SvFilteredPackages Sv::getfilteredPackages(const Timest& from, const Timest& to) const {
    return filtered<SvFilteredPackages>(
        *this, from, to, [](FilteredPackagesResult&& r) { return std::move(r.packages); });
}

GooseFilteredPackages Goose::getfilteredPackages(const Timest& from, const Timest& to) const {
    return filtered<GooseFilteredPackages>(*this, from, to,
                                           [](FilteredPackagesResult&& r) { return std::move(r); });
}

} // namespace TavIec61850Parser
