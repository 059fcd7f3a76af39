// Captures shaped as real devices and capture set-ups write them, each read
// back through the inspector's --json and --values (which read every frame
// again by its offset), in every container, plain and gzip-compressed.
#include "tests/support/Csv.h"
#include "tests/support/Json.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <tuple>

namespace {

using TavTest::FlatJson;
using Rows = TavTest::CsvRows;
using TavTest::parseCsv;

std::string quoted(const std::string& s) {
    return '"' + s + '"';
}

struct Variant {
    const char* name;
    std::vector<std::string> options;
    // JSON paths and the text each must have.
    std::vector<std::pair<std::string, std::string>> json;
    // The --values table of stream 0, when the capture has one: its header,
    // and the first data row's cells from the third on (after time and counter).
    std::vector<std::string> header{};
    std::vector<std::string> firstRowTail{};
};

const std::string kSv = "TavnaSV00";
const std::string kSvSrc = "02:00:00:00:01:00";

std::vector<Variant> variants() {
    const std::vector<std::string> tenMs{"--duration", "0.01"};
    auto with = [&](std::vector<std::string> o) {
        o.insert(o.end(), tenMs.begin(), tenMs.end());
        return o;
    };
    return {
        {"TwelveByteDataSetsOfDistinctSvIds",
         with({"--sv", "1", "--asdus", "8", "--seqdata-bytes", "12", "--distinct-svids"}),
         {{"files.0.sv_frames", "40"},
          {"files.0.malformed_frames", "0"},
          {"streams", "1"},
          {"streams.0.svID", quoted(kSv)},
          {"streams.0.values_per_asdu", "1"},
          {"streams.0.seqdata_bytes", "12"},
          {"streams.0.svIDs", "8"},
          {"streams.0.svIDs.0", quoted(kSv)},
          {"streams.0.svIDs.7", quoted(kSv + "/7")},
          {"streams.0.packets", "40"}},
         {"time", "sample_time", "smpCnt", "v0", "rest"},
         {"0", "e0e1e2e3"}},
        {"DataSetShorterThanOneEntry",
         with({"--sv", "1", "--seqdata-bytes", "5"}),
         {{"files.0.sv_frames", "40"},
          {"streams.0.values_per_asdu", "0"},
          {"streams.0.svIDs", "1"}},
         {"time", "sample_time", "smpCnt", "rest"},
         {"e0e1e2e3e4"}},
        {"WholeEntriesHaveNoRestColumn",
         with({"--sv", "1", "--seqdata-bytes", "16"}),
         {{"streams.0.values_per_asdu", "2"}, {"streams.0.seqdata_bytes", "16"}},
         {"time", "sample_time", "smpCnt", "v0", "v1"},
         {"0", "-86603"}}, // phase B at its first sample: -sin(120°) of 100 A, in mA
        {"EmptyIntegerMakesTheFrameMalformed",
         with({"--goose", "1", "--empty-integer"}),
         {{"files.0.frames", "3"}, {"files.0.malformed_frames", "3"}, {"streams", "0"}}},
        {"DeclaredEntriesDisagreeingAreNotMalformed",
         with({"--goose", "1", "--bools", "3", "--declared-entries", "9"}),
         {{"files.0.goose_frames", "3"},
          {"files.0.malformed_frames", "0"},
          {"streams.0.entries", "3"},
          {"streams.0.numDatSetEntries", "9"}},
         {"time", "stNum", "sqNum", "v0", "v1", "v2"},
         {"0", "0", "0", "0"}},
        {"VlanTagWithDropEligibleBit",
         with({"--sv", "1", "--goose", "1", "--vlan", "100", "--vlan-dei"}),
         {{"streams", "2"}, {"streams.0.vlan", "100"}, {"streams.1.vlan", "100"}},
         {"time", "stNum", "sqNum", "v0", "v1", "v2", "v3"},
         {"0", "0", "0", "0", "0"}},
        {"LinuxCookedBehindVlan",
         with({"--sv", "1", "--goose", "1", "--vlan", "7", "--link", "sll"}),
         {{"files.0.sv_frames", "40"},
          {"files.0.goose_frames", "3"},
          {"streams.0.dst", quoted("??:??:??:??:??:??")},
          {"streams.1.src", quoted(kSvSrc)},
          {"streams.1.dst", quoted("??:??:??:??:??:??")},
          {"streams.1.vlan", "7"}},
         {"time", "stNum", "sqNum", "v0", "v1", "v2", "v3"},
         {"0", "0", "0", "0", "0"}},
        {"LinuxCookedVersion2OfTwelveByteDataSets",
         with({"--sv", "2", "--link", "sll2", "--seqdata-bytes", "12"}),
         {{"files.0.sv_frames", "80"},
          {"files.0.other_frames", "0"},
          {"streams", "2"},
          {"streams.0.src", quoted(kSvSrc)},
          {"streams.0.dst", quoted("??:??:??:??:??:??")},
          {"streams.0.vlan", "null"},
          {"streams.0.values_per_asdu", "1"}},
         {"time", "sample_time", "smpCnt", "v0", "rest"},
         {"0", "e0e1e2e3"}},
    };
}

void PrintTo(const Variant& v, std::ostream* os) {
    *os << v.name;
}

using Param = std::tuple<Variant, std::string, bool>; // variant, container, gzip

class CaptureVariants : public ::testing::TestWithParam<Param> {
protected:
    // Inflated copies go to a cache folder of the test's own.
    static void SetUpTestSuite() {
        ::setenv("XDG_CACHE_HOME", (TavTest::tempDir() + "/cache").c_str(), 1);
    }
    static std::string cacheFolder() { return TavTest::tempDir() + "/cache/tavna"; }

