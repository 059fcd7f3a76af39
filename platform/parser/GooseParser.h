#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace TavIec61850Parser {

// One decoded goosePdu; the numbers and the time stamp as text, allData raw.
struct GoosePdu {
    std::string gocbRef;
    std::string timeAllowedToLive;
    std::string datSet;
    std::string goId; // empty when absent
    std::string t;    // UTC time, "2008-07-24T14:20:29.658033Z"
    std::string stNum;
    std::string sqNum;
    std::string simulation; // "true" / "false"
    std::string confRev;
    std::string ndsCom; // "true" / "false"
    std::string numDatSetEntries;
    std::vector<std::uint8_t> data; // the contents of allData, as captured
};

class GooseParser {
public:
    // Decodes the GOOSE frame whose record starts at `offset` in the capture file.
    // Throws ParseError when the file is gone, changed since it was parsed, or
    // holds no GOOSE frame there.
    static GoosePdu parseGoosePDUFromFile(const std::string& path, unsigned long long offset);

    // Decodes one Ethernet frame. Throws MalformedFrame when the bytes are not
    // a well-formed GOOSE frame.
    static GoosePdu parsePduFromFrame(const std::uint8_t* frame, std::size_t size);

    // One value per top-level allData element, in data-set order: boolean 0 or 1,
    // bit-string as its unsigned value, integer, unsigned and floating point as
    // their number, anything else (structures, strings, times) NaN.
    static std::vector<float> parseBooleanValues(const std::vector<unsigned char>& data);
};

} // namespace TavIec61850Parser
