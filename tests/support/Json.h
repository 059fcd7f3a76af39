#pragma once

#include <map>
#include <string>

namespace TavTest {

// A JSON document flattened to its values by path, "streams.0.svID", enough
// to read the tools' output and the expected summaries. Strings keep their
// quotes ("\"svID0000\"", escapes decoded) so that they differ from numbers,
// true, false and null, which keep their text. Arrays and objects map to
// their size, the document itself at "".
using FlatJson = std::map<std::string, std::string>;

// Throws std::runtime_error with the byte position on malformed input.
FlatJson parseJson(const std::string& text);

} // namespace TavTest
