#include "stream/SvSampleReader.h"

#include "platform/parser/EthernetDecoder.h"
#include "platform/parser/ParseError.h"

namespace TavStream {

bool SvSampleReader::decode(const std::vector<std::uint8_t>& bytes) {
    using namespace TavIec61850Parser;
    EthernetFrame eth;
    if (!decodeEthernet(bytes.data(), bytes.size(), eth) || eth.etherType != kEtherTypeSv)
        return false;
    try {
        decodeSvApdu(eth.payload, eth.payloadSize, views_);
    } catch (const MalformedFrame&) {
        return false;
    }
    if (views_.empty())
        return false;
    // A frame may carry ASDUs of other publishers' data sets: only the
    // stream's own are its samples.
    std::erase_if(views_, [&](const SvAsduView& v) { return v.svId != svId_; });
    return !views_.empty();
}

} // namespace TavStream
