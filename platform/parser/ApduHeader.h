#pragma once

#include <cstddef>
#include <cstdint>

namespace TavIec61850Parser {

// The 8 bytes that open an SV or GOOSE APDU: APPID, length, reserved 1 and 2.
struct ApduHeader {
    std::uint16_t appId = 0;
    bool simulation = false; // reserved 1, bit 15
    const std::uint8_t* pdu = nullptr;
    std::size_t pduSize = 0; // bounded by the length field, not by the frame
};

// Throws MalformedFrame when the header is cut short or its length field
// claims more bytes than were captured.
ApduHeader decodeApduHeader(const std::uint8_t* payload, std::size_t size);

} // namespace TavIec61850Parser
