#pragma once

#include "tools/summary/StreamTable.h"

#include <ostream>

namespace TavInspect {

// One line per stream, then one line per file.
void writeText(std::ostream& out, const StreamTable& table);

class SclCheck;
// {"files": [...], "streams": [...]}, and "scl" when a configuration is given.
void writeJson(std::ostream& out, const StreamTable& table, const SclCheck* scl = nullptr);

class JsonWriter;
// The fields that name and count one stream, inside an object already begun.
void writeStreamFields(JsonWriter& json, const StreamTable& table, const StreamRef& stream);

// The checks of every stream: one line per stream with its remarks, then its
// events. Throws ParseError when a frame cannot be read back.
void writeHealthText(std::ostream& out, const StreamTable& table);
// {"streams": [...]}, each stream's fields with a "health" object.
void writeHealthJson(std::ostream& out, const StreamTable& table);

// The samples of one stream as CSV: SV one row per ASDU, GOOSE one per frame.
// Columns are named v0, v1 ... past the `names` given.
// Throws ParseError when a frame cannot be read back.
void writeValues(std::ostream& out, const StreamRef& stream, const StreamTable& table,
                 int timeDecimals, const std::vector<std::string>& names = {});

} // namespace TavInspect
