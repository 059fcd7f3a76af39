#include "platform/parser/PackageFile.h"

#include <algorithm>

namespace TavIec61850Parser {

std::pair<std::size_t, std::size_t> PackageFile::orderedWindow(const Timest& from,
                                                               const Timest& to) const {
    auto first = std::lower_bound(packages.begin(), packages.end(), from,
                                  [](const Package& p, const Timest& t) { return p.time < t; });
    auto last = std::upper_bound(first, packages.end(), to,
                                 [](const Timest& t, const Package& p) { return t < p.time; });
    return {static_cast<std::size_t>(first - packages.begin()),
            static_cast<std::size_t>(last - packages.begin())};
}

} // namespace TavIec61850Parser
