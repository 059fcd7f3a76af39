// The generator's captures held against the configuration it writes beside
// them, through the real parser, sampling clock and SCL reader: a faithful
// configuration matches every stream without a remark, and each field made to
// disagree is told for every stream, with both values.
#include "scl/StreamMatch.h"
#include "platform/parser/PcapParser.h"
#include "scl/SclReader.h"
#include "stream/StreamClocks.h"
#include "tests/support/TestCaptures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace TavScl;
using ::testing::ElementsAre;

// A capture and its configuration, parsed and matched.
struct Checked {
    TavIec61850Parser::Db db;
    std::vector<SeenStream> seen;
    std::vector<SclFile> files;
    MatchReport report;

    const MatchedStream& matchOf(ControlKind kind) const {
        for (const auto& m : report.matched)
            if (seen[m.stream].kind == kind)
                return m;
        throw std::runtime_error("no matched stream of that kind");
    }
};

void parse(const std::string& capture, Checked& c) {
    const std::atomic<bool> cancel{false};
    TavIec61850Parser::PcapParser::parseFile(capture, c.db, {}, cancel, [](double) {});
    TavStream::StreamClocks clocks;
    for (const auto& g : c.db.gooseProto.gooses)
        c.seen.push_back(seenStream(g));
    for (const auto& sv : c.db.svProto.svs)
        c.seen.push_back(seenStream(sv, clocks.of(sv).rateHz()));
}

// The capture written with `capture` options; its configuration written with
// them too, or, when given, with `configuration` instead.
std::unique_ptr<Checked> check(const std::string& name, const std::vector<std::string>& capture,
                               const std::vector<std::string>& configuration) {
    const std::string dir = TavTest::tempDir();
    const std::string scd = dir + "/" + name + ".scd";
    auto c = std::make_unique<Checked>();
    std::vector<std::string> args{dir + "/" + name + ".pcap", "--duration", "0.05"};
    args.insert(args.end(), capture.begin(), capture.end());
    if (configuration.empty())
        args.insert(args.end(), {"--scl", scd});
    TavTest::runGenerator(args);
    if (!configuration.empty()) {
        std::vector<std::string> other{dir + "/" + name + "-other.pcap", "--duration", "0.01",
                                       "--scl", scd};
        other.insert(other.end(), configuration.begin(), configuration.end());
        TavTest::runGenerator(other);
    }
    parse(args[0], *c);
    c->files.push_back(readSclFile(scd));
    c->report = matchStreams(c->seen, allControls(c->files));
    return c;
}

TEST(StreamMatch, ACaptureMatchesItsOwnConfigurationWithoutRemark) {
    const auto c = check("faithful",
                         {"--sv", "2", "--goose", "2", "--bitstrings", "1", "--vlan", "10",
                          "--asdus", "2", "--rate", "4800"},
                         {});
    EXPECT_EQ(c->report.matched.size(), 4u);
    EXPECT_TRUE(c->report.missing.empty());
    EXPECT_TRUE(c->report.unexpected.empty());
    for (const auto& m : c->report.matched)
        EXPECT_TRUE(m.mismatches.empty()) << m.control->reference << ": " << m.mismatches[0].field;
    EXPECT_THAT(c->matchOf(ControlKind::Goose).control->channelNames(),
                ElementsAre("GGIO1.Ind1.stVal", "XCBR1.Pos.stVal", "GGIO1.Ind2.stVal",
                            "GGIO1.Ind3.stVal", "GGIO1.Ind4.stVal"));
    const ControlBlock& sv = *c->matchOf(ControlKind::Sv).control;
    EXPECT_THAT(sv.channelNames(), ElementsAre("TCTR1.Amp", "TCTR2.Amp", "TCTR3.Amp", "TCTR4.Amp",
                                               "TVTR1.Vol", "TVTR2.Vol", "TVTR3.Vol", "TVTR4.Vol"));
    EXPECT_EQ(sv.dataSet->members[2].phase, "C");
    EXPECT_EQ(sv.dataSet->members[2].lnDescription, "Current C");
}

struct Disagreement {
    const char* name;
    std::vector<std::string> options; // of the capture and, with --scl, its configuration
    Mismatch sv, goose;               // field empty: no remark for that kind
};

class StreamMatchTells : public ::testing::TestWithParam<Disagreement> {};

