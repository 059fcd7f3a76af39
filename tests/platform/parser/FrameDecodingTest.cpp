#include "tests/platform/parser/CaptureBytes.h"

#include "platform/parser/GooseParser.h"
#include "platform/parser/ParseError.h"
#include "platform/parser/SvParser.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace TavIec61850Parser;
using namespace TavTest;

namespace {

Db parseFrames(const std::string& name, const std::vector<Bytes>& frames,
               FileStats* stats = nullptr) {
    std::vector<PcapRecord> records;
    for (std::size_t i = 0; i < frames.size(); ++i)
        records.push_back({1, static_cast<std::uint32_t>(i), frames[i]});
    Db db;
    FileStats s = parse(writeTemp(name, pcapFile(records, false, false)), db);
    if (stats)
        *stats = s;
    return db;
}

const Sv& svWithVlan(const Db& db, std::optional<std::uint16_t> id) {
    for (const Sv& s : db.svProto.svs)
        if ((s.vlan ? s.vlan->id : std::nullopt) == id)
            return s;
    throw std::runtime_error("no stream with that VLAN");
}

} // namespace

TEST(Ethernet, vlanTagsKeyStreamsByOuterId) {
    Bytes sv = svFrame("A", 1, 8);
    Db db = parseFrames(
        "vlan.pcap",
        {sv, withTags(sv, concat({be16(0x8100), be16(0x8064)})),
         withTags(sv, concat({be16(0x8100), be16(0xA000)})),
         withTags(sv, concat({be16(0x88A8), be16(0x000A), be16(0x8100), be16(0x0014)}))});
    ASSERT_EQ(db.svProto.getSvCount(), 4u);
    EXPECT_FALSE(svWithVlan(db, std::nullopt).vlan.has_value());
    EXPECT_EQ(svWithVlan(db, 100).vlan->priority, 4);
    EXPECT_FALSE(svWithVlan(db, 100).vlan->innerId.has_value());
    EXPECT_EQ(svWithVlan(db, 0).vlan->priority, 5);
    const PackageFile& qinq = *svWithVlan(db, 10).files.begin();
    EXPECT_EQ(svWithVlan(db, 10).vlan->innerId, 20);
    // Every frame still decodes when read back by offset.
    ASSERT_EQ(qinq.packages.size(), 1u);
    EXPECT_EQ(SvParser::parseASDUFromFile(qinq.path, qinq.packages[0].offset).size(), 1u);
}

TEST(Ethernet, hsrPathAndPrpLanGiveTheLine) {
    Bytes sv = svFrame("A", 1, 8);
    auto hsr = [&](std::uint8_t path) {
        return withTags(sv, concat({be16(0x892F),
                                    be16(static_cast<std::uint16_t>(path << 12 | 100)), be16(7)}));
    };
    for (auto [path, line] : {std::pair{0, 'A'}, std::pair{1, 'B'}}) {
        Bytes tagged =
            withTags(hsr(static_cast<std::uint8_t>(path)), concat({be16(0x8100), be16(5)}));
        Db db = parseFrames("hsr.pcap", {tagged});
        ASSERT_EQ(db.svProto.getSvCount(), 1u);
        const Sv& s = *db.svProto.svs.begin();
        ASSERT_TRUE(s.hsr && s.hsr->line);
        EXPECT_EQ(*s.hsr->line, line);
        EXPECT_EQ(s.hsr->sequence, 7);
        EXPECT_EQ(s.vlan->id, 5);
        EXPECT_EQ(SvParser::parseASDUFromFrame(tagged.data(), tagged.size()).size(), 1u);
    }
    for (auto [lan, line] : {std::pair{0xA, 'A'}, std::pair{0xB, 'B'}}) {
        Db db = parseFrames("prp.pcap", {withPrpTrailer(sv, static_cast<std::uint8_t>(lan), 9)});
        ASSERT_EQ(db.svProto.getSvCount(), 1u);
        const Sv& s = *db.svProto.svs.begin();
        ASSERT_TRUE(s.prp && s.prp->line);
        EXPECT_EQ(*s.prp->line, line);
        EXPECT_EQ(s.prp->sequence, 9);
    }
    // A payload that merely ends in the suffix is no trailer without a LAN of A or B.
    Db db = parseFrames("noprp.pcap", {withPrpTrailer(sv, 0x3, 9)});
    EXPECT_FALSE(db.svProto.svs.begin()->prp.has_value());
}

TEST(Ethernet, otherFramesAreCountedAndSkipped) {
    Bytes ipv4 = concat({Bytes(12, 0x02), be16(0x0800), Bytes(46, 0)});
    Bytes llc = concat({Bytes(12, 0x02), be16(46), Bytes(46, 0)});
    Bytes runt(10, 0x01);
    FileStats stats;
    Db db = parseFrames("other.pcap", {ipv4, llc, runt}, &stats);
    EXPECT_EQ(stats.frames, 3u);
    EXPECT_EQ(stats.otherFrames, 3u);
    EXPECT_EQ(stats.malformedFrames, 0u);
    EXPECT_EQ(db.svProto.getSvCount() + db.gooseProto.getGooseCount(), 0u);
}

