// The inspector's --scl through its command line: the "scl" object of the JSON
// report pointing into its own stream list, the text lines, and the --values
// header naming channels by the configuration.
#include "tests/support/Json.h"
#include "tests/support/TestCaptures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

struct Files {
    std::string capture, scd;
};

// Two SV and two GOOSE streams; the configuration knows both GOOSE streams and
// the first SV stream, every block with a confRev one ahead.
Files captureAndConfiguration() {
    const std::string dir = TavTest::tempDir();
    Files f{dir + "/bus.pcap", dir + "/bus.scd"};
    TavTest::runGenerator({f.capture, "--sv", "2", "--goose", "2", "--duration", "0.05"});
    TavTest::runGenerator({dir + "/fewer.pcap", "--sv", "1", "--goose", "2", "--duration", "0.01",
                           "--scl", f.scd, "--scl-mismatch", "confRev"});
    return f;
}

std::string runInspector(std::vector<std::string> args, int expectedExit = 0) {
    args.insert(args.begin(), TavTest::toolPath("TAVNA_INSPECT"));
    std::string out, err;
    EXPECT_EQ(TavTest::runCommand(args, out, &err), expectedExit) << err;
    return out;
}

TEST(InspectScl, JsonReportsMatchesMismatchesAndUnexpectedByStreamIndex) {
    const Files f = captureAndConfiguration();
    const TavTest::FlatJson j =
        TavTest::parseJson(runInspector({"--scl", f.scd, "--json", f.capture}));
    EXPECT_EQ(j.at("streams"), "4");
    EXPECT_EQ(j.at("scl.files"), "1");
    EXPECT_EQ(j.at("scl.files.0"), "\"" + f.scd + "\"");
    EXPECT_EQ(j.at("scl.matched"), "3");
    EXPECT_EQ(j.at("scl.missing"), "0");
    ASSERT_EQ(j.at("scl.unexpected"), "1");
    const std::string stray = "streams." + j.at("scl.unexpected.0");
    EXPECT_EQ(j.at(stray + ".svID"), "\"TavnaSV01\"");
    for (int m = 0; m < 3; ++m) {
        const std::string matched = "scl.matched." + std::to_string(m);
        const std::string stream = "streams." + j.at(matched + ".stream");
        if (j.at(stream + ".kind") == "\"SV\"")
            EXPECT_EQ(j.at(matched + ".ied"), "\"TavnaMU\"");
        else
            EXPECT_EQ(j.at(matched + ".control_block"), j.at(stream + ".gocbRef"));
    }
    ASSERT_EQ(j.at("scl.mismatches"), "3");
    EXPECT_EQ(j.at("scl.mismatches.0.field"), "\"confRev\"");
    EXPECT_EQ(j.at("scl.mismatches.0.scl"), "\"2\"");
    EXPECT_EQ(j.at("scl.mismatches.0.seen"), "\"1\"");
}

TEST(InspectScl, TextAndValuesNameWhatTheConfigurationSays) {
    const Files f = captureAndConfiguration();
    const std::string text = runInspector({"--scl", f.scd, f.capture});
    EXPECT_THAT(text, HasSubstr("scl stream 0 matches TAVNA00LD0/LLN0$GO$gcb1 of TavnaGO00\n"
                                "scl stream 0 mismatch confRev: scl 2, seen 1\n"));
    EXPECT_THAT(text, HasSubstr("scl stream 3 is not configured\n"));

    // Streams are sorted GOOSE first: 2 is the first SV stream.
    EXPECT_THAT(runInspector({"--scl", f.scd, "--values", "2", f.capture}),
                StartsWith("time,sample_time,smpCnt,TCTR1.Amp,TCTR2.Amp,TCTR3.Amp,TCTR4.Amp,"
                           "TVTR1.Vol,TVTR2.Vol,TVTR3.Vol,TVTR4.Vol\n"));
    EXPECT_THAT(runInspector({"--scl", f.scd, "--values", "0", f.capture}),
                StartsWith("time,stNum,sqNum,GGIO1.Ind1.stVal,GGIO1.Ind2.stVal,GGIO1.Ind3.stVal,"
                           "GGIO1.Ind4.stVal\n"));
    // The stream the configuration does not know keeps its place names.
    EXPECT_THAT(runInspector({"--scl", f.scd, "--values", "3", f.capture}),
                StartsWith("time,sample_time,smpCnt,v0,v1,"));
}

} // namespace
