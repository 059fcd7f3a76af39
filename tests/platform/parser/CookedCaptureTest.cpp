// Linux cooked frames beside Ethernet ones in one file: each interface's link
// type decides how its frames are read, at parse time and again by offset.
#include "tests/platform/parser/CaptureBytes.h"

#include "platform/parser/SvParser.h"

#include <gtest/gtest.h>

using namespace TavIec61850Parser;
using namespace TavTest;

namespace {

// The cooked header of either version for an Ethernet frame, with the
// address length it claims.
Bytes cooked(std::uint32_t linkType, const Bytes& ethernet, std::uint8_t addressLength = 6) {
    const Bytes source(ethernet.begin() + 6, ethernet.begin() + 12);
    const Bytes protocol(ethernet.begin() + 12, ethernet.begin() + 14);
    const Bytes rest(ethernet.begin() + 14, ethernet.end());
    if (linkType == 113)
        return concat({be16(2), be16(1), be16(addressLength), source, Bytes(2, 0), protocol, rest});
    return concat(
        {protocol, be16(0), be32(1), be16(1), Bytes{2, addressLength}, source, Bytes(2, 0), rest});
}

const Sv* svNamed(const Db& db, const std::string& svId) {
    for (const Sv& s : db.svProto.svs)
        if (s.svId == svId)
            return &s;
    return nullptr;
}

} // namespace

class CookedBesideEthernet : public ::testing::TestWithParam<std::uint32_t> {};

TEST_P(CookedBesideEthernet, eachInterfaceKeepsItsLinkTypeWhenReadAgain) {
    const std::uint32_t link = GetParam();
    const Bytes onWire = svFrame("Wire", 1, 2);
    const Bytes onAny = svFrame("Any", 2, 3);
    Pcapng file;
    file.section().interface(1, 6).interface(static_cast<std::uint16_t>(link), 6);
    file.enhanced(0, 1, onWire).enhanced(1, 2, cooked(link, onAny));
    // A second section numbers its interfaces afresh, the other way round.
    file.section().interface(static_cast<std::uint16_t>(link), 6).interface(1, 6);
    file.enhanced(0, 3, cooked(link, onAny)).enhanced(1, 4, onWire);
    file.enhanced(0, 5, cooked(link, onAny, 4)); // no Ethernet source: not SV to us
    Db db;
    const FileStats stats = parse(writeTemp("cooked.pcapng", file.out), db);
    EXPECT_EQ(stats.svFrames, 4u);
    EXPECT_EQ(stats.otherFrames, 1u);
    const Sv* wire = svNamed(db, "Wire");
    const Sv* any = svNamed(db, "Any");
    ASSERT_TRUE(wire && any);
    EXPECT_EQ(wire->dstMac, "01:0c:cd:04:00:01");
    EXPECT_EQ(any->dstMac, "??:??:??:??:??:??");
    EXPECT_EQ(any->srcMac, wire->srcMac);
    for (const Sv* s : {wire, any}) {
        const PackageFile& f = *s->files.begin();
        ASSERT_EQ(f.packages.size(), 2u);
        for (const Package& p : f.packages) {
            const auto asdus = SvParser::parseASDUFromFile(f.path, p.offset);
            ASSERT_EQ(asdus.size(), s->asdusPerFrame);
            EXPECT_EQ(asdus[0].svId, s->svId);
            EXPECT_EQ(asdus.back().values.size(), s->valuesPerAsdu);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(BothVersions, CookedBesideEthernet, ::testing::Values(113u, 276u));
