// The command lines of the capture writer and the inspector: exit codes,
// messages, the inspector's output on generated captures, and the demo.
#include "platform/parser/GooseParser.h"
#include "platform/parser/PcapParser.h"
#include "platform/parser/SvParser.h"
#include "tests/support/Json.h"
#include "tests/support/TestCaptures.h"
#include "tests/tools/ToolRunner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

using namespace TavIec61850Parser;
using TavTest::Json;

struct ExitCase {
    const char* name;
    const char* tool;
    std::vector<std::string> args;
    int exitCode;
    std::string stderrMentions;
};

std::ostream& operator<<(std::ostream& os, const ExitCase& c) {
    return os << c.name;
}

std::string notACapture() {
    const std::string path = TavTest::tempDir() + "/notes.pcap";
    std::ofstream(path) << "these are notes, not packets\n";
    return path;
}

std::string smallCapture() {
    const std::string path = TavTest::tempDir() + "/small.pcap";
    if (!std::filesystem::exists(path))
        TavTest::runGenerator({path, "--sv", "1", "--duration", "0.01"});
    return path;
}

class ToolExitCodes : public ::testing::TestWithParam<ExitCase> {};

TEST_P(ToolExitCodes, ExitWithTheDocumentedCode) {
    const ExitCase& c = GetParam();
    const auto r = TavTest::runTool(c.tool, c.args);
    EXPECT_EQ(r.exitCode, c.exitCode) << r.err;
    if (c.exitCode != 0) {
        EXPECT_NE(r.err.find(c.stderrMentions), std::string::npos) << r.err;
    }
    if (c.exitCode == 1 && std::string(c.tool) == "TAVNA_INSPECT") {
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << "one line: " << r.err;
    }
}

std::vector<ExitCase> exitCases() {
    const std::string missing = TavTest::tempDir() + "/missing.pcap";
    const std::string unwritable = TavTest::tempDir() + "/no/such/dir/out.pcap";
    return {
        {"gen_without_output", "TAVNA_GEN", {}, 2, "usage"},
        {"gen_unknown_option", "TAVNA_GEN", {"x.pcap", "--colour", "red"}, 2, "--colour"},
        {"gen_bad_rate", "TAVNA_GEN", {"x.pcap", "--rate", "1000"}, 2, "--rate"},
        {"gen_too_many_asdus", "TAVNA_GEN", {"x.pcap", "--asdus", "9"}, 2, "--asdus"},
        {"gen_bad_line", "TAVNA_GEN", {"x.pcap", "--hsr", "C"}, 2, "--hsr"},
        {"gen_bad_time", "TAVNA_GEN", {"x.pcap", "--start", "-5"}, 2, "--start"},
        {"gen_missing_value", "TAVNA_GEN", {"x.pcap", "--sv"}, 2, "--sv"},
        {"gen_unwritable", "TAVNA_GEN", {unwritable, "--sv", "1"}, 1, unwritable},
        {"gen_help", "TAVNA_GEN", {"--help"}, 0, ""},
        {"inspect_without_files", "TAVNA_INSPECT", {}, 2, "usage"},
        {"inspect_unknown_option", "TAVNA_INSPECT", {"--fast", smallCapture()}, 2, "usage"},
        {"inspect_values_not_a_number",
         "TAVNA_INSPECT",
         {"--values", "x", smallCapture()},
         2,
         "usage"},
        {"inspect_values_no_such_stream",
         "TAVNA_INSPECT",
         {"--values", "1", smallCapture()},
         2,
         "no stream 1"},
        {"inspect_missing_file", "TAVNA_INSPECT", {smallCapture(), missing}, 1, missing},
        {"inspect_not_a_capture", "TAVNA_INSPECT", {notACapture()}, 1, notACapture()},
        {"inspect_ok", "TAVNA_INSPECT", {smallCapture()}, 0, ""},
    };
}

INSTANTIATE_TEST_SUITE_P(CommandLines, ToolExitCodes, ::testing::ValuesIn(exitCases()),
                         [](const auto& info) { return std::string(info.param.name); });

// Two files, nanosecond times, both kinds: the JSON lists each file with its
// format, sorts GOOSE before SV, and shows the nanoseconds.
TEST(InspectGenerated, JsonOverTwoFilesShowsNanosecondsAndSortsStreams) {
    const std::string a = TavTest::tempDir() + "/two-a.pcapng";
    const std::string b = TavTest::tempDir() + "/two-b.pcap";
    TavTest::runGenerator({a, "--format", "pcapng-ns", "--start", "1700000000.000000001", "--sv",
                           "2", "--goose", "1", "--duration", "0.1"});
    TavTest::runGenerator(
        {b, "--start", "1700000000.1", "--sv", "1", "--duration", "0.1", "--other", "5"});
    const auto r = TavTest::runTool("TAVNA_INSPECT", {"--json", a, b});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const Json j = Json::parse(r.out);
    ASSERT_EQ(j["files"].size(), 2u);
    EXPECT_EQ(j["files"][0]["path"].string(), a);
    EXPECT_EQ(j["files"][0]["format"].string(), "pcapng");
    EXPECT_EQ(j["files"][1]["other_frames"].number(), 5);
    EXPECT_EQ(j["files"][1]["sv_frames"].number(), 400);

    const Json& s = j["streams"];
    ASSERT_EQ(s.size(), 3u);
    EXPECT_EQ(s[0]["kind"].string(), "GOOSE");
    EXPECT_EQ(s[0]["first"].numberText(), "1700000000.000000001");
    EXPECT_EQ(s[1]["svID"].string(), "TavnaSV00");
    EXPECT_EQ(s[1]["packets"].number(), 800); // the stream spans both files
    EXPECT_EQ(s[1]["first"].numberText(), "1700000000.000000001");
    EXPECT_EQ(s[1]["last"].numberText(), "1700000000.199750000");
    EXPECT_EQ(s[2]["svID"].string(), "TavnaSV01");
    EXPECT_EQ(s[2]["last"].numberText(), "1700000000.099750001");
}

