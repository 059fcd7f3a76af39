#include "capture/LiveCapture.h"
#include "capture/CaptureError.h"
#include "capture/NetInterfaces.h"
#include "platform/parser/PcapParser.h"
#include "tests/capture/VethPair.h"
#include "tests/support/TestCaptures.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <mutex>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using TavCapture::CaptureError;
using TavCapture::CaptureOptions;
using TavCapture::LiveCapture;
using TavCapture::SegmentBatch;
using TavCaptureTest::streamCounts;

namespace {

// Everything a capture hands over, gathered as the model would.
struct Handed {
    std::mutex mutex;
    std::vector<std::string> closed;
    std::vector<std::string> retired;
    std::string failure;

    LiveCapture::Listener listener() {
        return {[this](SegmentBatch batch) {
                    std::lock_guard lock(mutex);
                    closed.push_back(batch.closed);
                    retired.insert(retired.end(), batch.retired.begin(), batch.retired.end());
                },
                [this](const std::string& reason) {
                    std::lock_guard lock(mutex);
                    failure = reason;
                }};
    }
};

std::map<std::string, unsigned long long> countsOf(const std::vector<std::string>& segments) {
    std::map<std::string, unsigned long long> all;
    for (const std::string& segment : segments)
        for (const auto& [stream, count] : streamCounts(segment))
            all[stream] += count;
    return all;
}

class LiveCaptureTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!net.skipped().empty())
            GTEST_SKIP() << net.skipped();
    }
    CaptureOptions options() const {
        CaptureOptions o;
        o.interface = net.listening();
        o.folder = TavTest::tempDir() + "/live-" +
                   ::testing::UnitTest::GetInstance()->current_test_info()->name();
        return o;
    }
    // The kernel hands frames over within its wake-up time of their arrival.
    static void settle() { std::this_thread::sleep_for(std::chrono::milliseconds(300)); }

    TavCaptureTest::VethPair net;
};

TEST_F(LiveCaptureTest, ListsTheInterfacesWithTheirLinkState) {
    ASSERT_EQ(net.ip("link set " + net.sending() + " down"), 0);
    const auto all = TavCapture::listInterfaces();
    auto find = [&](const std::string& name) {
        return std::find_if(all.begin(), all.end(), [&](const auto& i) { return i.name == name; });
    };
    ASSERT_NE(find(net.listening()), all.end());
    ASSERT_NE(find(net.sending()), all.end());
    EXPECT_FALSE(find(net.sending())->up);
}

// Tagged, redundancy-protocol and untagged frames all pass the filter, other
// traffic does not, and every frame sent is in the segments and the saved file.
TEST_F(LiveCaptureTest, KeepsEverySvAndGooseFrameAndNothingElse) {
    const std::vector<std::string> sent = {
        TavTest::generated("plain", {"--format", "pcapng-ns", "--sv", "2", "--goose", "2",
                                     "--other", "300", "--duration", "1"}),
        TavTest::generated("vlan", {"--sv", "1", "--goose", "1", "--vlan", "7", "--start",
                                    "1700000002", "--duration", "0.5"}),
        TavTest::generated("hsr", {"--sv", "1", "--goose", "1", "--hsr", "A", "--start",
                                   "1700000003", "--duration", "0.5"}),
        TavTest::generated("prp", {"--sv", "1", "--goose", "1", "--prp", "B", "--start",
                                   "1700000004", "--duration", "0.5"})};
    Handed handed;
    LiveCapture capture(options(), handed.listener());
    for (const std::string& file : sent)
        net.replay(file);
    settle();
    capture.stop();

    std::map<std::string, unsigned long long> expected;
    for (const std::string& file : sent)
        for (const auto& [stream, count] : streamCounts(file))
            expected[stream] += count;
    EXPECT_EQ(countsOf(handed.closed), expected);
    EXPECT_EQ(capture.segments(), handed.closed);
    unsigned long long frames = 0;
    for (const auto& [stream, count] : expected)
        frames += count;
    EXPECT_EQ(capture.counts().captured, frames);
    EXPECT_EQ(capture.counts().dropped, 0u);

    const std::string saved = TavTest::tempDir() + "/saved.pcapng";
    capture.save(saved);
    EXPECT_EQ(streamCounts(saved), expected);
    EXPECT_TRUE(handed.failure.empty()) << handed.failure;
}

// A hundred streams sent as fast as the sender can (about a million frames a
// second here) lose nothing.
TEST_F(LiveCaptureTest, AHundredStreamsAtTheSendersTopSpeedLoseNoFrame) {
    const std::string sent = TavTest::generated("hundred", {"--sv", "40", "--goose", "60"});
    Handed handed;
    LiveCapture capture(options(), handed.listener());
    net.replay(sent);
    settle();
    capture.stop();
    EXPECT_EQ(capture.counts().dropped, 0u);
    EXPECT_EQ(countsOf(capture.segments()), streamCounts(sent));
}

