#include "platform/parser/SvParser.h"

#include "platform/parser/EthernetDecoder.h"
#include "platform/parser/FrameReader.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/SvDecoder.h"

namespace TavIec61850Parser {

std::vector<ASDUData> SvParser::parseASDUFromFrame(const std::uint8_t* frame, std::size_t size,
                                                   SeqDataRests* rests) {
    EthernetFrame eth;
    if (!decodeEthernet(frame, size, eth) || eth.etherType != kEtherTypeSv)
        throw MalformedFrame("not an SV frame");
    std::vector<ASDUData> asdus;
    decodeSvApdu(eth.payload, eth.payloadSize, &asdus, rests);
    return asdus;
}

namespace {

std::vector<ASDUData> readAndDecode(const std::string& path, unsigned long long offset,
                                    SeqDataRests* rests) {
    thread_local std::vector<std::uint8_t> buffer;
    FrameReader::read(path, offset, buffer);
    try {
        return SvParser::parseASDUFromFrame(buffer.data(), buffer.size(), rests);
    } catch (const MalformedFrame& e) {
        throw ParseError(path,
                         "no SV frame at byte " + std::to_string(offset) + " (" + e.what() + ")");
    }
}

} // namespace

std::vector<ASDUData> SvParser::parseASDUFromFile(const std::string& path,
                                                  unsigned long long offset) {
    return readAndDecode(path, offset, nullptr);
}

std::vector<ASDUData> SvParser::parseASDUWithRestsFromFile(const std::string& path,
                                                           unsigned long long offset,
                                                           SeqDataRests& rests) {
    rests.clear();
    return readAndDecode(path, offset, &rests);
}

void SvParser::parseASDUsFromFile(
    const std::string& path, const std::vector<std::uint64_t>& offsets,
    const std::function<void(std::size_t, std::vector<ASDUData>&)>& use) {
    FrameReader::readEach(path, offsets, [&](std::size_t i, std::vector<std::uint8_t>& frame) {
        std::vector<ASDUData> asdus;
        try {
            asdus = parseASDUFromFrame(frame.data(), frame.size());
        } catch (const MalformedFrame& e) {
            throw ParseError(path, "no SV frame at byte " + std::to_string(offsets[i]) + " (" +
                                       e.what() + ")");
        }
        use(i, asdus);
    });
}

} // namespace TavIec61850Parser
