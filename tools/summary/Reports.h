#pragma once

#include "tools/summary/StreamTable.h"

#include <ostream>

namespace TavInspect {

// One line per stream, then one line per file.
void writeText(std::ostream& out, const StreamTable& table);

// {"files": [...], "streams": [...]}
void writeJson(std::ostream& out, const StreamTable& table);

// The samples of one stream as CSV: SV one row per ASDU, GOOSE one per frame.
// Throws ParseError when a frame cannot be read back.
void writeValues(std::ostream& out, const StreamRef& stream, int timeDecimals);

} // namespace TavInspect
