#pragma once

#include <cstddef>

namespace TavIec61850Parser {

// Copies `n` bytes out of a mapping of a file. False when some of them are
// no longer backed by the file: another program cut it short after it was
// mapped, and touching such a page would otherwise end the whole process.
bool guardedCopy(void* to, const void* from, std::size_t n);

} // namespace TavIec61850Parser