TEST(InspectGenerated, ValuesOfAStreamSpanningFilesAreInTimeOrder) {
    const std::string later = TavTest::tempDir() + "/later.pcap";
    const std::string earlier = TavTest::tempDir() + "/earlier.pcap";
    TavTest::runGenerator(
        {later, "--start", "1700000001", "--sv", "1", "--duration", "0.001", "--asdus", "2"});
    TavTest::runGenerator({earlier, "--sv", "1", "--duration", "0.001", "--asdus", "2"});
    const auto r = TavTest::runTool("TAVNA_INSPECT", {"--values", "0", later, earlier});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto rows = TavTest::parseCsv(r.out);
    ASSERT_EQ(rows.size(), 1u + 2 * 4);
    EXPECT_EQ(rows[0][0], "time");
    EXPECT_EQ(rows[0].size(), 2u + 8);
    const std::vector<std::string> times{
        "1700000000.000000", "1700000000.000000", "1700000000.000500", "1700000000.000500",
        "1700000001.000000", "1700000001.000000", "1700000001.000500", "1700000001.000500"};
    for (std::size_t i = 0; i < times.size(); ++i) {
        EXPECT_EQ(rows[1 + i][0], times[i]);
        EXPECT_EQ(rows[1 + i][1], std::to_string(i % 4)); // smpCnt restarts in each file
    }
}

// The bundled demo: a phase-A fault in bay 1 at 0.5 s, the trip 20 ms later and
// the breaker opening 60 ms after that, in pcap and pcapng alike.
class Demo : public ::testing::TestWithParam<std::string> {
protected:
    static void SetUpTestSuite() {
        const auto r = TavTest::runTool("TAVNA_GEN", {"--demo", dir()});
        ASSERT_EQ(r.exitCode, 0) << r.err;
    }
    static std::string dir() { return TavTest::tempDir() + "/demo"; }
};

double peakOfPhaseA(const std::string& path, const Sv& sv, double from, double to) {
    double peak = 0;
    const auto& packages = sv.files.begin()->packages;
    const double start = packages.front().time.toSeconds();
    for (const auto& p : packages) {
        const double t = p.time.toSeconds() - start;
        if (t < from || t >= to)
            continue;
        for (const auto& asdu : SvParser::parseASDUFromFile(path, p.offset))
            peak = std::max(peak, std::abs(static_cast<double>(asdu.values.at(0).value)));
    }
    return peak;
}

double firstChangeAfterStart(const std::string& path, const Goose& g, double start) {
    for (const auto& p : g.files.begin()->packages) {
        if (GooseParser::parseGoosePDUFromFile(path, p.offset).stNum == "2")
            return p.time.toSeconds() - start;
    }
    return -1;
}

TEST_P(Demo, TellsTheFaultStory) {
    const std::string path = dir() + "/demo_substation." + GetParam();
    Db db;
    FileStats stats;
    const std::atomic<bool> cancel{false};
    PcapParser::parseFile(
        path, db, Filter{}, cancel, [](double) {}, stats);
    EXPECT_EQ(stats.malformedFrames, 0u);
    ASSERT_EQ(db.svProto.getSvCount(), 2u);
    ASSERT_EQ(db.gooseProto.getGooseCount(), 2u);
    const Sv* bay1 = nullptr;
    const Sv* bay2 = nullptr;
    for (const auto& s : db.svProto.svs)
        (s.svId.starts_with("Bay1") ? bay1 : bay2) = &s;
    ASSERT_TRUE(bay1 && bay2);
    const double start = bay1->files.begin()->packages.front().time.toSeconds();
    EXPECT_EQ(bay1->packageCount(), 4000u);
    EXPECT_NEAR(bay1->files.begin()->packages.back().time.toSeconds() - start, 0.99975, 1e-6);

    const double before = peakOfPhaseA(path, *bay1, 0.40, 0.50);
    const double during = peakOfPhaseA(path, *bay1, 0.51, 0.58);
    EXPECT_NEAR(during / before, 10.0, 0.1);
    EXPECT_EQ(peakOfPhaseA(path, *bay1, 0.59, 1.0), 0) << "no current once the breaker opened";
    EXPECT_NEAR(peakOfPhaseA(path, *bay2, 0.51, 0.58) / peakOfPhaseA(path, *bay2, 0.40, 0.50), 1.0,
                0.01);

    std::vector<double> changes;
    for (const auto& g : db.gooseProto.gooses)
        changes.push_back(firstChangeAfterStart(path, g, start));
    std::sort(changes.begin(), changes.end());
    EXPECT_NEAR(changes[0], 0.520, 1e-6) << "trip";
    EXPECT_NEAR(changes[1], 0.580, 1e-6) << "breaker position";
}

INSTANTIATE_TEST_SUITE_P(BothContainers, Demo, ::testing::Values("pcap", "pcapng"));

} // namespace
