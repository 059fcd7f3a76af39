// A stream's min/max summary, built on the store's worker: the curve drawn
// from it has the band the frames themselves give, and a store dropped in the
// middle of a build stops at once and reports nothing.
#include "waveform/SummaryStore.h"
#include "platform/gzip/GzipCache.h"
#include "platform/parser/FileRegistry.h"
#include "platform/parser/PcapParser.h"
#include "tests/support/TestCaptures.h"
#include "waveform/SvTrace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
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

// A summary queued for a compressed capture that is closed before its build
// must not inflate the capture again: that copy would never be removed.
TEST(SummaryStore, ClosedCompressedCaptureIsNotInflatedAgain) {
    const auto path =
        TavTest::generated("summary-gzip", {"--sv", "1", "--duration", "5", "--gzip"});
    Loaded loaded(path);
    const auto version = TavIec61850Parser::FileRegistry::lookup(path);
    ASSERT_TRUE(version);
    const auto copy = TavGzip::GzipCache::copyPath(path, version->size, version->mtimeNs);
    ASSERT_TRUE(std::filesystem::exists(copy));
    TavStream::StreamClocks clocks;
    const auto& clock = clocks.of(loaded.stream());
    TavIec61850Parser::PcapParser::forgetFile(path);
    ASSERT_FALSE(std::filesystem::exists(copy));

    std::atomic<int> ready{0};
    {
        SummaryStore store([&] { ++ready; });
        EXPECT_EQ(store.find(loaded.stream(), clock), nullptr);
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
    }
    EXPECT_EQ(ready.load(), 0);
    EXPECT_FALSE(std::filesystem::exists(copy));
}

} // namespace
