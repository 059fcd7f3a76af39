#pragma once

#include "platform/parser/MappedFile.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace TavIec61850Parser {

// True when the mapped file is gzip-compressed.
bool isCompressed(const MappedFile& file);

// The inflated copy of a gzip-compressed capture, mapped; inflated first
// when no copy of the file as it is now exists. Null when cancelled. Throws
// ParseError naming the file when it cannot be inflated.
std::unique_ptr<MappedFile> mapInflated(const std::string& path, const MappedFile& compressed,
                                        const std::atomic<bool>& cancel,
                                        const std::function<void(double)>& progress);

// Path of the inflated copy to read frames from, inflating the file again when
// the copy has gone (a cleaned cache folder). Throws ParseError for a file
// that is not open (never parsed, or closed since).
std::string inflatedCopy(const std::string& path, const FileVersion& version);

// Removes the copy made for the file, if any, with what was remembered of it.
void forgetInflated(const std::string& path);

} // namespace TavIec61850Parser
