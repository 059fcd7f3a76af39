// Records exported from generated captures and read back by the test's own
// reader hold every sample, time and GOOSE state the capture holds.
#include "comtrade/ChannelChoices.h"
#include "comtrade/ComtradeExporter.h"
#include "tests/comtrade/CaptureTruth.h"
#include "tests/comtrade/RecordReader.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace {

using namespace TavComtrade;
using TavTest::Record;

std::string mixedCapture() {
    return TavTest::generated("ct_mixed", {"--sv", "2", "--asdus", "2", "--duration", "0.05",
                                           "--goose", "1", "--bools", "2", "--bitstrings", "1",
                                           "--change", "0.02", "--change", "0.03"});
}

struct Encoding {
    Revision revision;
    DataFormat format;
    const char* revisionText;
    const char* fileType;
};

std::ostream& operator<<(std::ostream& os, const Encoding& e) {
    return os << e.revisionText << '_' << e.fileType;
}

// The value the oscillograph shows, against the one read back: at most half
// a step of the stored integers apart.
void expectValue(const Record& r, const TavTest::RecordRow& row, std::size_t c, std::int32_t raw) {
    ASSERT_TRUE(row.analog[c].has_value()) << "row " << row.number << " channel " << c;
    const float ratio = c % 8 < 4 ? 0.001f : 0.01f;
    const double shown = static_cast<double>(static_cast<float>(raw) * ratio);
    EXPECT_NEAR(r.value(row, c), shown, r.analog[c].a / 2 + 1e-6 * std::abs(shown))
        << "row " << row.number << " channel " << c;
}

class RoundTrip : public ::testing::TestWithParam<Encoding> {};

