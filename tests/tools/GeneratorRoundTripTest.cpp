// Captures written by the capture writer, in every container and tagging
// variant, read back through the parsing library to exactly what was written.
#include "platform/parser/GooseParser.h"
#include "platform/parser/PcapParser.h"
#include "platform/parser/SvParser.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <numbers>

namespace {

using namespace TavIec61850Parser;

constexpr std::uint64_t kSecond = 1'000'000'000;
constexpr std::uint64_t kMs = 1'000'000;
constexpr std::uint64_t kEpoch = 1'700'000'000 * kSecond;

struct Case {
    std::string name;
    std::string format = "pcap";
    bool bigEndian = false;
    std::uint64_t startNs = kEpoch;
    std::uint64_t durationMs = 250;
    unsigned sv = 0, rate = 4000, asdus = 1, channels = 8;
    std::optional<std::uint16_t> vlan{};
    std::optional<char> hsr{}, prp{};
    unsigned goose = 0, bools = 4, bitStrings = 0;
    std::vector<std::uint64_t> changesMs{};
    bool simulation = false;
    unsigned other = 0;

    std::vector<std::string> args(const std::string& out) const {
        auto seconds = [](std::uint64_t ns) {
            char text[40];
            std::snprintf(text, sizeof text, "%llu.%09llu",
                          static_cast<unsigned long long>(ns / kSecond),
                          static_cast<unsigned long long>(ns % kSecond));
            return std::string(text);
        };
        std::vector<std::string> a{out,
                                   "--format",
                                   format,
                                   "--start",
                                   seconds(startNs),
                                   "--duration",
                                   seconds(durationMs * kMs)};
        for (const auto& [option, n] :
             std::initializer_list<std::pair<const char*, unsigned>>{{"--sv", sv},
                                                                     {"--rate", rate},
                                                                     {"--asdus", asdus},
                                                                     {"--channels", channels},
                                                                     {"--goose", goose},
                                                                     {"--bools", bools},
                                                                     {"--bitstrings", bitStrings},
                                                                     {"--other", other}})
            a.insert(a.end(), {option, std::to_string(n)});
        if (bigEndian)
            a.push_back("--big-endian");
        if (simulation)
            a.push_back("--simulation");
        if (vlan)
            a.insert(a.end(), {"--vlan", std::to_string(*vlan)});
        if (hsr)
            a.insert(a.end(), {"--hsr", std::string(1, *hsr)});
        if (prp)
            a.insert(a.end(), {"--prp", std::string(1, *prp)});
        for (auto ms : changesMs)
            a.insert(a.end(), {"--change", seconds(ms * kMs)});
        return a;
    }

