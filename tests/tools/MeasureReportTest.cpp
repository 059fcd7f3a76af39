// The inspector's measurements: the JSON a script reads, named as documented,
// and the usage errors of its window.
#include "tests/support/Json.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

int inspect(std::vector<std::string> args, std::string& out) {
    args.insert(args.begin(), TavTest::toolPath("TAVNA_INSPECT"));
    return TavTest::runCommand(args, out);
}

TEST(MeasureReport, JsonNamesEveryFigureAndLeavesOutWhatTheRateCannotCarry) {
    const auto capture =
        TavTest::generated("measure_report", {"--sv", "1", "--duration", "1", "--harmonic", "7:4",
                                              "--current-lag", "60"});
    std::string out;
    ASSERT_EQ(
        inspect({"--measure", "--json", "--from", "1700000000.2", "--to", "1700000000.4", capture},
                out),
        0)
        << out;
    const TavTest::FlatJson j = TavTest::parseJson(out);
    const auto number = [&](const std::string& path) { return std::stod(j.at(path)); };
    ASSERT_EQ(j.at("streams"), "1");
    EXPECT_EQ(j.at("streams.0.svID"), "\"TavnaSV00\"");
    EXPECT_EQ(j.at("streams.0.window.from"), "1700000000.200000000");
    EXPECT_EQ(j.at("streams.0.window.cycles"), "10");
    EXPECT_NEAR(number("streams.0.frequency"), 50, 0.001);
    EXPECT_EQ(j.at("streams.0.channels"), "8");
    EXPECT_EQ(j.at("streams.0.channels.4.name"), "\"Ua\"");
    EXPECT_EQ(j.at("streams.0.channels.4.unit"), "\"V\"");
    EXPECT_NEAR(number("streams.0.channels.0.fundamental.angle"), -60, 0.05);
    EXPECT_NEAR(number("streams.0.channels.0.harmonics.7"), 4, 0.05);
    EXPECT_NEAR(number("streams.0.channels.0.thd"), 4, 0.05);
    // 4000 samples a second carry harmonics below the 40th of 50 Hz.
    EXPECT_EQ(j.at("streams.0.channels.0.harmonics"), "49");
    EXPECT_NE(j.at("streams.0.channels.0.harmonics.39"), "null");
    EXPECT_EQ(j.at("streams.0.channels.0.harmonics.40"), "null");
    EXPECT_NEAR(number("streams.0.sequence.voltage.positive.rms"), 10000 / std::sqrt(2.0), 4);
    EXPECT_NEAR(number("streams.0.power.total.pf"), 0.5 / std::sqrt(1 + 0.04 * 0.04), 1e-3);

    EXPECT_EQ(
        inspect({"--measure", "--from", "1700000000.4", "--to", "1700000000.2", capture}, out), 2);
    EXPECT_EQ(inspect({"--measure", "--from", "soon", capture}, out), 2);
}

} // namespace
