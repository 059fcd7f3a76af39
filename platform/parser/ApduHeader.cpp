#include "platform/parser/ApduHeader.h"

#include "platform/parser/ByteReader.h"
#include "platform/parser/ParseError.h"

namespace TavIec61850Parser {

namespace {
constexpr std::size_t kHeaderSize = 8;
constexpr std::uint16_t kSimulationBit = 0x8000;
} // namespace

ApduHeader decodeApduHeader(const std::uint8_t* payload, std::size_t size) {
    if (size < kHeaderSize)
        throw MalformedFrame("APDU header cut short");
    ApduHeader h;
    h.appId = ByteReader::load16(payload, true);
    std::size_t length = ByteReader::load16(payload + 2, true);
    if (length < kHeaderSize)
        throw MalformedFrame("APDU length shorter than its header");
    if (length > size)
        throw MalformedFrame("APDU length beyond the captured frame");
    h.simulation = (ByteReader::load16(payload + 4, true) & kSimulationBit) != 0;
    h.pdu = payload + kHeaderSize;
    h.pduSize = length - kHeaderSize;
    return h;
}

} // namespace TavIec61850Parser