    std::uint64_t resolutionNs() const { return format.ends_with("-ns") ? 1 : 1000; }
    Timest captured(std::uint64_t ns) const {
        ns -= ns % resolutionNs();
        return {static_cast<std::uint32_t>(ns / kSecond), static_cast<std::uint32_t>(ns % kSecond)};
    }
    std::uint64_t svFramesPerStream() const {
        std::uint64_t k = 0;
        while (k * asdus * kSecond < durationMs * kMs * rate)
            ++k;
        return k;
    }
};

std::ostream& operator<<(std::ostream& os, const Case& c) {
    return os << c.name;
}

std::string twoDigits(const char* pattern, unsigned n) {
    char text[64];
    std::snprintf(text, sizeof text, pattern, n);
    return text;
}

// The documented signal: currents in mA, voltages in 10 mV, neutrals the negated sums.
std::int32_t expectedSample(const Case& c, std::uint64_t n, unsigned channel) {
    const unsigned ch = channel % 8;
    const double t = static_cast<double>(n) / c.rate;
    auto phase = [&](unsigned p, double scale) {
        return static_cast<std::int32_t>(std::lround(
            scale * std::sin(2 * std::numbers::pi * 50 * t - p * 2 * std::numbers::pi / 3)));
    };
    if (ch < 3)
        return phase(ch, 100.0 * 1000);
    if (ch == 3)
        return -(phase(0, 1e5) + phase(1, 1e5) + phase(2, 1e5));
    if (ch < 7)
        return phase(ch - 4, 10000.0 * 100);
    return -(phase(0, 1e6) + phase(1, 1e6) + phase(2, 1e6));
}

// The GOOSE "t" (time of the last change) as text, to the microsecond.
void expectUtcTime(const std::string& text, std::uint64_t ns) {
    const std::time_t seconds = static_cast<std::time_t>(ns / kSecond);
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    char whole[32];
    std::strftime(whole, sizeof whole, "%Y-%m-%dT%H:%M:%S", &utc);
    ASSERT_TRUE(text.starts_with(whole)) << text << " for " << whole;
    ASSERT_GT(text.size(), std::strlen(whole) + 1);
    const double fraction = std::stod("0" + text.substr(std::strlen(whole), text.size() - 1));
    EXPECT_NEAR(fraction, (ns % kSecond) / 1e9, 1.5e-6) << text;
}

class GeneratorRoundTrip : public ::testing::TestWithParam<Case> {
protected:
    void SetUp() override {
        const Case& c = GetParam();
        path_ = TavTest::tempDir() + "/" + c.name +
                (c.format.starts_with("pcapng") ? ".pcapng" : ".pcap");
        TavTest::runGenerator(c.args(path_));
        const std::atomic<bool> cancel{false};
        PcapParser::parseFile(
            path_, db_, Filter{}, cancel, [](double) {}, stats_);
    }

    template <typename Records, typename Record>
    const Record& stream(const Records& records, std::string Record::*id,
                         const std::string& want) const {
        for (const auto& r : records)
            if (r.*id == want)
                return r;
        throw std::runtime_error("no stream " + want);
    }
    void expectEthernet(const EthernetPart& e, const std::string& src) const {
        const Case& c = GetParam();
        EXPECT_EQ(e.srcMac, src);
        ASSERT_EQ(e.vlan.has_value(), c.vlan.has_value());
        ASSERT_EQ(e.hsr.has_value(), c.hsr.has_value());
        ASSERT_EQ(e.prp.has_value(), c.prp.has_value());
        EXPECT_EQ(c.vlan ? e.vlan->id : std::nullopt, c.vlan);
        EXPECT_EQ(c.hsr ? e.hsr->line : std::nullopt, c.hsr);
        EXPECT_EQ(c.prp ? e.prp->line : std::nullopt, c.prp);
    }
    const std::vector<Package>& onlyFile(const PackageFiles& files) const {
        EXPECT_EQ(files.size(), 1u);
        EXPECT_EQ(files.begin()->path, path_);
        return files.begin()->packages;
    }

