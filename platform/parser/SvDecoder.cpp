#include "platform/parser/SvDecoder.h"

#include "platform/parser/BerReader.h"
#include "platform/parser/ByteReader.h"
#include "platform/parser/ParseError.h"

#include <cstring>
#include <string>

namespace TavIec61850Parser {

namespace {

enum AsduTag : std::uint8_t {
    kSvId = 0x80,
    kDatSet = 0x81,
    kSmpCnt = 0x82,
    kConfRev = 0x83,
    kRefrTm = 0x84,
    kSmpSynch = 0x85,
    kSmpRate = 0x86,
    kSeqData = 0x87,
    kSmpMod = 0x88,
    kGmIdentity = 0x89,
};

[[noreturn]] void malformed(const char* why) {
    throw MalformedFrame(why);
}

void requireLength(const BerElement& e, std::size_t n, const char* what) {
    if (e.length != n)
        malformed(what);
}

std::string_view text(const BerElement& e) {
    return {reinterpret_cast<const char*>(e.value), e.length};
}

// Fields must come in their defined order, each at most once; the mandatory
// ones are checked at the end.
SvAsduView decodeAsdu(const BerElement& asdu, VaryingBytes& varying) {
    SvAsduView v;
    BerReader r(asdu);
    std::uint8_t last = 0;
    unsigned seen = 0;
    while (!r.atEnd()) {
        BerElement e = r.next();
        if (e.tag < kSvId || e.tag > kGmIdentity || e.tag <= last)
            malformed("unexpected tag in ASDU");
        last = e.tag;
        seen |= 1u << (e.tag - kSvId);
        switch (e.tag) {
        case kSvId:
            v.svId = text(e);
            break;
        case kDatSet:
            v.datSet = text(e);
            break;
        case kSmpCnt:
            requireLength(e, 2, "smpCnt is not 2 bytes");
            v.counters.smpCnt = ByteReader::load16(e.value, true);
            varying.add(e.value, 2);
            break;
        case kConfRev:
            requireLength(e, 4, "confRev is not 4 bytes");
            v.confRev = ByteReader::load32(e.value, true);
            break;
        case kRefrTm:
            requireLength(e, 8, "refrTm is not 8 bytes");
            v.refrTm = e.value;
            varying.add(e.value, 8);
            break;
        case kSmpSynch:
            requireLength(e, 1, "smpSynch is not 1 byte");
            v.counters.smpSynch = e.value[0];
            varying.add(e.value, 1);
            break;
        case kSmpRate:
            requireLength(e, 2, "smpRate is not 2 bytes");
            v.counters.smpRate = ByteReader::load16(e.value, true);
            v.counters.hasSmpRate = 1;
            break;
        case kSeqData:
            v.seqData = e.value;
            v.seqDataSize = e.length;
            varying.add(e.value, e.length);
            break;
        case kSmpMod:
            requireLength(e, 2, "smpMod is not 2 bytes");
            v.counters.smpMod = static_cast<std::uint8_t>(ByteReader::load16(e.value, true));
            v.counters.hasSmpMod = 1;
            varying.add(e.value, 2);
            break;
        case kGmIdentity:
            v.gmIdentity = e.value;
            v.gmIdentitySize = e.length;
            break;
        }
    }
    constexpr unsigned mandatory = 1u << (kSvId - kSvId) | 1u << (kSmpCnt - kSvId) |
                                   1u << (kConfRev - kSvId) | 1u << (kSmpSynch - kSvId) |
                                   1u << (kSeqData - kSvId);
    if ((seen & mandatory) != mandatory)
        malformed("ASDU misses a mandatory field");
    return v;
}

ASDUData copyOut(const SvAsduView& v) {
    ASDUData d;
    d.svId.assign(v.svId);
    d.datSet.assign(v.datSet);
    d.counters = v.counters;
    if (v.gmIdentity)
        d.gmIdentity.assign(v.gmIdentity, v.gmIdentity + v.gmIdentitySize);
    d.confRev = v.confRev;
    d.values.resize(v.valueCount());
    for (std::size_t i = 0; i < d.values.size(); ++i) {
        const std::uint8_t* p = v.seqData + 8 * i;
        d.values[i].value = static_cast<std::int32_t>(ByteReader::load32(p, true));
        d.values[i].quality = ByteReader::load32(p + 4, true);
    }
    return d;
}

} // namespace

namespace {

template <typename OnAsdu>
SvFrameView decodeEach(const std::uint8_t* payload, std::size_t size, OnAsdu onAsdu) {
    SvFrameView frame;
    frame.header = decodeApduHeader(payload, size);
    BerReader outer(frame.header.pdu, frame.header.pduSize);
    BerElement savPdu = outer.expect(0x60, "savPdu");

    BerReader pdu(savPdu);
    BerElement noAsdu = pdu.expect(0x80, "noASDU");
    std::uint64_t declared = berUnsigned(noAsdu, "noASDU");
    if (declared == 0)
        malformed("noASDU is 0");
    BerElement seq = pdu.next();
    if (seq.tag == 0x81) // security, not interpreted
        seq = pdu.next();
    if (seq.tag != 0xA2)
        malformed("expected seqASDU");
    if (!pdu.atEnd())
        malformed("unexpected data after seqASDU");

    BerReader asdus(seq);
    while (!asdus.atEnd()) {
        SvAsduView v = decodeAsdu(asdus.expect(0x30, "ASDU"), frame.varying);
        if (frame.asduCount == 0)
            frame.first = v;
        else if (v.svId != frame.first.svId)
            frame.mixedSvIds = true;
        onAsdu(v);
        ++frame.asduCount;
    }
    if (frame.asduCount != declared)
        malformed("noASDU disagrees with the ASDUs present");
    return frame;
}

} // namespace

SvFrameView decodeSvApdu(const std::uint8_t* payload, std::size_t size, std::vector<ASDUData>* all,
                         SeqDataRests* rests) {
    return decodeEach(payload, size, [&](const SvAsduView& v) {
        if (all)
            all->push_back(copyOut(v));
        if (rests)
            rests->emplace_back(v.seqData + 8 * v.valueCount(), v.seqData + v.seqDataSize);
    });
}

SvFrameView decodeSvApdu(const std::uint8_t* payload, std::size_t size,
                         std::vector<SvAsduView>& views) {
    views.clear();
    return decodeEach(payload, size, [&](const SvAsduView& v) { views.push_back(v); });
}

} // namespace TavIec61850Parser
