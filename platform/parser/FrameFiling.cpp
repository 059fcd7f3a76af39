#include "platform/parser/FrameFiling.h"

#include "platform/parser/CookedLinkLayer.h"
#include "platform/parser/ParseError.h"

namespace TavIec61850Parser {

namespace {

template <class Decode> bool decodes(FileStats& stats, Decode decode) {
    try {
        decode();
        return true;
    } catch (const MalformedFrame&) {
    } catch (const OutOfBounds&) {
    }
    ++stats.malformedFrames;
    return false;
}

// Decodes an Ethernet frame, or one rewritten as such with its destination
// unknown, and files it under its stream.
void decodeEthernetFrame(const std::uint8_t* data, std::size_t size, bool dstKnown,
                         const Package& package, StreamIndex& index, FileStats& stats) {
    EthernetFrame eth;
    if (!decodeEthernet(data, size, eth)) {
        ++stats.otherFrames;
        return;
    }
    eth.dstKnown = dstKnown;
    if (eth.etherType == kEtherTypeSv) {
        SvFrameView sv;
        if (decodes(stats, [&] { sv = decodeSvApdu(eth.payload, eth.payloadSize); })) {
            ++stats.svFrames;
            index.addSv(eth, sv, package, data, size);
        }
    } else if (eth.etherType == kEtherTypeGoose) {
        GooseFrameView goose;
        if (decodes(stats, [&] { goose = decodeGooseApdu(eth.payload, eth.payloadSize); })) {
            ++stats.gooseFrames;
            index.addGoose(eth, goose, package);
        }
    } else {
        ++stats.otherFrames;
    }
}

// Cooked frames are rewritten as Ethernet ones and always decoded in full.
void handleCookedFrame(const FrameRecord& rec, const Package& package, StreamIndex& index,
                       FileStats& stats, std::vector<std::uint8_t>& cooked) {
    if (isCookedLinkType(rec.linkType) &&
        cookedToEthernet(rec.linkType, rec.data, rec.size, cooked))
        decodeEthernetFrame(cooked.data(), cooked.size(), false, package, index, stats);
    else
        ++stats.otherFrames;
}

} // namespace

void fileFrame(const FrameRecord& rec, StreamIndex& index, FileStats& stats,
               std::vector<std::uint8_t>& cooked) {
    const Package package{rec.time, rec.offset};
    if (rec.linkType != kLinkTypeEthernet) [[unlikely]] {
        handleCookedFrame(rec, package, index, stats, cooked);
        return;
    }
    if (index.addKnownSv(rec.data, rec.size, package)) {
        ++stats.svFrames;
        return;
    }
    decodeEthernetFrame(rec.data, rec.size, true, package, index, stats);
}

} // namespace TavIec61850Parser
