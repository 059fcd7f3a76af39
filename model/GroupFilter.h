#pragma once

#include "platform/parser/Identifiers.h"

#include <vector>

namespace TavNA {

// Streams the user chose to hide. The stream tree reads only whether a list is
// empty: any entry hides that whole protocol.
struct GroupFilter {
    std::vector<TavIec61850::GooseIdentifer> gooses;
    std::vector<TavIec61850::SvIdentifer> svs;
};

} // namespace TavNA
