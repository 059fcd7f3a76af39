// What the measurements read back: generated signals of known content to the
// figures an engineer signs off, the real merging unit's injections, and two
// synchronised merging units on one reference.
#include "measure/Measure.h"
#include "platform/parser/PcapParser.h"
#include "stream/StreamClocks.h"
#include "stream/WindowFrames.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace {

using namespace TavMeasure;

constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::int64_t kStart = 1'700'000'000 * kSecond;

// A capture parsed as the window parses it, with its streams' clocks.
struct Loaded {
    TavIec61850Parser::Db db;
    std::unique_ptr<TavStream::StreamClocks> clocks;
    std::vector<const TavIec61850Parser::Sv*> streams;

    explicit Loaded(const std::string& path) {
        const std::atomic<bool> cancel{false};
        TavIec61850Parser::PcapParser::parseFile(path, db, {}, cancel, nullptr);
        streams = TavStream::svStreams(db);
        std::sort(streams.begin(), streams.end(),
                  [](auto* a, auto* b) { return a->svId < b->svId; });
        clocks = std::make_unique<TavStream::StreamClocks>(streams);
    }

    StreamInput input(std::size_t k) {
        return {streams[k], &clocks->of(*streams[k]), nineTwoChannels()};
    }

    // Ia Ib Ic In Ua Ub Uc Un as the window names and scales them.
    static std::vector<ChannelSpec> nineTwoChannels() {
        const char* names[] = {"Ia", "Ib", "Ic", "In", "Ua", "Ub", "Uc", "Un"};
        std::vector<ChannelSpec> channels;
        for (std::size_t i = 0; i < 8; ++i) {
            const bool voltage = i >= 4;
            channels.push_back({i, names[i], voltage ? Quantity::Voltage : Quantity::Current,
                                static_cast<Phase>(i % 4), voltage ? 0.01 : 0.001});
        }
        return channels;
    }
};

StreamMeasurement measureOne(const std::string& capture, std::int64_t from, std::int64_t to) {
    Loaded loaded(capture);
    auto all = measure({loaded.input(0)}, from, to);
    EXPECT_EQ(all.size(), 1u);
    return all.empty() ? StreamMeasurement{} : all.front();
}

double angleBetween(double a, double b) {
    double d = std::fmod(a - b, 360.0);
    if (d <= -180)
        d += 360;
    if (d > 180)
        d -= 360;
    return d;
}

// Peaks 100 A and 10 kV (RMS 70.71 A, 7071 V), angles off the usual ones, the
// currents lagging 30° and rich in harmonics, at 4800 samples a second.
TEST(Measure, GeneratedContentIsReadBackToTheFiguresSignedOff) {
    const auto capture = TavTest::generated(
        "known_content", {"--sv", "1", "--rate", "4800", "--duration", "2", "--harmonic", "3:7",
                          "--harmonic", "5:5", "--harmonic", "11:5", "--harmonic", "29:1.5",
                          "--phase-angles", "10,-100,135", "--current-lag", "30"});
    const auto m = measureOne(capture, kStart + kSecond / 2, kStart + kSecond / 2 + kSecond / 5);
    ASSERT_EQ(m.cycles, 10u);
    EXPECT_NEAR(m.frequencyHz, 50.0, 0.001);
    EXPECT_EQ(m.reference, "Ua");
    const double iRms = 100 / std::sqrt(2.0), uRms = 10000 / std::sqrt(2.0);
    const double angles[] = {10, -100, 135};
    for (std::size_t p = 0; p < 3; ++p) {
        const auto& i = m.channels[p];
        const auto& u = m.channels[4 + p];
        EXPECT_NEAR(i.fundamental.rms, iRms, iRms * 5e-4) << p;
        EXPECT_NEAR(u.fundamental.rms, uRms, uRms * 5e-4) << p;
        EXPECT_NEAR(angleBetween(u.fundamental.angleDeg, angles[p] - 10), 0, 0.05) << p;
        EXPECT_NEAR(angleBetween(i.fundamental.angleDeg, angles[p] - 40), 0, 0.05) << p;
        for (std::size_t h = 2; h <= 50; ++h) {
            const double expected = h == 3 ? 7 : h == 5 ? 5 : h == 11 ? 5 : h == 29 ? 1.5 : 0;
            // 4800 samples a second carry up to 2400 Hz, exclusive.
            ASSERT_EQ(i.harmonics[h].has_value(), h < 48) << h;
            if (h < 48) {
                EXPECT_NEAR(*i.harmonics[h], expected, 0.05) << p << " h" << h;
            }
        }
        const double thd = std::sqrt(49 + 25 + 25 + 2.25);
        EXPECT_NEAR(*i.thd, thd, 0.05);
        EXPECT_NEAR(i.rms, iRms * std::sqrt(1 + thd * thd / 1e4), iRms * 5e-4);
        EXPECT_NEAR(u.dc, 0, uRms * 1e-4);
        // Harmonics in the current alone carry no power: P and Q of the fundamental.
        ASSERT_TRUE(m.power);
        EXPECT_NEAR(m.power->phases[p].p, uRms * iRms * std::cos(std::numbers::pi / 6),
                    uRms * iRms * 1e-3);
        EXPECT_NEAR(m.power->phases[p].q, uRms * iRms * 0.5, uRms * iRms * 1e-3);
    }
}

