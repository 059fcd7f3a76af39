#pragma once

#include "platform/parser/ApduHeader.h"
#include "platform/parser/BerReader.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace TavIec61850Parser {

// One goosePdu as it lies in the frame; texts and allData still point into it.
struct GooseFrameView {
    ApduHeader header;
    std::string_view gocbRef;
    std::string_view datSet;
    std::string_view goId; // empty when absent
    std::uint64_t timeAllowedToLive = 0;
    const std::uint8_t* t = nullptr; // 8 bytes: seconds, fraction, quality
    std::uint64_t stNum = 0;
    std::uint64_t sqNum = 0;
    bool simulation = false;
    std::uint64_t confRev = 0;
    bool ndsCom = false;
    std::uint64_t numDatSetEntries = 0;
    const std::uint8_t* allData = nullptr;
    std::size_t allDataSize = 0;
    std::uint32_t entries = 0; // top-level allData elements
};

// Decodes and checks a whole GOOSE APDU (the bytes after the EtherType): a
// missing mandatory field, a tag out of place or a length beyond the frame
// throws MalformedFrame.
GooseFrameView decodeGooseApdu(const std::uint8_t* payload, std::size_t size);

} // namespace TavIec61850Parser
