#include "platform/parser/GooseParser.h"

#include "platform/parser/ByteReader.h"
#include "platform/parser/EthernetDecoder.h"
#include "platform/parser/FrameReader.h"
#include "platform/parser/GooseDecoder.h"
#include "platform/parser/ParseError.h"

#include <cstdio>
#include <ctime>

namespace TavIec61850Parser {

namespace {

// UtcTime: 32-bit seconds, a 24-bit binary fraction, a quality byte. The
// fraction is rounded to the microsecond.
std::string utcText(const std::uint8_t* t) {
    std::time_t seconds = ByteReader::load32(t, true);
    std::uint64_t fraction = std::uint64_t{t[4]} << 16 | std::uint64_t{t[5]} << 8 | t[6];
    std::uint64_t micros = (fraction * 1'000'000 + (1u << 23)) >> 24;
    if (micros > 999'999)
        micros = 999'999;
    std::tm tm{};
    gmtime_r(&seconds, &tm);
    char text[96];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%06uZ", tm.tm_year + 1900,
                  tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec,
                  static_cast<unsigned>(micros));
    return text;
}

const char* flag(bool b) {
    return b ? "true" : "false";
}

} // namespace

GoosePdu GooseParser::parsePduFromFrame(const std::uint8_t* frame, std::size_t size) {
    EthernetFrame eth;
    if (!decodeEthernet(frame, size, eth) || eth.etherType != kEtherTypeGoose)
        throw MalformedFrame("not a GOOSE frame");
    GooseFrameView g = decodeGooseApdu(eth.payload, eth.payloadSize);
    GoosePdu pdu;
    pdu.gocbRef.assign(g.gocbRef);
    pdu.timeAllowedToLive = std::to_string(g.timeAllowedToLive);
    pdu.datSet.assign(g.datSet);
    pdu.goId.assign(g.goId);
    pdu.t = utcText(g.t);
    pdu.stNum = std::to_string(g.stNum);
    pdu.sqNum = std::to_string(g.sqNum);
    pdu.simulation = flag(g.simulation);
    pdu.confRev = std::to_string(g.confRev);
    pdu.ndsCom = flag(g.ndsCom);
    pdu.numDatSetEntries = std::to_string(g.numDatSetEntries);
    if (g.allData)
        pdu.data.assign(g.allData, g.allData + g.allDataSize);
    return pdu;
}

GoosePdu GooseParser::parseGoosePDUFromFile(const std::string& path, unsigned long long offset) {
    thread_local std::vector<std::uint8_t> buffer;
    FrameReader::read(path, offset, buffer);
    try {
        return parsePduFromFrame(buffer.data(), buffer.size());
    } catch (const MalformedFrame& e) {
        throw ParseError(path, "no GOOSE frame at byte " + std::to_string(offset) + " (" +
                                   e.what() + ")");
    }
}

} // namespace TavIec61850Parser