TEST(SvFrames, everyAsduAndChannelIsDecoded) {
    for (int asdus : {1, 2, 6, 8}) {
        for (int channels : {1, 8, 24}) {
            Bytes frame = svFrame("Stream", asdus, channels, 3990);
            auto decoded = SvParser::parseASDUFromFrame(frame.data(), frame.size());
            ASSERT_EQ(decoded.size(), static_cast<std::size_t>(asdus));
            for (int a = 0; a < asdus; ++a) {
                EXPECT_EQ(decoded[a].svId, "Stream");
                EXPECT_EQ(decoded[a].counters.smpCnt, 3990 + a);
                EXPECT_EQ(decoded[a].counters.smpSynch, 2);
                EXPECT_EQ(decoded[a].confRev, 1u);
                ASSERT_EQ(decoded[a].values.size(), static_cast<std::size_t>(channels));
                EXPECT_EQ(decoded[a].values.back().value, 100 * a + channels - 1);
            }
        }
    }
    Db db = parseFrames("asdus.pcap", {svFrame("Six", 6, 3)});
    const Sv& s = *db.svProto.svs.begin();
    EXPECT_EQ(s.asdusPerFrame, 6u);
    EXPECT_EQ(s.valuesPerAsdu, 3u);
}

TEST(SvFrames, malformedVariantsOfARealFrame) {
    // The real frame's fields are checked with its capture's other frames.
    Bytes real = firstFrameOf("sv_gen_8streams_4000loops_novlan.pcap");
    ASSERT_EQ(SvParser::parseASDUFromFrame(real.data(), real.size()).size(), 1u);

    auto malformed = [](Bytes frame) {
        EXPECT_THROW(SvParser::parseASDUFromFrame(frame.data(), frame.size()), MalformedFrame);
        return frame;
    };
    Bytes lyingCount = svFrame("A", 2, 1);
    lyingCount[14 + 8 + 4] = 3; // noASDU says 3
    Bytes longApdu = real;
    longApdu[17] += 1; // the APDU length claims one byte more than captured
    FileStats stats;
    parseFrames("badsv.pcap",
                {malformed(lyingCount), malformed(longApdu),
                 malformed(Bytes(real.begin(), real.end() - 9))},
                &stats);
    EXPECT_EQ(stats.malformedFrames, 3u);
    EXPECT_EQ(stats.svFrames, 0u);
}

TEST(SvFrames, seqDataOfAnyLengthKeepsItsCompleteEntriesAndTheRest) {
    Bytes real = firstFrameOf("sv_gen_8streams_4000loops_novlan.pcap");
    Bytes odd(real.begin(), real.end() - 1); // the last quality's last byte gone
    odd[14 + 8 + 1] -= 1; // savPdu, seqASDU, ASDU and seqData lengths all one short
    odd[14 + 8 + 6] -= 1;
    odd[14 + 8 + 8] -= 1;
    odd[0x5F - 40] -= 1;
    odd[17] -= 1; // and the APDU
    auto whole = SvParser::parseASDUFromFrame(real.data(), real.size());
    SeqDataRests rests;
    auto cut = SvParser::parseASDUFromFrame(odd.data(), odd.size(), &rests);
    ASSERT_EQ(cut.size(), 1u);
    ASSERT_EQ(cut[0].values.size(), 7u);
    EXPECT_EQ(cut[0].values.back().value, whole[0].values[6].value);
    ASSERT_EQ(rests.size(), 1u);
    EXPECT_EQ(rests[0], Bytes(real.end() - 8, real.end() - 1));
    FileStats stats;
    Db db = parseFrames("oddsv.pcap", {odd}, &stats);
    EXPECT_EQ(stats.svFrames, 1u);
    ASSERT_EQ(db.svProto.getSvCount(), 1u);
    EXPECT_EQ(db.svProto.svs.begin()->valuesPerAsdu, 7u);
    EXPECT_EQ(db.svProto.svs.begin()->seqDataBytes, 63u);
}

