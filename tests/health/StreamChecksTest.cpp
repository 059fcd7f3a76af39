// Captures written with one fault each, checked to the exact counts and to the
// exact times of their events.
#include "health/StreamChecks.h"
#include "health/HealthCounts.h"
#include "platform/parser/PcapParser.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using namespace TavHealth;
using namespace TavIec61850Parser;

constexpr std::int64_t kUs = 1000;
constexpr std::int64_t kMs = 1'000'000;
constexpr std::uint32_t kStart = 1'700'000'000;

struct Case {
    std::string name;
    std::vector<std::string> options;
    std::map<std::string, std::uint64_t> counts;              // every other count is 0
    std::vector<std::pair<std::string, std::int64_t>> events; // kind, ns after the start
};

void PrintTo(const Case& c, std::ostream* os) {
    *os << c.name;
}

StreamHealth checkFirstStream(const std::string& path) {
    Db db;
    std::atomic<bool> cancel{false};
    PcapParser::parseFile(path, db, Filter{}, cancel, [](double) {});
    if (!db.svProto.svs.empty())
        return checkStream(*db.svProto.svs.begin());
    return checkStream(*db.gooseProto.gooses.begin());
}

std::int64_t sinceStart(const Timest& t) {
    return (static_cast<std::int64_t>(t.seconds) - kStart) * 1'000'000'000 + t.nanoseconds;
}

class StreamChecksTest : public testing::TestWithParam<Case> {};

TEST_P(StreamChecksTest, CountsAndEventTimesAreExact) {
    const Case& c = GetParam();
    const StreamHealth health = checkFirstStream(TavTest::generated("health_" + c.name, c.options));
    // Every count and event kind also has the name the window shows.
    for (const auto& count : healthCounts(health)) {
        const auto expected = c.counts.find(count.name);
        EXPECT_EQ(count.value, expected == c.counts.end() ? 0 : expected->second) << count.name;
        EXPECT_NE(labelOf(count.name), count.name);
    }
    std::vector<std::pair<std::string, std::int64_t>> events;
    for (const auto& e : health.events) {
        events.emplace_back(e.kind, sinceStart(e.time));
        EXPECT_NE(labelOf(e.kind), e.kind);
    }
    EXPECT_EQ(events, c.events);
    EXPECT_EQ(health.eventCount, health.events.size());
    EXPECT_EQ(health.unreadableFrames, 0u);
}

// SV at 4000 frames/s, one ASDU each: frame n at n * 250 us with smpCnt n % 4000.
const std::vector<std::string> kSv{"--sv", "1", "--duration", "1.5"};
std::vector<std::string> sv(std::vector<std::string> more) {
    more.insert(more.begin(), kSv.begin(), kSv.end());
    return more;
}
// GOOSE frames at 0, 2, 6, 14, 30, 62, 126, 254, 510, 1022 ms, then 1 s apart.
std::vector<std::string> goose(std::vector<std::string> more) {
    more.insert(more.begin(), {"--goose", "1", "--duration", "3"});
    return more;
}