    std::string path_;
    Db db_;
    FileStats stats_;
};

TEST_P(GeneratorRoundTrip, FileCountsEveryFrame) {
    const Case& c = GetParam();
    EXPECT_EQ(stats_.format, c.format.starts_with("pcapng") ? "pcapng"
                             : c.format == "pcap-ns"        ? "pcap-ns"
                                                            : "pcap-us");
    EXPECT_EQ(stats_.svFrames, c.sv * c.svFramesPerStream());
    EXPECT_EQ(stats_.otherFrames, c.other);
    EXPECT_EQ(stats_.malformedFrames, 0u);
    EXPECT_EQ(stats_.frames, stats_.svFrames + stats_.gooseFrames + stats_.otherFrames);
    EXPECT_EQ(db_.svProto.getSvCount(), c.sv);
    EXPECT_EQ(db_.gooseProto.getGooseCount(), c.goose);
}

TEST_P(GeneratorRoundTrip, SvStreamsReadBackExactly) {
    const Case& c = GetParam();
    for (unsigned n = 0; n < c.sv; ++n) {
        SCOPED_TRACE("SV stream " + std::to_string(n));
        const Sv& s = stream(db_.svProto.svs, &Sv::svId, twoDigits("TavnaSV%02d", n));
        expectEthernet(s, twoDigits("02:00:00:00:01:%02x", n));
        EXPECT_EQ(s.dstMac, twoDigits("01:0c:cd:04:00:%02x", n));
        EXPECT_EQ(s.appId, 0x4000 + n);
        EXPECT_EQ(s.datSet, twoDigits("TAVNA/LLN0$SV%02d", n));
        EXPECT_EQ(s.confRev, 1u);
        EXPECT_EQ(s.simulation, c.simulation);
        EXPECT_EQ(s.valuesPerAsdu, c.channels);
        EXPECT_EQ(s.asdusPerFrame, c.asdus);
        const auto& packages = onlyFile(s.files);
        ASSERT_EQ(packages.size(), c.svFramesPerStream());
        // Every frame of the first stream, the first and last of the others.
        for (std::size_t k = 0; k < packages.size(); ++k) {
            const std::uint64_t n0 = k * c.asdus;
            ASSERT_EQ(packages[k].time, c.captured(c.startNs + n0 * kSecond / c.rate)) << k;
            if (n > 0 && k != 0 && k + 1 != packages.size())
                continue;
            const auto asdus = SvParser::parseASDUFromFile(path_, packages[k].offset);
            ASSERT_EQ(asdus.size(), c.asdus);
            for (std::uint32_t a = 0; a < c.asdus; ++a) {
                const auto& asdu = asdus[a];
                EXPECT_EQ(asdu.svId, s.svId);
                EXPECT_EQ(asdu.counters.smpCnt, (n0 + a) % c.rate);
                ASSERT_EQ(asdu.values.size(), c.channels);
                for (unsigned ch = 0; ch < c.channels; ++ch) {
                    ASSERT_EQ(asdu.values[ch].value, expectedSample(c, n0 + a, ch))
                        << "frame " << k << " ASDU " << a << " channel " << ch;
                    ASSERT_EQ(asdu.values[ch].quality, 0u);
                }
            }
        }
    }
}

// Walks a GOOSE stream frame by frame: a frame at the start and at each change
// (stNum up, sqNum 0), retransmissions in between 2, 4, 8 ... ms apart up to
// 1000 ms (sqNum up), and data-set values that follow the changes.
TEST_P(GeneratorRoundTrip, GooseStreamsFollowTheirChanges) {
    const Case& c = GetParam();
    const std::uint64_t endNs = c.startNs + c.durationMs * kMs;
    for (unsigned n = 0; n < c.goose; ++n) {
        SCOPED_TRACE("GOOSE stream " + std::to_string(n));
        const Goose& g =
            stream(db_.gooseProto.gooses, &Goose::goId, twoDigits("TavnaGOOSE%02d", n));
        expectEthernet(g, twoDigits("02:00:00:00:02:%02x", n));
        EXPECT_EQ(g.dstMac, twoDigits("01:0c:cd:01:00:%02x", n));
        EXPECT_EQ(g.appId, 0x1000 + n);
        EXPECT_EQ(g.gocbRef, twoDigits("TAVNA%02dLD0/LLN0$GO$gcb1", n));
        EXPECT_EQ(g.datSet, twoDigits("TAVNA%02dLD0/LLN0$DS1", n));
        EXPECT_EQ(g.simulation, c.simulation);
        EXPECT_EQ(g.entries, c.bools + c.bitStrings);
        const auto& packages = onlyFile(g.files);

        std::uint64_t changedAt = c.startNs, sentAt = c.startNs, interval = 0;
        std::size_t changes = 0;
        std::uint32_t sqNum = 0;
        for (std::size_t k = 0; k < packages.size(); ++k) {
            const auto pdu = GooseParser::parseGoosePDUFromFile(path_, packages[k].offset);
            if (k > 0 && pdu.sqNum == "0") {
                ASSERT_LT(changes, c.changesMs.size()) << "frame " << k << ": an unasked change";
                changedAt = sentAt = c.startNs + c.changesMs[changes++] * kMs;
                interval = 0;
                sqNum = 0;
            } else if (k > 0) {
                interval = interval == 0 ? 2 * kMs : std::min(2 * interval, 1000 * kMs);
                sentAt += interval;
                ++sqNum;
            }
            ASSERT_EQ(packages[k].time, c.captured(sentAt)) << "frame " << k;
            ASSERT_EQ(pdu.stNum, std::to_string(changes + 1)) << "frame " << k;
            ASSERT_EQ(pdu.sqNum, std::to_string(sqNum)) << "frame " << k;
            EXPECT_EQ(pdu.timeAllowedToLive, "2000");
            EXPECT_EQ(pdu.simulation, c.simulation ? "true" : "false");
            EXPECT_EQ(pdu.numDatSetEntries, std::to_string(c.bools + c.bitStrings));
            const auto values = GooseParser::parseBooleanValues(pdu.data);
            ASSERT_EQ(values.size(), c.bools + c.bitStrings);
            // Booleans and bit-strings alternate, booleans first, the rest at the end.
            unsigned bools = 0, bits = 0;
            for (std::size_t i = 0; i < values.size(); ++i) {
                const bool boolean = bits >= c.bitStrings || (bools < c.bools && bools <= bits);
                (boolean ? bools : bits)++;
                const float want =
                    boolean ? static_cast<float>(changes % 2) : static_cast<float>(changes % 4);
                EXPECT_EQ(values[i], want) << "frame " << k << " entry " << i;
            }
            expectUtcTime(pdu.t, changedAt);
        }
        EXPECT_EQ(changes, c.changesMs.size()) << "every change inside the capture was sent";
        const std::uint64_t next =
            sentAt + (interval == 0 ? 2 * kMs : std::min(2 * interval, 1000 * kMs));
        EXPECT_GE(next, endNs) << "no retransmission is missing at the end";
    }
}

const std::vector<Case> kCases{
    {.name = "pcap_sv_goose_other", .sv = 2, .goose = 1, .changesMs = {100}, .other = 7},
    {.name = "pcap_ns_big_endian_fractional_start",
     .format = "pcap-ns",
     .bigEndian = true,
     .startNs = kEpoch + 123'456'789,
     .sv = 1,
     .rate = 4800,
     .asdus = 2,
     .goose = 1,
     .changesMs = {30}},
    {.name = "pcapng_vlan_bools_and_bitstrings",
     .format = "pcapng",
     .sv = 1,
     .vlan = 100,
     .goose = 2,
     .bools = 3,
     .bitStrings = 2,
     .changesMs = {20, 21, 120}},
    {.name = "pcapng_ns_big_endian_hsr_b_six_asdus",
     .format = "pcapng-ns",
     .bigEndian = true,
     .startNs = 1'600'000'000 * kSecond + 999,
     .sv = 1,
     .rate = 14400,
     .asdus = 6,
     .hsr = 'B',
     .goose = 1},
    {.name = "pcap_vlan_zero_prp_a_simulation_twelve_channels",
     .sv = 1,
     .channels = 12,
     .vlan = 0,
     .prp = 'A',
     .goose = 1,
     .bools = 1,
     .bitStrings = 3,
     .changesMs = {5},
     .simulation = true,
     .other = 3},
    // As wide as the 16-bit APDU length allows, and a GOOSE data set of ten
    // thousand entries: what a crafted capture may hold.
    {.name = "pcap_wide_data_sets",
     .durationMs = 2,
     .sv = 1,
     .channels = 8000,
     .goose = 1,
     .bools = 10000},
    {.name = "pcap_hsr_a_long_goose_retransmission",
     .durationMs = 3500,
     .hsr = 'A',
     .goose = 1,
     .changesMs = {1, 2500}},
};

INSTANTIATE_TEST_SUITE_P(Variants, GeneratorRoundTrip, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return info.param.name; });

} // namespace