TEST_P(StreamMatchTells, TheFieldThatDisagreesWithBothValues) {
    const Disagreement& d = GetParam();
    std::vector<std::string> options{"--sv", "1", "--goose", "1", "--vlan", "10"};
    options.insert(options.end(), d.options.begin(), d.options.end());
    const auto c = check(d.name, options, {});
    EXPECT_TRUE(c->report.missing.empty());
    EXPECT_TRUE(c->report.unexpected.empty());
    const std::pair<ControlKind, Mismatch> expected[] = {{ControlKind::Sv, d.sv},
                                                         {ControlKind::Goose, d.goose}};
    for (const auto& [kind, want] : expected) {
        const auto& found = c->matchOf(kind).mismatches;
        if (want.field.empty()) {
            EXPECT_TRUE(found.empty()) << kindName(kind) << ": " << found[0].field;
            continue;
        }
        ASSERT_EQ(found.size(), 1u) << kindName(kind);
        EXPECT_EQ(found[0].field, want.field);
        EXPECT_EQ(found[0].scl, want.scl);
        EXPECT_EQ(found[0].seen, want.seen);
    }
}

// Mismatches the configuration is made to have, and one the capture has.
INSTANTIATE_TEST_SUITE_P(
    Fields, StreamMatchTells,
    ::testing::Values(
        Disagreement{
            "confRev", {"--scl-mismatch", "confRev"}, {"confRev", "2", "1"}, {"confRev", "2", "1"}},
        Disagreement{"appid",
                     {"--scl-mismatch", "appid"},
                     {"appid", "4001", "4000"},
                     {"appid", "1001", "1000"}},
        Disagreement{"dst",
                     {"--scl-mismatch", "dst"},
                     {"dst", "01:0c:cd:04:00:80", "01:0c:cd:04:00:00"},
                     {"dst", "01:0c:cd:01:00:80", "01:0c:cd:01:00:00"}},
        Disagreement{
            "vlan", {"--scl-mismatch", "vlan"}, {"vlan", "00B", "00A"}, {"vlan", "00B", "00A"}},
        Disagreement{"datSet",
                     {"--scl-mismatch", "datSet"},
                     {"datSet", "TAVNA/LLN0$SV00cfg", "TAVNA/LLN0$SV00"},
                     {"datSet", "TAVNA00LD0/LLN0$DS1cfg", "TAVNA00LD0/LLN0$DS1"}},
        Disagreement{
            "entries", {"--scl-mismatch", "entries"}, {"entries", "9", "8"}, {"entries", "5", "4"}},
        Disagreement{"smpRate",
                     {"--scl-mismatch", "smpRate"},
                     {"smpRate", "160 per period", "4000 per second"},
                     {}},
        Disagreement{"nofASDU", {"--scl-mismatch", "nofASDU"}, {"nofASDU", "2", "1"}, {}},
        Disagreement{"id",
                     {"--scl-mismatch", "id"},
                     {"svID", "TavnaSV00cfg", "TavnaSV00"},
                     {"goID", "TavnaGOOSE00cfg", "TavnaGOOSE00"}},
        Disagreement{"simulation",
                     {"--simulation"},
                     {"simulation", "false", "true"},
                     {"simulation", "false", "true"}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(StreamMatch, StreamsTheConfigurationLacksAndBlocksTheCaptureLacks) {
    const auto c = check("partial", {"--sv", "1", "--goose", "2"}, {"--sv", "2", "--goose", "1"});
    ASSERT_EQ(c->report.missing.size(), 1u);
    EXPECT_EQ(c->report.missing[0]->reference, "TAVNA/LLN0$MS$MSVCB01");
    EXPECT_EQ(c->report.missing[0]->ied, "TavnaMU");
    ASSERT_EQ(c->report.unexpected.size(), 1u);
    EXPECT_EQ(c->seen[c->report.unexpected[0]].id, "TAVNA01LD0/LLN0$GO$gcb1");
    EXPECT_EQ(c->report.matched.size(), 2u);
}

TEST(StreamMatch, ADeviceFileBesideTheSubstationFileAddsNoBlockTwice) {
    const auto c = check("twice", {"--sv", "1", "--goose", "1"}, {});
    c->files.push_back(readSclFile(c->files[0].path));
    const auto report = matchStreams(c->seen, allControls(c->files));
    EXPECT_EQ(report.matched.size(), 2u);
    EXPECT_TRUE(report.missing.empty());
}

} // namespace
