// Where the clock puts samples: never at the arrival of a burst, never after
// a frame's arrival, on one grid across restarts, and at one instant for two
// synchronised merging units however late each one's frames arrive.
#include "platform/parser/PcapParser.h"
#include "stream/StreamClocks.h"
#include "stream/WindowFrames.h"
#include "tests/support/TestCaptures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <vector>

namespace {

using TavStream::ClockFrame;
using TavStream::SamplingClock;

constexpr std::int64_t kStart = 1'700'000'000'000'000'000;
constexpr std::int64_t kInterval = 250'000; // 4000 samples a second

// 9-2LE frames of one ASDU, synchronised, sampled every 250 us from kStart,
// handed over `burst` at a time on the last one's arrival, `delay` late.
std::vector<ClockFrame> bursty(std::size_t count, std::size_t burst, std::int64_t delay,
                               std::uint16_t firstCount = 0) {
    std::vector<ClockFrame> frames;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t lastOfBurst = std::min(count - 1, (i / burst + 1) * burst - 1);
        const auto cnt = static_cast<std::uint16_t>((firstCount + i) % 4000);
        frames.push_back(
            {kStart + static_cast<std::int64_t>(lastOfBurst) * kInterval + delay, cnt, 1, 1});
    }
    return frames;
}

TavIec61850Parser::AsduCounters perSecond4000() {
    TavIec61850Parser::AsduCounters c;
    c.smpRate = 4000;
    c.hasSmpRate = 1;
    c.smpSynch = 1;
    return c;
}

TEST(SamplingClock, BurstsAreDrawnOnTheGridOfTheCounterNeverAfterTheirArrival) {
    for (const std::size_t burst : {1u, 3u, 8u}) {
        const auto frames = bursty(12'000, burst, 400'000);
        const SamplingClock clock = SamplingClock::survey(frames, perSecond4000());
        ASSERT_EQ(clock.rateHz(), 4000) << burst;
        ASSERT_EQ(clock.wrap(), 4000u);
        ASSERT_TRUE(clock.synchronised());
        ASSERT_EQ(clock.runCount(), 1u);
        std::int64_t previous = 0;
        for (std::size_t i = 0; i < frames.size(); ++i) {
            const std::int64_t at = clock.instant(frames[i].arrivalNs, frames[i].smpCnt, 0, 1);
            ASSERT_LE(at, frames[i].arrivalNs) << burst << " " << i;
            if (i > 0) {
                ASSERT_EQ(at - previous, kInterval) << burst << " " << i;
            }
            previous = at;
        }
    }
}

TEST(SamplingClock, RateComesFromTheWholeStreamAndARestartStartsANewRun) {
    // No smpRate, a counter that never wraps within the capture: the mean
    // spacing, 0.3 % off a standard rate, is that rate, whatever one gap says.
    std::vector<ClockFrame> frames;
    for (std::uint16_t i = 0; i < 3000; ++i)
        frames.push_back({kStart + (i / 2) * 2 * 208'958, i, 1, 0});
    const SamplingClock measured = SamplingClock::survey(frames, {});
    EXPECT_EQ(measured.rateHz(), 4800);
    EXPECT_FALSE(measured.synchronised());

    // The counter restarts half-way: two runs, each on its own grid.
    auto restarted = bursty(4000, 2, 0);
    for (std::size_t i = 2000; i < restarted.size(); ++i)
        restarted[i].smpCnt = static_cast<std::uint16_t>(i - 2000 + 17);
    const SamplingClock clock = SamplingClock::survey(restarted, perSecond4000());
    EXPECT_EQ(clock.runCount(), 2u);
    for (const std::size_t i : {1999u, 2001u, 3999u})
        EXPECT_LE(clock.instant(restarted[i].arrivalNs, restarted[i].smpCnt, 0, 1),
                  restarted[i].arrivalNs);
    EXPECT_EQ(clock.instant(restarted[2003].arrivalNs, restarted[2003].smpCnt, 0, 1) -
                  clock.instant(restarted[2002].arrivalNs, restarted[2002].smpCnt, 0, 1),
              kInterval);
}

TEST(SamplingClock, SynchronisedStreamsShareTheirInstantsWhateverTheirDelay) {
    SamplingClock fast = SamplingClock::survey(bursty(8000, 2, 300'000), perSecond4000());
    SamplingClock slow = SamplingClock::survey(bursty(8000, 3, 5'300'000), perSecond4000());
    std::vector<std::int64_t> phases = fast.secondPhasesNs();
    const auto slowPhases = slow.secondPhasesNs();
    phases.insert(phases.end(), slowPhases.begin(), slowPhases.end());
    const std::int64_t earliest = *std::min_element(phases.begin(), phases.end());
    fast.alignTo(earliest);
    slow.alignTo(earliest);
    const auto fastFrames = bursty(8000, 2, 300'000);
    const auto slowFrames = bursty(8000, 3, 5'300'000);
    for (const std::size_t i : {0u, 1u, 3999u, 4000u, 7999u})
        EXPECT_EQ(fast.instant(fastFrames[i].arrivalNs, fastFrames[i].smpCnt, 0, 1),
                  slow.instant(slowFrames[i].arrivalNs, slowFrames[i].smpCnt, 0, 1))
            << i;
}

// The real merging unit's frames: 60 % share a time stamp with the one before.
TEST(SamplingClock, RealMergingUnitCaptureGetsItsCountersRateAndEvenInstants) {
    TavIec61850Parser::Db db;
    const std::atomic<bool> cancel{false};
    TavIec61850Parser::PcapParser::parseFile(
        TavTest::sharedCapture("sv_abb-rex640_50hz_harmonics_novlan_smpsynch1_25646frames.pcapng"),
        db, {}, cancel, nullptr);
    const auto& stream = *db.svProto.svs.begin();
    TavStream::StreamClocks clocks(TavStream::svStreams(db));
    const SamplingClock& clock = clocks.of(stream);
    EXPECT_EQ(clock.rateHz(), 4000);
    EXPECT_TRUE(clock.synchronised());
    EXPECT_EQ(clock.runCount(), 1u);
}

} // namespace
