// The command lines of the capture writer and the inspector: exit codes,
// messages, the inspector's output on generated and on real captures, and the
// demo.
#include "platform/parser/GooseParser.h"
#include "platform/parser/PcapParser.h"
#include "platform/parser/SvParser.h"
#include "tests/support/Csv.h"
#include "tests/support/Json.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using namespace TavIec61850Parser;
using TavTest::FlatJson;

struct ToolResult {
    int exitCode = -1;
    std::string out, err;
};

// Runs a tool built beside the tests (TAVNA_GEN, TAVNA_INSPECT).
ToolResult runTool(const char* envName, std::vector<std::string> args) {
    args.insert(args.begin(), TavTest::toolPath(envName));
    ToolResult r;
    r.exitCode = TavTest::runCommand(args, r.out, &r.err);
    return r;
}

using TavTest::parseCsv;

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

// gzip's magic and method, then bytes that inflate to nothing.
std::string brokenGzip() {
    const std::string path = TavTest::tempDir() + "/broken.pcap.gz";
    std::ofstream(path, std::ios::binary) << "\x1f\x8b\x08\x00garbage that is not deflate";
    return path;
}

std::string smallCapture() {
    return TavTest::generated("small", {"--sv", "1", "--duration", "0.01"});
}

// A capture cut in the middle of its last frame.
std::string truncatedCapture() {
    const std::string whole = TavTest::generated("whole", {"--sv", "2", "--duration", "0.1"});
    const std::string cut = TavTest::tempDir() + "/cut.pcap";
    std::filesystem::copy_file(whole, cut, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::resize_file(cut, std::filesystem::file_size(whole) - 10);
    return cut;
}

class ToolExitCodes : public ::testing::TestWithParam<ExitCase> {};

TEST_P(ToolExitCodes, ExitWithTheDocumentedCode) {
    const ExitCase& c = GetParam();
    const auto r = runTool(c.tool, c.args);
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
    const std::string small = smallCapture(), notes = notACapture(), cut = truncatedCapture();
    return {
        {"gen_without_output", "TAVNA_GEN", {}, 2, "usage"},
        {"gen_unknown_option", "TAVNA_GEN", {"x.pcap", "--colour", "red"}, 2, "--colour"},
        {"gen_bad_rate", "TAVNA_GEN", {"x.pcap", "--rate", "1000"}, 2, "--rate"},
        {"gen_too_many_asdus", "TAVNA_GEN", {"x.pcap", "--asdus", "9"}, 2, "--asdus"},
        {"gen_bad_line", "TAVNA_GEN", {"x.pcap", "--hsr", "C"}, 2, "--hsr"},
        {"gen_bad_time", "TAVNA_GEN", {"x.pcap", "--start", "-5"}, 2, "--start"},
        {"gen_missing_value", "TAVNA_GEN", {"x.pcap", "--sv"}, 2, "--sv"},
        {"gen_unwritable", "TAVNA_GEN", {unwritable, "--sv", "1"}, 1, unwritable},
        {"gen_bad_link", "TAVNA_GEN", {"x.pcap", "--link", "ppp"}, 2, "--link"},
        {"gen_seqdata_too_long",
         "TAVNA_GEN",
         {"x.pcap", "--seqdata-bytes", "2000"},
         2,
         "--seqdata-bytes"},
        {"gen_help", "TAVNA_GEN", {"--help"}, 0, ""},
        {"inspect_without_files", "TAVNA_INSPECT", {}, 2, "usage"},
        {"inspect_unknown_option", "TAVNA_INSPECT", {"--fast", small}, 2, "usage"},
        {"inspect_values_not_a_number", "TAVNA_INSPECT", {"--values", "x", small}, 2, "usage"},
        {"inspect_values_no_such_stream",
         "TAVNA_INSPECT",
         {"--values", "1", small},
         2,
         "no stream 1"},
        {"inspect_missing_file", "TAVNA_INSPECT", {small, missing}, 1, missing},
        {"inspect_not_a_capture", "TAVNA_INSPECT", {notes}, 1, notes},
        {"inspect_broken_gzip", "TAVNA_INSPECT", {brokenGzip()}, 1, "compressed data"},
        {"inspect_ok", "TAVNA_INSPECT", {small}, 0, ""},
        {"inspect_help", "TAVNA_INSPECT", {"--help"}, 0, ""},
        {"inspect_read_in_part", "TAVNA_INSPECT", {small, cut}, 3, cut + ": truncated"},
        {"gen_bad_scl_mismatch",
         "TAVNA_GEN",
         {"x.pcap", "--scl", "x.scd", "--scl-mismatch", "colour"},
         2,
         "confRev"},
        {"gen_scl_mismatch_alone", "TAVNA_GEN", {"x.pcap", "--scl-mismatch", "appid"}, 2, "--scl"},
        {"inspect_scl_not_scl", "TAVNA_INSPECT", {"--scl", notes, small}, 1, notes + ":1: "},
        {"inspect_scl_with_check", "TAVNA_INSPECT", {"--check", "--scl", notes, small}, 2, "usage"},
    };
}

INSTANTIATE_TEST_SUITE_P(CommandLines, ToolExitCodes, ::testing::ValuesIn(exitCases()),
                         [](const auto& info) { return std::string(info.param.name); });

// What was read of a file that breaks off is reported before the warning.
TEST(InspectGenerated, AFileReadInPartIsReportedThenWarned) {
    const auto r = runTool("TAVNA_INSPECT", {"--json", truncatedCapture()});
    EXPECT_EQ(r.exitCode, 3);
    const FlatJson j = TavTest::parseJson(r.out);
    EXPECT_EQ(j.at("streams"), "2");
    // 800 frames written, the last one cut.
    EXPECT_EQ(std::stoi(j.at("streams.0.packets")) + std::stoi(j.at("streams.1.packets")), 799);
    EXPECT_NE(r.err.find("warning: read in part"), std::string::npos) << r.err;
}

// Two files, nanosecond times, both kinds: the JSON lists each file with its
// format, sorts GOOSE before SV, and shows the nanoseconds.
TEST(InspectGenerated, JsonOverTwoFilesShowsNanosecondsAndSortsStreams) {
    const std::string a = TavTest::tempDir() + "/two-a.pcapng";
    const std::string b = TavTest::tempDir() + "/two-b.pcap";
    TavTest::runGenerator({a, "--format", "pcapng-ns", "--start", "1700000000.000000001", "--sv",
                           "2", "--goose", "1", "--duration", "0.1"});
    TavTest::runGenerator(
        {b, "--start", "1700000000.1", "--sv", "1", "--duration", "0.1", "--other", "5"});
    const auto r = runTool("TAVNA_INSPECT", {"--json", a, b});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const FlatJson j = TavTest::parseJson(r.out);
    EXPECT_EQ(j.at("files"), "2");
    EXPECT_EQ(j.at("files.0.path"), '"' + a + '"');
    EXPECT_EQ(j.at("files.0.format"), R"("pcapng")");
    EXPECT_EQ(j.at("files.1.other_frames"), "5");
    EXPECT_EQ(j.at("files.1.sv_frames"), "400");

    ASSERT_EQ(j.at("streams"), "3");
    EXPECT_EQ(j.at("streams.0.kind"), R"("GOOSE")");
    EXPECT_EQ(j.at("streams.0.first"), "1700000000.000000001");
    EXPECT_EQ(j.at("streams.1.svID"), R"("TavnaSV00")");
    EXPECT_EQ(j.at("streams.1.packets"), "800"); // the stream spans both files
    EXPECT_EQ(j.at("streams.1.first"), "1700000000.000000001");
    EXPECT_EQ(j.at("streams.1.last"), "1700000000.199750000");
    EXPECT_EQ(j.at("streams.2.svID"), R"("TavnaSV01")");
    EXPECT_EQ(j.at("streams.2.last"), "1700000000.099750001");
}

TEST(InspectGenerated, ValuesOfAStreamSpanningFilesAreInTimeOrder) {
    const std::string later = TavTest::tempDir() + "/later.pcap";
    const std::string earlier = TavTest::tempDir() + "/earlier.pcap";
    TavTest::runGenerator(
        {later, "--start", "1700000001", "--sv", "1", "--duration", "0.001", "--asdus", "2"});
    TavTest::runGenerator({earlier, "--sv", "1", "--duration", "0.001", "--asdus", "2"});
    const auto r = runTool("TAVNA_INSPECT", {"--values", "0", later, earlier});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto rows = parseCsv(r.out);
    ASSERT_EQ(rows.size(), 1u + 2 * 4);
    EXPECT_EQ(rows[0][0], "time");
    EXPECT_EQ(rows[0][1], "sample_time");
    EXPECT_EQ(rows[0].size(), 3u + 8);
    const std::vector<std::string> times{
        "1700000000.000000", "1700000000.000000", "1700000000.000500", "1700000000.000500",
        "1700000001.000000", "1700000001.000000", "1700000001.000500", "1700000001.000500"};
    // Two ASDUs a frame: the frame leaves with its second sample, the first
    // was taken a sample interval before.
    const std::vector<std::string> sampled{"1699999999.999750000", "1700000000.000000000",
                                           "1700000000.000250000", "1700000000.000500000",
                                           "1700000000.999750000", "1700000001.000000000",
                                           "1700000001.000250000", "1700000001.000500000"};
    for (std::size_t i = 0; i < times.size(); ++i) {
        EXPECT_EQ(rows[1 + i][0], times[i]);
        EXPECT_EQ(rows[1 + i][1], sampled[i]);
        EXPECT_EQ(rows[1 + i][2], std::to_string(i % 4)); // smpCnt restarts in each file
    }
}

// The bundled demo: a phase-A fault in bay 1 at 0.5 s, the trip 20 ms later and
// the breaker opening 60 ms after that, in pcap and pcapng alike.
class Demo : public ::testing::TestWithParam<std::string> {
protected:
    static void SetUpTestSuite() {
        const auto r = runTool("TAVNA_GEN", {"--demo", dir()});
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

// The inspector over every real capture of the shared test data, against the
// expected summaries of an independent dissector. How the parser reads these
// captures is checked in the parser's tests; this checks what the inspector
// writes of it.
constexpr double kTimeTolerance = 5e-7; // half a microsecond

std::vector<std::string> captureNames() {
    std::vector<std::string> names;
    const std::string suffix = ".expected.json";
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator(TavTest::sharedCapture(""), ec)) {
        const std::string file = entry.path().filename().string();
        if (file.size() <= suffix.size() || !file.ends_with(suffix))
            continue;
        // A summary is named after its capture, with or without the capture's extension.
        std::string capture = file.substr(0, file.size() - suffix.size());
        if (!std::filesystem::exists(TavTest::sharedCapture(capture)))
            capture += ".pcap";
        names.push_back(capture);
    }
    std::sort(names.begin(), names.end());
    return names;
}

class InspectCaptures : public ::testing::TestWithParam<std::string> {};

TEST_P(InspectCaptures, JsonAndValuesMatchTheExpectedSummary) {
    const std::string path = TavTest::sharedCapture(GetParam());
    std::string summary = TavTest::sharedCapture(GetParam() + ".expected.json");
    if (!std::filesystem::exists(summary))
        summary = TavTest::sharedCapture(std::filesystem::path(GetParam()).stem().string() +
                                         ".expected.json");
    const FlatJson want = TavTest::parseJson(TavTest::readFile(summary));
    const auto r = runTool("TAVNA_INSPECT", {"--json", path});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const FlatJson got = TavTest::parseJson(r.out);
    auto number = [](const FlatJson& j, const std::string& key) { return std::stod(j.at(key)); };

    // Formats, counts and times are checked on generated captures above; here
    // what the inspector makes of real streams, field by field.
    EXPECT_EQ(got.at("files.0.malformed_frames"), want.at("malformed_frames"));
    ASSERT_EQ(got.at("streams"), want.at("streams"));
    for (int i = 0; i < std::stoi(want.at("streams")); ++i) {
        SCOPED_TRACE("stream " + std::to_string(i));
        const std::string stream = "streams." + std::to_string(i) + ".";
        for (auto it = want.lower_bound(stream); it != want.end() && it->first.starts_with(stream);
             ++it) {
            const std::string& key = it->first;
            if (key.find('.', stream.size()) != std::string::npos ||
                key == stream + "first_samples")
                continue;
            ASSERT_EQ(got.count(key), 1u) << key;
            if (std::isdigit(static_cast<unsigned char>(it->second.back())))
                EXPECT_NEAR(number(got, key), number(want, key), kTimeTolerance) << key;
            else
                EXPECT_EQ(got.at(key), it->second) << key;
        }

        const auto v = runTool("TAVNA_INSPECT", {"--values", std::to_string(i), path});
        ASSERT_EQ(v.exitCode, 0) << v.err;
        const auto rows = parseCsv(v.out);
        ASSERT_FALSE(rows.empty());
        const bool sv = want.at(stream + "kind") == R"("SV")";
        // SV rows carry the sampling instant after the arrival.
        const std::size_t first = sv ? 2 : 1;
        EXPECT_EQ(rows[0][first], sv ? "smpCnt" : "stNum");
        const double asdus = sv ? number(want, stream + "asdus_per_frame") : 1;
        EXPECT_EQ(static_cast<double>(rows.size() - 1), number(want, stream + "packets") * asdus);
        const std::string samples = stream + "first_samples";
        for (int k = 0; want.count(samples) != 0 && k < std::stoi(want.at(samples)); ++k) {
            const std::string sample = samples + "." + std::to_string(k) + ".";
            const auto& row = rows.at(k + 1);
            EXPECT_NEAR(std::stod(row[0]), number(want, sample + "time"), kTimeTolerance);
            if (sv) { // never after the frame's arrival
                EXPECT_LE(std::stod(row[1]), std::stod(row[0]) + 1e-9);
            }
            EXPECT_EQ(std::stod(row[first]), number(want, sample + "smpCnt"));
            ASSERT_EQ(std::to_string(row.size() - first - 1), want.at(sample + "values"));
            for (std::size_t c = first + 1; c < row.size(); ++c)
                EXPECT_EQ(std::stod(row[c]),
                          number(want, sample + "values." + std::to_string(c - first - 1)))
                    << "sample " << k << " value " << c - first - 1;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(SharedCaptures, InspectCaptures, ::testing::ValuesIn(captureNames()),
                         [](const auto& info) {
                             std::string name = info.param;
                             std::replace_if(
                                 name.begin(), name.end(), [](char c) { return !std::isalnum(c); },
                                 '_');
                             return name;
                         });

} // namespace
