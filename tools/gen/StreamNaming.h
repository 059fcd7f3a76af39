#pragma once

#include "tools/gen/GooseStream.h"
#include "tools/gen/SvStream.h"

namespace TavGen {

// Addresses and names of stream `n` (0-based, below 256), fixed so that tests
// can predict what they read back.
SvStreamConfig namedSvStream(unsigned n);
GooseStreamConfig namedGooseStream(unsigned n);

// The data set of a GOOSE stream: booleans and 2-bit bit-strings alternating,
// starting with a boolean, the rest of the larger kind at the end.
std::vector<GooseEntry> alternatingEntries(unsigned booleans, unsigned bitStrings);

// The state after a change: every boolean flips, every bit-string counts up modulo 4.
std::vector<std::uint8_t> nextState(const std::vector<GooseEntry>& entries,
                                    const std::vector<std::uint8_t>& state);

} // namespace TavGen