// Phase B lost: A = 1∠0, C = 1∠120 give, by hand, positive 2/3∠0,
// negative 1/3∠−60, zero 1/3∠60, unbalance 50 %; the currents the same, 30° later.
TEST(Measure, SequenceComponentsOfAnUnbalancedSetAreTheOnesComputedByHand) {
    const auto capture =
        TavTest::generated("phase_b_lost", {"--sv", "1", "--duration", "1", "--phase-amplitudes",
                                            "1,0,1", "--current-lag", "30"});
    const auto m = measureOne(capture, kStart + kSecond / 4, kStart + kSecond / 4 + kSecond / 5);
    ASSERT_TRUE(m.voltage && m.current);
    const double u = 10000 / std::sqrt(2.0), i = 100 / std::sqrt(2.0);
    const auto expect = [](const Phasor& p, double rms, double angle) {
        EXPECT_NEAR(p.rms, rms, rms * 5e-4);
        EXPECT_NEAR(angleBetween(p.angleDeg, angle), 0, 0.05);
    };
    expect(m.voltage->positive, u * 2 / 3, 0);
    expect(m.voltage->negative, u / 3, -60);
    expect(m.voltage->zero, u / 3, 60);
    EXPECT_NEAR(m.voltage->unbalance, 50, 0.05);
    expect(m.current->positive, i * 2 / 3, -30);
    expect(m.current->negative, i / 3, -90);
    expect(m.current->zero, i / 3, 30);
}

// Off nominal on both sides, with noise, at both rates: the frequency to
// 1 mHz and the fundamental to 0.05 % over ten cycles.
TEST(Measure, FrequencyOffNominalIsReadToAMillihertz) {
    struct Case {
        const char* rate;
        double hz;
    };
    for (const Case c :
         {Case{"4000", 45.37}, Case{"4000", 54.81}, Case{"4800", 55.42}, Case{"4800", 64.66}}) {
        const std::string name = std::string("off_nominal_") + c.rate + "_" + std::to_string(c.hz);
        const auto capture = TavTest::generated(name, {"--sv", "1", "--rate", c.rate, "--duration",
                                                       "1", "--frequency", std::to_string(c.hz),
                                                       "--noise", "0.001", "--harmonic", "5:3"});
        const auto from = kStart + kSecond / 3;
        const auto m = measureOne(capture, from, from + static_cast<std::int64_t>(10e9 / c.hz));
        EXPECT_EQ(m.cycles, 10u) << name;
        EXPECT_NEAR(m.frequencyHz, c.hz, 0.001) << name;
        EXPECT_NEAR(m.channels[4].fundamental.rms, 10000 / std::sqrt(2.0), 10000 * 5e-4) << name;
        EXPECT_NEAR(*m.channels[0].harmonics[5], 3, 0.05) << name;
    }
}

// Recorded with 500 A and 400 kV primary injected, the currents carrying
// 3rd 7 %, 5th 5 %, 7th 3 %, 9th 1 %, 11th 5 %, 13th 1 %, 15th 1 %, 17th 0.5 %.
TEST(Measure, RealMergingUnitReadsBackItsInjections) {
    Loaded loaded(
        TavTest::sharedCapture("sv_abb-rex640_50hz_harmonics_novlan_smpsynch1_25646frames.pcapng"));
    const auto& stream = *loaded.streams.front();
    const auto first = TavStream::toNanoseconds(stream.files.begin()->getBeginTime());
    const auto m = measure({loaded.input(0)}, first + kSecond, first + 3 * kSecond).front();
    EXPECT_EQ(m.cycles, 100u);
    EXPECT_NEAR(m.frequencyHz, 50.0, 0.01);
    const std::pair<std::size_t, double> injected[] = {{3, 7},  {5, 5},  {7, 3},  {9, 1},
                                                       {11, 5}, {13, 1}, {15, 1}, {17, 0.5}};
    for (std::size_t p = 0; p < 3; ++p) {
        const auto& current = m.channels[p];
        EXPECT_NEAR(current.fundamental.rms, 500, 10) << p;
        EXPECT_NEAR(m.channels[4 + p].fundamental.rms, 400e3, 4e3) << p;
        for (const auto& [h, percent] : injected)
            EXPECT_NEAR(*current.harmonics[h], percent, 0.2) << p << " h" << h;
        const double next = m.channels[(p + 1) % 3].fundamental.angleDeg;
        EXPECT_NEAR(angleBetween(current.fundamental.angleDeg, next), 120, 1) << p;
    }
}

// Two merging units on one clock, the second one's frames 5.1 ms late: on
// the first one's Ua as reference, the second one's Ua is at 0°.
TEST(Measure, SynchronisedStreamsShareOneReference) {
    Loaded loaded(TavTest::generated(
        "two_units", {"--sv", "2", "--duration", "1", "--stagger", "0.0051", "--bursts", "3"}));
    ASSERT_EQ(loaded.streams.size(), 2u);
    const auto all = measure({loaded.input(0), loaded.input(1)}, kStart + kSecond / 2,
                             kStart + kSecond / 2 + kSecond / 5, ChannelRef{0, 4});
    ASSERT_EQ(all.size(), 2u);
    EXPECT_NEAR(all[1].channels[4].fundamental.angleDeg, 0, 0.05);
    EXPECT_NEAR(all[1].channels[0].fundamental.angleDeg, 0, 0.05);
    EXPECT_EQ(all[1].reference, "Ua");
    // Shorter than a cycle: nothing is measured rather than something wrong.
    const auto tooShort =
        measure({loaded.input(0)}, kStart + kSecond / 2, kStart + kSecond / 2 + kSecond / 100);
    EXPECT_EQ(tooShort.front().cycles, 0u);
}

} // namespace
