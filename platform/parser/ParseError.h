#pragma once

#include <stdexcept>
#include <string>

namespace TavIec61850Parser {

// Every failure the library reports: the message names the file and the reason,
// e.g. "capture.pcap: truncated at byte 4096".
class ParseError : public std::runtime_error {
public:
    ParseError(const std::string& path, const std::string& reason)
        : std::runtime_error(path + ": " + reason), path_(path), reason_(reason) {}

    const std::string& path() const { return path_; }
    const std::string& reason() const { return reason_; }

private:
    std::string path_;
    std::string reason_;
};

} // namespace TavIec61850Parser

namespace TavIec61850Parser {

// One frame's bytes do not decode as the protocol they claim. The file reader
// counts and skips such frames; the frame entry points let it through.
class MalformedFrame : public std::runtime_error {
public:
    explicit MalformedFrame(const std::string& reason) : std::runtime_error(reason) {}
};

} // namespace TavIec61850Parser