    std::string write() {
        const auto& [v, format, gzip] = GetParam();
        const std::string path = TavTest::tempDir() + "/" + v.name + "-" + format +
                                 (gzip ? ".gz" : "") + "." + format + (gzip ? ".gz" : "");
        std::vector<std::string> args{path, "--format", format};
        args.insert(args.end(), v.options.begin(), v.options.end());
        if (gzip)
            args.push_back("--gzip");
        TavTest::runGenerator(args);
        return path;
    }
    static std::string inspect(const std::vector<std::string>& args) {
        std::vector<std::string> argv{TavTest::toolPath("TAVNA_INSPECT")};
        argv.insert(argv.end(), args.begin(), args.end());
        std::string out, err;
        EXPECT_EQ(TavTest::runCommand(argv, out, &err), 0) << err;
        return out;
    }
};

TEST_P(CaptureVariants, JsonAndValuesReadBackExactly) {
    const Variant& v = std::get<0>(GetParam());
    const std::string path = write();
    const FlatJson j = TavTest::parseJson(inspect({"--json", path}));
    for (const auto& [key, expected] : v.json) {
        ASSERT_TRUE(j.count(key)) << key;
        EXPECT_EQ(j.at(key), expected) << key;
    }
    if (v.header.empty())
        return;
    const Rows rows = parseCsv(inspect({"--values", "0", path}));
    ASSERT_GE(rows.size(), 2u);
    EXPECT_EQ(rows[0], v.header);
    ASSERT_EQ(rows[1].size(), v.header.size());
    // SV rows lead with the arrival, the sampling instant and smpCnt.
    const std::ptrdiff_t lead = v.header[1] == "sample_time" ? 3 : 2;
    EXPECT_EQ(std::vector<std::string>(rows[1].begin() + lead, rows[1].end()), v.firstRowTail);
}

TEST_P(CaptureVariants, InspectorKeepsNoInflatedCopy) {
    const std::string path = write();
    const FlatJson j = TavTest::parseJson(inspect({"--json", path}));
    EXPECT_EQ(j.at("files.0.gzip"), std::get<2>(GetParam()) ? "true" : "false");
    std::error_code ec;
    EXPECT_TRUE(!std::filesystem::exists(cacheFolder(), ec) ||
                std::filesystem::is_empty(cacheFolder(), ec));
}

std::string nameOf(const ::testing::TestParamInfo<Param>& info) {
    const auto& [v, format, gzip] = info.param;
    return std::string(v.name) + "_" + format + (gzip ? "_gzip" : "");
}

INSTANTIATE_TEST_SUITE_P(Containers, CaptureVariants,
                         ::testing::Combine(::testing::ValuesIn(variants()),
                                            ::testing::Values("pcap", "pcapng"), ::testing::Bool()),
                         nameOf);

} // namespace
