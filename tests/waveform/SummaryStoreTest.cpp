// A stream's min/max summary, built on the store's worker: the curve drawn
// from it has the band the frames themselves give, and a store dropped in the
// middle of a build stops at once and reports nothing.
#include "waveform/SummaryStore.h"
#include "platform/parser/PcapParser.h"
#include "tests/support/TestCaptures.h"
#include "waveform/SvTrace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <map>
#include <thread>

namespace {

using namespace TavWaveform;

constexpr std::int64_t kStartNs = 1'700'000'000LL * 1'000'000'000LL;

struct Loaded {
    TavIec61850Parser::Db db;

    explicit Loaded(const std::string& path) {
        std::atomic<bool> cancel{false};
        TavIec61850Parser::PcapParser::parseFile(path, db, {}, cancel, [](double) {});
    }
    const TavIec61850Parser::Sv& stream() const { return *db.svProto.svs.begin(); }
};

// Each column's lowest and highest point.
std::map<long, std::pair<float, float>> bands(const std::vector<TracePoint>& points,
                                              const TraceWindow& window) {
    std::map<long, std::pair<float, float>> out;
    for (const auto& p : points) {
        auto [at, added] = out.try_emplace(window.columnOf(p.ns), p.value, p.value);
        at->second.first = std::min(at->second.first, p.value);
        at->second.second = std::max(at->second.second, p.value);
    }
    return out;
}

TEST(SummaryStore, CurveFromTheSummaryHasTheFramesBand) {
    Loaded loaded(TavTest::generated(
        "summary-20s", {"--sv", "1", "--duration", "20", "--spike", "7.3", "--channels", "4"}));
    std::atomic<int> ready{0};
    SummaryStore store([&] { ++ready; });
    const TraceWindow window{kStartNs, kStartNs + 20'000'000'000LL, 50};
    TavWaveform::ReadFailures failure;
    TavStream::StreamClocks clocks;
    const auto& clock = clocks.of(loaded.stream());
    const Traces exact = SvTrace::build(loaded.stream(), {0, 3}, window, failure, &clocks);
    ASSERT_TRUE(exact.envelope);

    EXPECT_EQ(store.find(loaded.stream(), clock), nullptr) << "the first ask only queues the build";
    for (int i = 0; i < 3000 && ready.load() == 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    ASSERT_EQ(ready.load(), 1);
    ASSERT_NE(store.find(loaded.stream(), clock), nullptr);
    const Traces summarised =
        SvTrace::build(loaded.stream(), {0, 3}, window, failure, &clocks, &store);
    EXPECT_TRUE(failure.empty());
    ASSERT_TRUE(summarised.envelope);
    for (std::size_t c = 0; c < 2; ++c) {
        // Whole blocks give their two points at one instant.
        const auto& points = summarised.channels[c];
        EXPECT_NE(std::adjacent_find(points.begin(), points.end(),
                                     [](auto& a, auto& b) { return a.ns == b.ns; }),
                  points.end());
        EXPECT_EQ(bands(points, window), bands(exact.channels[c], window)) << c;
    }
    EXPECT_EQ(ready.load(), 1) << "built once";
}

TEST(SummaryStore, DroppedMidBuildStopsAndReportsNothing) {
    Loaded loaded(TavTest::generated("summary-100s", {"--sv", "1", "--duration", "100"}));
    std::atomic<int> ready{0};
    {
        SummaryStore store([&] { ++ready; });
        TavStream::StreamClocks clocks;
        EXPECT_EQ(store.find(loaded.stream(), clocks.of(loaded.stream())), nullptr);
    }
    EXPECT_EQ(ready.load(), 0);
}

} // namespace