TEST(GooseFrames, realRelayFrameToText) {
    Bytes frame = firstFrameOf("goose_ge-f650_8frames.pcap");
    GoosePdu pdu = GooseParser::parsePduFromFrame(frame.data(), frame.size());
    EXPECT_EQ(pdu.gocbRef, "GEDeviceF650/LLN0$GO$gcb01");
    EXPECT_EQ(pdu.timeAllowedToLive, "40000");
    EXPECT_EQ(pdu.datSet, "GEDeviceF650/LLN0$GOOSE1");
    EXPECT_EQ(pdu.goId, "F650_GOOSE1");
    EXPECT_EQ(pdu.t, "2000-01-02T02:46:11.258166Z");
    EXPECT_EQ(pdu.stNum, "1");
    EXPECT_EQ(pdu.sqNum, "10");
    EXPECT_EQ(pdu.simulation, "false");
    EXPECT_EQ(pdu.confRev, "1");
    EXPECT_EQ(pdu.ndsCom, "false");
    EXPECT_EQ(pdu.numDatSetEntries, "8");
    EXPECT_EQ(pdu.data.size(), 32u);
    EXPECT_EQ(GooseParser::parseBooleanValues(pdu.data),
              (std::vector<float>{0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(GooseFrames, mutatedRelayFrames) {
    struct Case {
        const char* capture;
        std::uint64_t goose;
        std::uint64_t malformed;
    };
    for (const Case& c : {Case{"goose_f650_mut_missing_go_id.pcap", 1, 0},
                          Case{"goose_f650_mut_missing_gocb_ref.pcap", 0, 1},
                          Case{"goose_f650_mut_malformed_asn1.pcap", 0, 1},
                          Case{"goose_f650_mut_truncated.pcap", 0, 1}}) {
        Db db;
        FileStats stats = parse(sharedCapture(c.capture), db);
        EXPECT_EQ(stats.gooseFrames, c.goose) << c.capture;
        EXPECT_EQ(stats.malformedFrames, c.malformed) << c.capture;
        EXPECT_EQ(db.gooseProto.getGooseCount(), c.goose) << c.capture;
    }
    Db db;
    parse(sharedCapture("goose_f650_mut_missing_go_id.pcap"), db);
    const Goose& g = *db.gooseProto.gooses.begin();
    EXPECT_EQ(g.goId, "");
    EXPECT_EQ(g.gocbRef, "GEDeviceF650/LLN0$GO$gcb01");
    EXPECT_EQ(g.entries, 8u);
}

TEST(BooleanValues, everyAllDataTypeOfTheRelayFrame) {
    Bytes frame = firstFrameOf("goose_f650_mut_all_data_primitives_fallbacks.pcap");
    std::vector<float> v = GooseParser::parseBooleanValues(
        GooseParser::parsePduFromFrame(frame.data(), frame.size()).data);
    ASSERT_EQ(v.size(), 12u);
    // boolean, bit-string, integer, unsigned, floating point; then octet string,
    // visible string, tag 8, BCD, boolean array, object id, MMS string.
    EXPECT_EQ(std::vector<float>(v.begin(), v.begin() + 5),
              (std::vector<float>{1, 1, -1, 500, 1.0f}));
    for (std::size_t i = 5; i < v.size(); ++i)
        EXPECT_TRUE(std::isnan(v[i])) << "element " << i;
}

TEST(BooleanValues, bitStringsWideNumbersAndStructures) {
    Bytes data = concat({tlv(0x84, {0x06, 0x80}), tlv(0x84, {0x06, 0x40}), tlv(0x84, {0x00}),
                         tlv(0x84, {0x03, 0x12, 0x38}), tlv(0x85, {0xFF, 0x7F}),
                         tlv(0x86, {0x00, 0xFF, 0xFF, 0xFF, 0xFF}),
                         tlv(0x87, {11, 0x40, 0x09, 0x21, 0xFB, 0x54, 0x44, 0x2D, 0x18}),
                         tlv(0xA2, concat({tlv(0x83, {1})})), tlv(0x83, {0x02})});
    std::vector<float> v = GooseParser::parseBooleanValues(data);
    ASSERT_EQ(v.size(), 9u);
    EXPECT_EQ(v[0], 2);
    EXPECT_EQ(v[1], 1);
    EXPECT_EQ(v[2], 0);
    EXPECT_EQ(v[3], 0x1238 >> 3);
    EXPECT_EQ(v[4], -129);
    EXPECT_EQ(v[5], 4294967295.0f);
    EXPECT_FLOAT_EQ(v[6], 3.14159265f);
    EXPECT_TRUE(std::isnan(v[7]));
    EXPECT_EQ(v[8], 1);
    // A damaged tail ends the list; the elements before it stand.
    Bytes damaged = concat({tlv(0x83, {1}), Bytes{0x83, 0x05, 0x01}});
    EXPECT_EQ(GooseParser::parseBooleanValues(damaged), (std::vector<float>{1}));
}

TEST(SvFrames, aFrameLikeTheOneBeforeButForOneTagIsNotTakenForIt) {
    Bytes good = svFrame("A", 2, 4);
    Bytes nextSample = good;
    nextSample[good.size() - 1] = 0x55; // a sample byte: still the same stream
    Bytes badTag = good;
    badTag[14 + 8 + 2] = 0x81; // noASDU's tag
    Bytes otherId = svFrame("B", 2, 4);
    FileStats stats;
    Db db = parseFrames("template.pcap", {good, nextSample, badTag, otherId, good}, &stats);
    EXPECT_EQ(stats.svFrames, 4u);
    EXPECT_EQ(stats.malformedFrames, 1u);
    ASSERT_EQ(db.svProto.getSvCount(), 2u);
    for (const Sv& s : db.svProto.svs)
        EXPECT_EQ(s.packageCount(), s.svId == "A" ? 3u : 1u);
}