TEST_P(RoundTrip, GivesBackEverySampleTimeAndState) {
    const std::string capturePath = mixedCapture();
    const auto capture = TavTest::loadCapture({capturePath});
    const auto& sv0 = capture->sv("TavnaSV00");
    const auto& sv1 = capture->sv("TavnaSV01");
    const auto& goose = capture->goose("TavnaGOOSE00");

    ExportRequest request;
    request.analog = allChannels(sv0);
    const auto second = allChannels(sv1);
    request.analog.insert(request.analog.end(), second.begin(), second.end());
    request.digital = booleanChannels(goose);
    request.revision = GetParam().revision;
    request.format = GetParam().format;
    request.stationName = stationNameOf({capturePath});
    request.deviceId = deviceIdOf(request);
    const std::string base =
        TavTest::tempDir() + "/round_" + GetParam().fileType + GetParam().revisionText;
    const auto result = ComtradeExporter::write(base, request);
    EXPECT_EQ(result.alignment, Alignment::SampleCounter);

    const Record r = TavTest::readRecord(base);
    EXPECT_EQ(r.station, "ct_mixed");
    EXPECT_EQ(r.device, "TavnaSV00+TavnaSV01+TavnaGOOSE00");
    EXPECT_EQ(r.revision, GetParam().revisionText);
    EXPECT_EQ(r.fileType, GetParam().fileType);
    ASSERT_EQ(r.analog.size(), 16u);
    EXPECT_EQ(r.analog[0].id, "Ia | TavnaSV00");
    EXPECT_EQ(r.analog[9].id, "Ib | TavnaSV01");
    EXPECT_EQ(r.analog[2].phase + r.analog[3].phase + r.analog[3].unit + r.analog[6].unit, "CNAV");
    EXPECT_EQ(r.analog[0].primarySecondary, "P");
    EXPECT_EQ(r.digitalIds, (std::vector<std::string>{"1 | TavnaGOOSE00", "3 | TavnaGOOSE00"}));

    const auto truth0 = TavTest::trueSamples(sv0, 4000);
    const auto truth1 = TavTest::trueSamples(sv1, 4000);
    const auto states = TavTest::trueStates(goose);
    ASSERT_EQ(r.rows.size(), truth0.size());
    EXPECT_EQ(r.rates, 1);
    EXPECT_EQ(r.sampleRate, 4000);
    EXPECT_EQ(r.endSample, truth0.size());
    // With two ASDUs a frame the first sample comes an interval before the first frame.
    EXPECT_EQ(r.start, "14/11/2023,22:13:19.999750");
    EXPECT_EQ(r.trigger, r.start);

    std::map<std::uint16_t, const TavTest::TrueSample*> bySmpCnt;
    for (const auto& s : truth1)
        bySmpCnt[s.smpCnt] = &s;
    for (std::size_t i = 0; i < r.rows.size(); ++i) {
        const auto& row = r.rows[i];
        EXPECT_EQ(row.number, i + 1);
        EXPECT_NEAR(r.micros(row), (truth0[i].ns - truth0[0].ns) / 1000.0, 0.5) << i;
        for (std::size_t c = 0; c < 8; ++c)
            expectValue(r, row, c, truth0[i].values[c]);
        const auto* other = bySmpCnt.at(truth0[i].smpCnt);
        for (std::size_t c = 0; c < 8; ++c)
            expectValue(r, row, 8 + c, other->values[c]);
        const auto* state = TavTest::stateAt(states, truth0[i].ns);
        const std::vector<int> expected{state ? static_cast<int>(state->values[0]) : 0,
                                        state ? static_cast<int>(state->values[2]) : 0};
        EXPECT_EQ(row.digital, expected) << "row " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Encodings, RoundTrip,
    ::testing::Values(Encoding{Revision::Rev1999, DataFormat::Binary, "1999", "BINARY"},
                      Encoding{Revision::Rev1999, DataFormat::Ascii, "1999", "ASCII"},
                      Encoding{Revision::Rev2013, DataFormat::Binary, "2013", "BINARY32"},
                      Encoding{Revision::Rev2013, DataFormat::Ascii, "2013", "ASCII"}),
    [](const auto& info) {
        return std::string(info.param.revisionText) + "_" + info.param.fileType;
    });

struct Inspect {
    int code = -1;
    std::string out, err;
};

Inspect inspect(std::vector<std::string> args) {
    args.insert(args.begin(), TavTest::toolPath("TAVNA_INSPECT"));
    Inspect r;
    r.code = TavTest::runCommand(args, r.out, &r.err);
    return r;
}

// GOOSE alone: a row at each frame, and one at the window's start holding the
// state in force there.
TEST(ComtradeCommand, GooseOnlyRowsFollowTheFramesFromTheWindowStart) {
    const std::string path = mixedCapture();
    const std::string base = TavTest::tempDir() + "/goose_only";
    const auto run = inspect({"--comtrade", base, "--streams", "0", "--from", "1700000000.025",
                              "--trigger", "1700000000.03", path});
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_NE(run.out.find("aligned GOOSE frames"), std::string::npos) << run.out;

    const auto capture = TavTest::loadCapture({path});
    const auto states = TavTest::trueStates(capture->goose("TavnaGOOSE00"));
    const std::int64_t from = 1'700'000'000'025'000'000;
    std::vector<std::int64_t> times{from};
    for (const auto& s : states)
        if (s.ns >= from)
            times.push_back(s.ns);

    const Record r = TavTest::readRecord(base);
    EXPECT_EQ(r.rates, 0);
    EXPECT_EQ(r.endSample, times.size());
    EXPECT_EQ(r.start, "14/11/2023,22:13:20.025000");
    EXPECT_EQ(r.trigger, "14/11/2023,22:13:20.030000");
    ASSERT_EQ(r.rows.size(), times.size());
    for (std::size_t i = 0; i < times.size(); ++i) {
        EXPECT_NEAR(r.micros(r.rows[i]), (times[i] - from) / 1000.0, 0.5);
        const auto* state = TavTest::stateAt(states, times[i]);
        ASSERT_NE(state, nullptr);
        EXPECT_EQ(r.rows[i].digital, (std::vector<int>{static_cast<int>(state->values[0]),
                                                       static_cast<int>(state->values[2])}));
    }
}

struct AlignmentCase {
    const char* name;
    std::vector<std::string> generator;
    std::string streams;
    std::string said;
};

class Alignments : public ::testing::TestWithParam<AlignmentCase> {};

TEST_P(Alignments, AreChosenAndSaid) {
    const auto& c = GetParam();
    const std::string path = TavTest::generated(c.name, c.generator);
    const std::string base = TavTest::tempDir() + "/" + c.name;
    const auto run = inspect({"--comtrade", base, "--streams", c.streams, path});
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_NE(run.out.find("aligned " + c.said), std::string::npos) << run.out;
    // The streams start together, so every row has a sample of each.
    for (const auto& row : TavTest::readRecord(base).rows)
        for (const auto& v : row.analog)
            ASSERT_TRUE(v.has_value()) << "row " << row.number;
}

INSTANTIATE_TEST_SUITE_P(
    Streams, Alignments,
    ::testing::Values(
        AlignmentCase{"synchronised", {"--sv", "2", "--duration", "0.02"}, "0,1", "by smpCnt"},
        AlignmentCase{"unsynchronised",
                      {"--sv", "2", "--duration", "0.02", "--unsynchronised"},
                      "1,0",
                      "by nearest time"},
        AlignmentCase{"single", {"--sv", "2", "--duration", "0.02"}, "1", "one SV stream"}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace

namespace {

// A sample that both LANs of a redundant network delivered is one row.
TEST(ComtradeCommand, ARedundantCopyMakesNoRowOfItsOwn) {
    const auto lanA =
        TavTest::generated("lan_a", {"--sv", "1", "--duration", "0.01", "--prp", "A"});
    const auto lanB =
        TavTest::generated("lan_b", {"--sv", "1", "--duration", "0.01", "--prp", "B"});
    const std::string both = TavTest::tempDir() + "/both_lans";
    const std::string one = TavTest::tempDir() + "/one_lan";
    ASSERT_EQ(inspect({"--comtrade", both, lanA, lanB}).code, 0);
    ASSERT_EQ(inspect({"--comtrade", one, lanA}).code, 0);
    EXPECT_EQ(TavTest::readRecord(both).rows.size(), 40u);
    EXPECT_EQ(TavTest::readFile(both + ".dat"), TavTest::readFile(one + ".dat"));
}

// A frame that also carries other publishers' data sets (their values two to
// eight times the stream's) gives the stream only its own ASDUs: one sample a
// frame here, not eight, each the stream's own value.
TEST(ComtradeCommand, ASDUsOfOtherSvIdsAreNotTheStreamsSamples) {
    const auto shared = TavTest::generated(
        "ct_shared_frames",
        {"--sv", "1", "--asdus", "8", "--distinct-svids", "--duration", "0.01", "--current", "10"});
    const std::string base = TavTest::tempDir() + "/shared_frames";
    ASSERT_EQ(inspect({"--comtrade", base, shared}).code, 0);
    const auto record = TavTest::readRecord(base);
    ASSERT_EQ(record.rows.size(), 40u);
    for (std::size_t i = 0; i < record.rows.size(); ++i) {
        const double ia = std::lround(10'000 * std::sin(2 * M_PI * 50 * i / 4000.0)) * 0.001;
        ASSERT_NEAR(record.value(record.rows[i], 0), ia, 1e-6) << i;
    }
}

// A capturing card stamps frames in bursts; the record keeps the merging
// unit's own rate and grid: exactly 4800 a second, 208.333 us apart, and two
// seconds on it ends where the capture's samples end, not milliseconds off.
TEST(ComtradeCommand, BurstyCaptureIsRecordedAtItsSamplingRate) {
    const auto bursty = TavTest::generated(
        "ct_bursty", {"--sv", "1", "--rate", "4800", "--bursts", "3", "--duration", "2"});
    const std::string base = TavTest::tempDir() + "/bursty";
    ASSERT_EQ(inspect({"--comtrade", base, bursty}).code, 0);
    const auto r = TavTest::readRecord(base);
    EXPECT_EQ(r.sampleRate, 4800);
    ASSERT_EQ(r.rows.size(), 9600u);
    for (std::size_t i = 1; i < r.rows.size(); ++i)
        ASSERT_NEAR(r.micros(r.rows[i]) - r.micros(r.rows[i - 1]), 1e6 / 4800, 1.0) << i;
    EXPECT_NEAR(r.micros(r.rows.back()) - r.micros(r.rows.front()), 9599 * 1e6 / 4800, 1.0);
}

class MissingSamples : public ::testing::TestWithParam<std::vector<std::string>> {};

// The second stream starts 50 ms after the first: its channels hold the
// format's missing value until then, and samples after. The VLAN keeps the
// first capture's stream apart from the second's namesake, which sorts after it.
TEST_P(MissingSamples, AreMarkedWhereAStreamHasNone) {
    const auto early =
        TavTest::generated("early", {"--sv", "1", "--duration", "0.1", "--vlan", "5"});
    const auto late = TavTest::generated("late", {"--sv", "2", "--start", "1700000000.05",
                                                  "--duration", "0.05", "--unsynchronised"});
    const std::string base = TavTest::tempDir() + "/missing_" + std::to_string(GetParam().size());
    auto args = GetParam();
    args.insert(args.begin(), {"--comtrade", base, "--streams", "0,2"});
    args.insert(args.end(), {early, late});
    const auto run = inspect(args);
    ASSERT_EQ(run.code, 0) << run.err;
    const Record r = TavTest::readRecord(base);
    ASSERT_EQ(r.rows.size(), 400u);
    for (const auto& row : r.rows) {
        const bool secondHasSamples = r.micros(row) >= 50'000;
        for (std::size_t c = 0; c < 16; ++c)
            ASSERT_EQ(row.analog[c].has_value(), c < 8 || secondHasSamples)
                << "row " << row.number << " channel " << c;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Encodings, MissingSamples,
    ::testing::Values(std::vector<std::string>{}, std::vector<std::string>{"--ascii"},
                      std::vector<std::string>{"--rev", "2013", "--ascii"},
                      std::vector<std::string>{"--rev", "2013", "--trigger", "1700000000"}));

} // namespace
