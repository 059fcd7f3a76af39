#include "platform/parser/GooseDecoder.h"

#include "platform/parser/ParseError.h"

namespace TavIec61850Parser {

namespace {

enum PduTag : std::uint8_t {
    kGocbRef = 0x80,
    kTimeAllowedToLive = 0x81,
    kDatSet = 0x82,
    kGoId = 0x83,
    kT = 0x84,
    kStNum = 0x85,
    kSqNum = 0x86,
    kSimulation = 0x87,
    kConfRev = 0x88,
    kNdsCom = 0x89,
    kNumDatSetEntries = 0x8A,
    kAllData = 0xAB,
    kSecurity = 0x8C,
};

[[noreturn]] void malformed(const char* why) {
    throw MalformedFrame(why);
}

std::string_view text(const BerElement& e) {
    return {reinterpret_cast<const char*>(e.value), e.length};
}

bool boolean(const BerElement& e, const char* what) {
    if (e.length != 1)
        malformed(what);
    return e.value[0] != 0;
}

// Position of a tag in the defined field order; -1 for a tag that has no place
// in a goosePdu.
int slotOf(std::uint8_t tag) {
    if (tag >= kGocbRef && tag <= kNumDatSetEntries)
        return tag - kGocbRef;
    if (tag == kAllData)
        return 11;
    if (tag == kSecurity || tag == (kSecurity | 0x20))
        return 12;
    return -1;
}

void decodeField(const BerElement& e, GooseFrameView& g) {
    switch (e.tag) {
    case kGocbRef:
        g.gocbRef = text(e);
        break;
    case kTimeAllowedToLive:
        g.timeAllowedToLive = berUnsigned(e, "timeAllowedtoLive");
        break;
    case kDatSet:
        g.datSet = text(e);
        break;
    case kGoId:
        g.goId = text(e);
        break;
    case kT:
        if (e.length != 8)
            malformed("t is not 8 bytes");
        g.t = e.value;
        break;
    case kStNum:
        g.stNum = berUnsigned(e, "stNum");
        break;
    case kSqNum:
        g.sqNum = berUnsigned(e, "sqNum");
        break;
    case kSimulation:
        g.simulation = boolean(e, "simulation is not 1 byte");
        break;
    case kConfRev:
        g.confRev = berUnsigned(e, "confRev");
        break;
    case kNdsCom:
        g.ndsCom = boolean(e, "ndsCom is not 1 byte");
        break;
    case kNumDatSetEntries:
        g.numDatSetEntries = berUnsigned(e, "numDatSetEntries");
        break;
    case kAllData:
        g.allData = e.value;
        g.allDataSize = e.length;
        g.entries = validateBerSequence(e.value, e.length);
        break;
    default: // security: carried, not interpreted
        break;
    }
}

} // namespace

GooseFrameView decodeGooseApdu(const std::uint8_t* payload, std::size_t size) {
    GooseFrameView g;
    g.header = decodeApduHeader(payload, size);
    BerReader outer(g.header.pdu, g.header.pduSize);
    BerReader pdu(outer.expect(0x61, "goosePdu"));
    int lastSlot = -1;
    unsigned seen = 0;
    while (!pdu.atEnd()) {
        BerElement e = pdu.next();
        int slot = slotOf(e.tag);
        if (slot < 0 || slot <= lastSlot)
            malformed("unexpected tag in goosePdu");
        lastSlot = slot;
        seen |= 1u << slot;
        decodeField(e, g);
    }
    // simulation and ndsCom default to false; goID and allData may be absent.
    constexpr unsigned mandatory =
        1u << (kGocbRef - kGocbRef) | 1u << (kTimeAllowedToLive - kGocbRef) |
        1u << (kDatSet - kGocbRef) | 1u << (kT - kGocbRef) | 1u << (kStNum - kGocbRef) |
        1u << (kSqNum - kGocbRef) | 1u << (kConfRev - kGocbRef) |
        1u << (kNumDatSetEntries - kGocbRef);
    if ((seen & mandatory) != mandatory)
        malformed("goosePdu misses a mandatory field");
    return g;
}

} // namespace TavIec61850Parser
