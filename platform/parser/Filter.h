#pragma once

#include "platform/parser/Identifiers.h"

#include <vector>

namespace TavIec61850Parser {

// What parseFile keeps. A protocol whose flag is false is counted but not stored;
// a non-empty identifier list keeps only the listed streams of that protocol.
struct Filter {
    struct Flags {
        bool sv = true;
        bool goose = true;
    };
    alignas(8) Flags keep;
    std::vector<TavIec61850::SvIdentifer> svIdentifiers;
    std::vector<TavIec61850::GooseIdentifer> gooseIdentifiers;
};

} // namespace TavIec61850Parser