INSTANTIATE_TEST_SUITE_P(
    Faults, StreamChecksTest,
    testing::Values(Case{"sv_clean", sv({}), {}, {}},
                    // Bursts of three on one stamp are not late; the five frames held
                    // back 5 ms are, and only they, however the card bunches them.
                    Case{"sv_bursts", sv({"--bursts", "3"}), {}, {}},
                    Case{"sv_delayed",
                         sv({"--bursts", "3", "--delay", "0.005@0.5x5"}),
                         {{"late_frames", 5}},
                         {{"late_frames", 505'000 * kUs},
                          {"late_frames", 505'750 * kUs},
                          {"late_frames", 505'750 * kUs},
                          {"late_frames", 505'750 * kUs},
                          {"late_frames", 506'500 * kUs}}},
                    Case{"sv_drop",
                         sv({"--sv-fault", "drop@0.5x3"}),
                         {{"smpcnt_discontinuities", 1}, {"missing_samples", 3}},
                         {{"smpcnt_discontinuities", 500'750 * kUs}}},
                    // Two ASDUs a frame: three frames lost are six samples.
                    Case{"sv_drop_asdus",
                         sv({"--asdus", "2", "--sv-fault", "drop@0.5x3"}),
                         {{"smpcnt_discontinuities", 1}, {"missing_samples", 6}},
                         {{"smpcnt_discontinuities", 501'500 * kUs}}},
                    Case{"sv_repeat",
                         sv({"--sv-fault", "repeat@0.5"}),
                         {{"smpcnt_duplicates", 1}},
                         {{"smpcnt_duplicates", 500 * kMs}}},
                    // 1999, 2001, 2000, 2002: the step back is a discontinuity but loses nothing.
                    Case{"sv_reorder",
                         sv({"--sv-fault", "reorder@0.5"}),
                         {{"smpcnt_discontinuities", 3}, {"missing_samples", 2}},
                         {{"smpcnt_discontinuities", 500 * kMs},
                          {"smpcnt_discontinuities", 500'250 * kUs},
                          {"smpcnt_discontinuities", 500'500 * kUs}}},
                    Case{"sv_synch",
                         sv({"--sv-fault", "synch:0@0.5"}),
                         {{"smpsynch_changes", 1}},
                         {{"smpsynch", 500 * kMs}}},
                    Case{"sv_quality",
                         sv({"--sv-fault", "quality:0x1@0.5x10", "--sv-fault",
                             "quality:0x3803@1x4"}),
                         {{"invalid_samples", 10},
                          {"questionable_samples", 4},
                          {"test_samples", 4},
                          {"derived_samples", 4},
                          {"operator_blocked_samples", 4}},
                         {{"quality", 500 * kMs},
                          {"quality", 502'500 * kUs},
                          {"quality", 1000 * kMs},
                          {"quality", 1001 * kMs}}},
                    // A stream's first frame sets the starting state: flags and
                    // quality held from it on are counted but are no change.
                    Case{"sv_simulation", sv({"--simulation"}), {{"simulated_frames", 6000}}, {}},
                    Case{"sv_quality_from_start",
                         sv({"--sv-fault", "quality:0x2000@0x6000"}),
                         {{"derived_samples", 6000}},
                         {}},
                    Case{"sv_prp", sv({"--prp-pairs"}), {{"lan_duplicates", 6000}}, {}},
                    Case{"sv_prp_lost",
                         sv({"--prp-pairs", "--sv-fault", "lose-b@0.5x2"}),
                         {{"lan_duplicates", 5998}, {"lan_unpaired", 2}},
                         {{"lan_unpaired", 500 * kMs}, {"lan_unpaired", 500'250 * kUs}}},
                    Case{"goose_change",
                         goose({"--change", "1"}),
                         {{"state_changes", 1}},
                         {{"state_changes", 1000 * kMs}}},
                    Case{"goose_gap",
                         goose({"--goose-fault", "drop@0.005"}),
                         {{"sqnum_gaps", 1}},
                         {{"sqnum_gaps", 14 * kMs}}},
                    Case{"goose_repeat",
                         goose({"--goose-fault", "repeat@0.005"}),
                         {{"sqnum_repeats", 1}},
                         {{"sqnum_repeats", 6 * kMs}}},
                    // stNum 2 from 50 ms; it falls back to 1 at 112 ms with sqNum 5.
                    Case{"goose_regression",
                         goose({"--change", "0.05", "--goose-fault", "stnum-back@0.1"}),
                         {{"state_changes", 2}, {"stnum_regressions", 1}, {"sqnum_not_reset", 1}},
                         {{"state_changes", 50 * kMs},
                          {"state_changes", 112 * kMs},
                          {"stnum_regressions", 112 * kMs},
                          {"sqnum_not_reset", 112 * kMs}}},
                    // No frame in [2 s, 5 s): 4 s pass from the frame at 1022 ms to the next.
                    Case{"goose_pause",
                         {"--goose", "1", "--duration", "6", "--goose-fault", "pause:3@2"},
                         {{"tal_expiries", 1}, {"sqnum_gaps", 1}},
                         {{"tal_expiries", 5022 * kMs}, {"sqnum_gaps", 5022 * kMs}}},
                    Case{"goose_prp_lost",
                         goose({"--prp-pairs", "--goose-fault", "lose-a@0.1"}),
                         {{"lan_duplicates", 10}, {"lan_unpaired", 1}},
                         {{"lan_unpaired", 126 * kMs}}}),
    [](const auto& info) { return info.param.name; });

// LAN A and LAN B captured into files of their own: the checks read the
// stream's frames in time order across both, so every copy pairs and the
// turn from one file to the other is no discontinuity.
TEST(StreamChecks, RedundantLansInTwoFilesPairAsInOne) {
    Db db;
    std::atomic<bool> cancel{false};
    for (const char* lan : {"A", "B"})
        PcapParser::parseFile(
            TavTest::generated(std::string("health_lan_") + lan, sv({"--prp", lan})), db, Filter{},
            cancel, [](double) {});
    ASSERT_EQ(db.svProto.svs.size(), 1u);
    const StreamHealth health = checkStream(*db.svProto.svs.begin());
    for (const auto& count : healthCounts(health))
        EXPECT_EQ(count.value, std::string(count.name) == "lan_duplicates" ? 6000u : 0u)
            << count.name;
}

TEST(StreamChecks, KeepsTheFirstThousandEventsAndCountsThemAll) {
    const StreamHealth health = checkFirstStream(
        TavTest::generated("health_many", {"--sv", "1", "--sv-fault", "repeat@0.1x1500"}));
    ASSERT_TRUE(health.sv);
    EXPECT_EQ(health.sv->smpcntDuplicates, 1500u);
    EXPECT_EQ(health.eventCount, 1500u);
    ASSERT_EQ(health.events.size(), kMaxEvents);
    EXPECT_EQ(sinceStart(health.events.front().time), 100 * kMs);
    EXPECT_EQ(sinceStart(health.events.back().time), 100 * kMs + 999 * 250 * kUs);
}

TEST(StreamChecks, MeasuresTheStreamItself) {
    const StreamHealth sv = checkFirstStream(TavTest::generated(
        "health_measure_sv", {"--sv", "1", "--duration", "1.5", "--asdus", "2", "--rate", "4800"}));
    ASSERT_TRUE(sv.sv);
    EXPECT_EQ(sv.sv->smpcntWrap, 4800u);
    EXPECT_EQ(sv.sv->nominalWrap, 4800u);
    EXPECT_EQ(sv.sv->asdusPerFrame, 2u);
    EXPECT_NEAR(sv.sv->sampleRate, 4800, 1);
    EXPECT_NEAR(sv.sv->timing.median, 2 / 4800.0, 1e-6);
    EXPECT_EQ(sv.sv->smpsynchValues, std::vector<std::uint8_t>{2});
    EXPECT_EQ(remarksText(sv), "");

    const StreamHealth goose = checkFirstStream(
        TavTest::generated("health_measure_goose", {"--goose", "1", "--change", "0.5"}));
    ASSERT_TRUE(goose.goose);
    ASSERT_EQ(goose.goose->retransmissions.size(), 1u);
    const std::vector<double> ms{0.002, 0.004, 0.008, 0.016, 0.032};
    ASSERT_EQ(goose.goose->retransmissions[0].intervals.size(), ms.size());
    for (std::size_t i = 0; i < ms.size(); ++i)
        EXPECT_NEAR(goose.goose->retransmissions[0].intervals[i], ms[i], 1e-9);
    EXPECT_EQ(goose.goose->confRevs, std::vector<std::uint64_t>{1});
}

} // namespace
