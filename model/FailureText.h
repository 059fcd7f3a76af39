#pragma once

#include "platform/parser/Timest.h"

#include <cstdint>
#include <string>

namespace TavNA::FailureText {

// What the user reads when a capture fails them. The parser's reasons are
// for the log; these say the same in the window's language.

// The parser's reason ("truncated at byte 4096") in Russian.
std::string reason(const std::string& parserReason);

// Nothing of the file could be used.
std::string unreadable(const std::string& path, const std::string& parserReason);

// The file broke off or went bad part way: what was kept of it.
std::string readInPart(const std::string& path, const std::string& parserReason,
                       std::uint64_t frames, TavIec61850Parser::Timest first,
                       TavIec61850Parser::Timest last);

// Frames kept at the parse can no longer be read for drawing.
std::string unreadableForDrawing(const std::string& path, const std::string& parserReason);

} // namespace TavNA::FailureText