// Segments close while frames still arrive, and the ring lets the oldest go
// so that what is kept stays within its limit.
TEST_F(LiveCaptureTest, RingDropsTheOldestSegmentsBeyondItsLimit) {
    const std::string file =
        TavTest::generated("paced", {"--format", "pcapng-ns", "--sv", "2", "--duration", "1.5"});
    CaptureOptions o = options();
    o.segmentTime = std::chrono::milliseconds(200);
    o.ringBytes = 600 * 1024;
    Handed handed;
    LiveCapture capture(o, handed.listener());
    net.replay(file, false);
    settle();
    capture.stop();

    ASSERT_GE(handed.closed.size(), 4u);
    ASSERT_FALSE(handed.retired.empty());
    const auto kept = capture.segments();
    std::uint64_t keptBytes = 0;
    for (const std::string& segment : kept)
        keptBytes += std::filesystem::file_size(segment);
    // Only a newest segment larger than the limit on its own may exceed it.
    EXPECT_TRUE(keptBytes <= o.ringBytes || kept.size() == 1) << keptBytes;
    EXPECT_EQ(handed.retired.size() + kept.size(), handed.closed.size());
    EXPECT_EQ(handed.retired.front(), handed.closed.front());
    EXPECT_EQ(kept.back(), handed.closed.back());
}

// Segments go with their capture, and those a dead process left behind go
// when the next capture starts; a live process's stay.
TEST_F(LiveCaptureTest, SegmentFoldersOfEndedProcessesAreRemoved) {
    const std::string cache = TavTest::tempDir() + "/cache";
    ::setenv("XDG_CACHE_HOME", cache.c_str(), 1);
    const std::string dead = cache + "/tavna/live-999999999-0";
    const std::string alive = cache + "/tavna/live-1-0";
    std::filesystem::create_directories(dead);
    std::filesystem::create_directories(alive);
    std::string folder;
    {
        CaptureOptions o = options();
        o.folder.clear();
        LiveCapture capture(o, {});
        folder = capture.folder();
        EXPECT_TRUE(std::filesystem::is_directory(folder));
    }
    ::unsetenv("XDG_CACHE_HOME");
    EXPECT_EQ(folder.rfind(cache + "/tavna/live-", 0), 0u) << folder;
    EXPECT_FALSE(std::filesystem::exists(folder));
    EXPECT_FALSE(std::filesystem::exists(dead));
    EXPECT_TRUE(std::filesystem::exists(alive));
}

TEST_F(LiveCaptureTest, OpeningFailsWithAReason) {
    CaptureOptions o = options();
    o.interface = "tvnosuch0";
    try {
        LiveCapture capture(o, {});
        FAIL() << "a missing interface was opened";
    } catch (const CaptureError& e) {
        EXPECT_FALSE(e.noPermission());
        EXPECT_NE(std::string(e.what()).find("tvnosuch0"), std::string::npos);
    }
}

// A process without the right to capture is told so, distinctly from other
// failures, so that the window can say how to grant it.
TEST_F(LiveCaptureTest, AProcessWithoutTheRightIsToldSo) {
    const std::string folder = options().folder;
    const std::string name = net.listening();
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        int code = 3;
        if (::setgid(65534) == 0 && ::setuid(65534) == 0) {
            try {
                CaptureOptions o;
                o.interface = name;
                o.folder = "/tmp/tavna-noright-" + std::to_string(::getpid());
                LiveCapture capture(o, {});
                code = 1;
            } catch (const CaptureError& e) {
                code = e.noPermission() ? 0 : 2;
            }
        }
        ::_exit(code);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << "1: captured anyway, 2: another error, 3: no user";
}

} // namespace

namespace {

TEST_F(LiveCaptureTest, TheInspectorReportsWhatItCapturedAsItWouldTheFileItWrote) {
    if (std::getenv("TAVNA_INSPECT") == nullptr)
        GTEST_SKIP() << "the inspector is not built in this set of layers";
    const std::string sent = TavTest::generated("inspected", {"--sv", "1", "--goose", "1"});
    const std::string inspector = TavTest::toolPath("TAVNA_INSPECT");
    const std::string written = TavTest::tempDir() + "/inspected-live.pcapng";
    std::string live;
    std::string liveErrors;
    int code = -1;
    std::thread capturing([&] {
        code = TavTest::runCommand({inspector, "--interface", net.listening(), "--seconds", "2",
                                    "--write", written, "--json"},
                                   live, &liveErrors);
    });
    // The inspector opens the interface well within this.
    std::this_thread::sleep_for(std::chrono::milliseconds(700));
    net.replay(sent);
    capturing.join();
    ASSERT_EQ(code, 0) << liveErrors;
    EXPECT_EQ(streamCounts(written), streamCounts(sent));
    std::string fromFile;
    ASSERT_EQ(TavTest::runCommand({inspector, "--json", written}, fromFile), 0);
    EXPECT_EQ(live, fromFile);

    std::string out;
    std::string errors;
    EXPECT_EQ(TavTest::runCommand({inspector, "--interface", "tvnosuch0", "--seconds", "1"}, out,
                                  &errors),
              1);
    EXPECT_NE(errors.find("tvnosuch0"), std::string::npos) << errors;
}

} // namespace
