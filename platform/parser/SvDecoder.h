#pragma once

#include "platform/parser/ApduHeader.h"
#include "platform/parser/FrameTemplate.h"
#include "platform/parser/SvParser.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace TavIec61850Parser {

// One ASDU as it lies in the frame; texts and seqData still point into it.
struct SvAsduView {
    std::string_view svId;
    std::string_view datSet;
    std::uint32_t confRev = 0;
    AsduCounters counters;
    const std::uint8_t* refrTm = nullptr; // 8 bytes when present
    const std::uint8_t* gmIdentity = nullptr;
    std::size_t gmIdentitySize = 0;
    const std::uint8_t* seqData = nullptr;
    std::size_t seqDataSize = 0; // any length: data sets other than 9-2LE exist

    // Complete 8-byte entries; the bytes after them are kept, not interpreted.
    std::size_t valueCount() const { return seqDataSize / 8; }
};

// What grouping needs of an SV frame: the header and the first ASDU, and
// where the bytes lie that change from one frame of a stream to the next.
struct SvFrameView {
    ApduHeader header;
    std::uint32_t asduCount = 0;
    SvAsduView first;
    bool mixedSvIds = false; // some ASDU carries an svID other than the first's
    VaryingBytes varying;
};

// Decodes and checks a whole SV APDU (the bytes after the EtherType). When
// `all` is given, every ASDU is also copied out into it, and when `rests` is,
// each ASDU's seqData bytes after its values. Throws MalformedFrame.
SvFrameView decodeSvApdu(const std::uint8_t* payload, std::size_t size,
                         std::vector<ASDUData>* all = nullptr, SeqDataRests* rests = nullptr);
// The same, every ASDU given as a view into the payload, with no copy.
SvFrameView decodeSvApdu(const std::uint8_t* payload, std::size_t size,
                         std::vector<SvAsduView>& views);

} // namespace TavIec61850Parser
