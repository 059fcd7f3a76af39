#include "tests/platform/parser/CaptureBytes.h"

#include "platform/parser/GooseParser.h"
#include "platform/parser/SvParser.h"

#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace TavIec61850Parser;
using namespace TavTest;

namespace {

// Microsecond captures: compare in whole microseconds so that no binary
// fraction gets in the way.
std::int64_t micros(const Timest& t) {
    return t.seconds * 1'000'000LL + t.nanoseconds / 1000;
}

struct GooseExpectation {
    const char* src;
    const char* gocbRef;
    std::uint32_t confRev;
    std::uint64_t packets;
    std::int64_t first;
    std::int64_t last;
};

} // namespace

TEST(SharedCaptures, threeGoosePublishersSharingAppIdAndGoId) {
    Db db;
    FileStats stats = parse(sharedCapture("goose_3pub_interlocking_vlan0_451frames.pcap"), db);
    EXPECT_EQ(stats.frames, 451u);
    EXPECT_EQ(stats.gooseFrames, 451u);
    EXPECT_EQ(stats.malformedFrames, 0u);
    ASSERT_EQ(db.gooseProto.getGooseCount(), 3u);

    const GooseExpectation expected[] = {
        {"0a:bb:fe:10:c9:02", "AA1C1Q01A1LD0/LLN0$GO$gcb_A", 1, 120, 1216909229658033,
         1216909245391014},
        {"0a:bb:fe:10:c9:06", "AA1C1Q05A1LD0/LLN0$GO$gcb_A", 5, 167, 1216909229972047,
         1216909243720025},
        {"0a:bb:fe:10:c9:08", "AA1C1Q07A1LD0/LLN0$GO$gcb_A", 2, 164, 1216909232511040,
         1216909245467042},
    };
    for (const GooseExpectation& e : expected) {
        auto it = std::find_if(db.gooseProto.gooses.begin(), db.gooseProto.gooses.end(),
                               [&](const Goose& g) { return g.srcMac == e.src; });
        ASSERT_NE(it, db.gooseProto.gooses.end()) << e.src;
        EXPECT_EQ(it->dstMac, "01:0c:cd:01:00:00");
        ASSERT_TRUE(it->vlan && it->vlan->id);
        EXPECT_EQ(*it->vlan->id, 0);
        EXPECT_EQ(it->appId, 0x3001);
        EXPECT_EQ(it->gocbRef, e.gocbRef);
        EXPECT_EQ(it->goId, "InterlockingA");
        EXPECT_EQ(it->confRev, e.confRev);
        EXPECT_EQ(it->entries, 25u);
        EXPECT_FALSE(it->simulation);
        EXPECT_EQ(it->packageCount(), e.packets);
        const PackageFile& f = *it->files.begin();
        EXPECT_EQ(micros(f.getBeginTime()), e.first);
        EXPECT_EQ(micros(f.getEndTime()), e.last);
        EXPECT_EQ(micros(f.packages.back().time), e.last);
        // The last frame read back by its offset is this stream's.
        GoosePdu last = GooseParser::parseGoosePDUFromFile(f.path, f.packages.back().offset);
        EXPECT_EQ(last.gocbRef, e.gocbRef);
        EXPECT_EQ(GooseParser::parseBooleanValues(last.data).size(), 25u);
    }
}

TEST(SharedCaptures, relayWithDestinationOutsideTheGooseRange) {
    Db db;
    FileStats stats = parse(sharedCapture("goose_ge-f650_8frames.pcap"), db);
    EXPECT_EQ(stats.gooseFrames, 8u);
    ASSERT_EQ(db.gooseProto.getGooseCount(), 1u);
    const Goose& g = *db.gooseProto.gooses.begin();
    EXPECT_EQ(g.srcMac, "00:a0:f4:08:2f:77");
    EXPECT_EQ(g.dstMac, "01:a0:f4:08:2f:77");
    EXPECT_FALSE(g.vlan.has_value());
    EXPECT_EQ(g.appId, 1);
    EXPECT_EQ(g.datSet, "GEDeviceF650/LLN0$GOOSE1");
    EXPECT_EQ(g.goId, "F650_GOOSE1");
    EXPECT_EQ(g.entries, 8u);
    EXPECT_EQ(g.packageCount(), 8u);
    EXPECT_EQ(micros(g.files.begin()->getBeginTime()), 1216135243118812);
}

TEST(SharedCaptures, eightSvStreamsThatDifferOnlyBySvId) {
    Db db;
    FileStats stats = parse(sharedCapture("sv_gen_8streams_4000loops_novlan.pcap"), db);
    EXPECT_EQ(stats.frames, 32000u);
    EXPECT_EQ(stats.svFrames, 32000u);
    ASSERT_EQ(db.svProto.getSvCount(), 8u);
    std::vector<std::string> ids;
    for (const Sv& s : db.svProto.svs) {
        ids.push_back(s.svId);
        EXPECT_EQ(s.srcMac, "c4:b5:12:00:00:01");
        EXPECT_EQ(s.dstMac, "01:0c:cd:01:00:01");
        EXPECT_EQ(s.appId, 0x4000);
        EXPECT_EQ(s.confRev, 1u);
        EXPECT_EQ(s.valuesPerAsdu, 8u);
        EXPECT_EQ(s.asdusPerFrame, 1u);
        ASSERT_EQ(s.files.size(), 1u);
        const PackageFile& f = *s.files.begin();
        ASSERT_EQ(f.packages.size(), 4000u);
        EXPECT_TRUE(f.timeOrdered);
        EXPECT_EQ(micros(f.getBeginTime()), 1'000'001);
        EXPECT_EQ(micros(f.getEndTime()), 1'999'751);

        const std::vector<std::vector<std::int32_t>> firstSamples = {
            {0, 1224, -1224, 0, 8061, -4030, -4030, 0},
            {110, 1165, -1276, 0, 8036, -4565, -3470, 0},
            {221, 1099, -1320, 0, 7961, -5072, -2888, 0}};
        for (std::size_t i = 0; i < firstSamples.size(); ++i) {
            EXPECT_EQ(micros(f.packages[i].time), 1'000'001 + 250 * static_cast<std::int64_t>(i));
            auto asdus = SvParser::parseASDUFromFile(f.path, f.packages[i].offset);
            ASSERT_EQ(asdus.size(), 1u);
            EXPECT_EQ(asdus[0].svId, s.svId);
            EXPECT_EQ(asdus[0].counters.smpCnt, i);
            std::vector<std::int32_t> values;
            for (const SvValue& v : asdus[0].values)
                values.push_back(v.value);
            EXPECT_EQ(values, firstSamples[i]) << s.svId << " sample " << i;
        }
    }
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(ids, (std::vector<std::string>{"svID0000", "svID0001", "svID0002", "svID0003",
                                             "svID0004", "svID0005", "svID0006", "svID0007"}));
}
