// The inspector's stream checks on a capture with known faults: the same
// counts and event times in its JSON and its text.
#include "tests/support/Json.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

namespace {

struct Outcome {
    int exitCode = 0;
    std::string out;
};

Outcome inspect(std::vector<std::string> args) {
    args.insert(args.begin(), TavTest::toolPath("TAVNA_INSPECT"));
    Outcome r;
    r.exitCode = TavTest::runCommand(args, r.out);
    return r;
}

// Two SV streams that lose three frames at 0.5 s, one GOOSE stream that
// changes state at 0.3 s and loses the frame at 0.302 s.
std::string faultyCapture() {
    return TavTest::generated("check_faults",
                              {"--sv", "2", "--goose", "1", "--change", "0.3", "--sv-fault",
                               "drop@0.5x3", "--goose-fault", "drop@0.301"});
}

TEST(CheckReport, JsonCarriesTheCountsAndEvents) {
    const Outcome r = inspect({"--check", "--json", faultyCapture()});
    ASSERT_EQ(r.exitCode, 0);
    const TavTest::FlatJson j = TavTest::parseJson(r.out);
    ASSERT_EQ(j.at("streams"), "3");
    // Sorted: GOOSE first, then the SV streams.
    EXPECT_EQ(j.at("streams.0.kind"), "\"GOOSE\"");
    EXPECT_EQ(j.at("streams.0.health.state_changes"), "1");
    EXPECT_EQ(j.at("streams.0.health.sqnum_gaps"), "1");
    EXPECT_EQ(j.at("streams.0.health.events.1.time"), "1700000000.306000");
    EXPECT_EQ(j.at("streams.0.health.events.1.kind"), "\"sqnum_gaps\"");
    for (const char* sv : {"streams.1", "streams.2"}) {
        const std::string h = std::string(sv) + ".health.";
        EXPECT_EQ(j.at(std::string(sv) + ".packets"), "3997");
        EXPECT_EQ(j.at(h + "smpcnt_discontinuities"), "1");
        EXPECT_EQ(j.at(h + "missing_samples"), "3");
        EXPECT_EQ(j.at(h + "smpcnt_wrap"), "4000");
        EXPECT_EQ(j.at(h + "events.0.time"), "1700000000.500750");
        EXPECT_EQ(j.at(h + "events.0.text"), "\"smpCnt 1999 -> 2003, пропущено 3\"");
    }
}

TEST(CheckReport, TextNamesTheRemarksOrSaysThereAreNone) {
    const Outcome faulty = inspect({"--check", faultyCapture()});
    ASSERT_EQ(faulty.exitCode, 0);
    EXPECT_NE(faulty.out.find("packets 3997: smpcnt_discontinuities 1, missing_samples 3\n"
                              "  1700000000.500750 smpcnt_discontinuities"),
              std::string::npos)
        << faulty.out;
    const Outcome clean =
        inspect({"--check", TavTest::generated("check_clean", {"--sv", "1", "--goose", "1"})});
    ASSERT_EQ(clean.exitCode, 0);
    EXPECT_NE(clean.out.find("packets 4000: no remarks\n"), std::string::npos) << clean.out;
    EXPECT_NE(faulty.out.find("packets 16: sqnum_gaps 1 (state_changes 1)\n"), std::string::npos)
        << faulty.out;
    EXPECT_EQ(inspect({"--check", "--values", "0", faultyCapture()}).exitCode, 2);
}

} // namespace
