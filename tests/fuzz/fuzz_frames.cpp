// Feeds arbitrary bytes to the SV and GOOSE frame decoders as an Ethernet
// frame, and to the allData reader as data-set bytes.
#include "platform/parser/GooseParser.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/SvParser.h"

using namespace TavIec61850Parser;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        SvParser::parseASDUFromFrame(data, size);
    } catch (const MalformedFrame&) {
    }
    try {
        GoosePdu pdu = GooseParser::parsePduFromFrame(data, size);
        GooseParser::parseBooleanValues(pdu.data);
    } catch (const MalformedFrame&) {
    }
    GooseParser::parseBooleanValues(std::vector<unsigned char>(data, data + size));
    return 0;
}
