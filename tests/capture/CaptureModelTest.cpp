#include "model/TavNaModel.h"
#include "tests/capture/VethPair.h"
#include "tests/support/TestCaptures.h"

#include <chrono>
#include <deque>
#include <filesystem>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>

using namespace std::chrono_literals;
using TavCaptureTest::streamCounts;
using TavNA::CurrentLoad;
using TavNA::TavNaModel;

namespace {

// The interface thread's queue, pumped by the test thread, which made the
// model and so is its interface thread.
class InterfaceQueue {
public:
    void post(CurrentLoad::Task task) {
        std::lock_guard lock(mutex);
        tasks.push_back(std::move(task));
    }
    // Runs posted work until `done` holds; false on the timeout.
    template <typename Done> bool pumpUntil(Done done, std::chrono::milliseconds timeout) {
        const auto end = std::chrono::steady_clock::now() + timeout;
        while (!done()) {
            if (std::chrono::steady_clock::now() > end)
                return false;
            if (!runOne())
                std::this_thread::sleep_for(5ms);
        }
        return true;
    }

private:
    bool runOne() {
        CurrentLoad::Task task;
        {
            std::lock_guard lock(mutex);
            if (tasks.empty())
                return false;
            task = std::move(tasks.front());
            tasks.pop_front();
        }
        task();
        return true;
    }

    std::mutex mutex;
    std::deque<CurrentLoad::Task> tasks;
};

class CaptureModelTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!net.skipped().empty())
            GTEST_SKIP() << net.skipped();
        model.getLoad().setPoster([this](CurrentLoad::Task task) { queue.post(std::move(task)); });
        model.setEthernetMode();
    }
    // The database may be read: no load runs and nothing waits to be read.
    bool idle() { return !model.getLoad().isRunning(); }
    std::map<std::string, unsigned long long> counts() { return streamCounts(model.getDb()); }

    TavCaptureTest::VethPair net;
    InterfaceQueue queue;
    TavNaModel model;
};

TEST_F(CaptureModelTest, StreamsAppearWhileCapturingAndStopKeepsEveryFrame) {
    const std::string sent = TavTest::generated(
        "live", {"--format", "pcapng-ns", "--sv", "3", "--goose", "2", "--duration", "2"});
    const auto expected = streamCounts(sent);
    model.startCapture(net.listening());
    ASSERT_TRUE(model.isCapturing());

    const auto sendingFrom = std::chrono::steady_clock::now();
    std::thread sender([&] { net.replay(sent, false); });
    const bool appeared = queue.pumpUntil([&] { return idle() && counts().size() == 5; }, 5s);
    const auto appearedAfter = std::chrono::steady_clock::now() - sendingFrom;
    const bool sendingStill = model.captureCounts().captured < 8000;
    sender.join();
    ASSERT_TRUE(appeared);
    EXPECT_LT(appearedAfter, 1500ms);
    EXPECT_TRUE(sendingStill) << "the streams appeared only after the sending ended";
    EXPECT_EQ(model.getPackageListModel().getSvProto().getGroups().size(), 3u);

    std::this_thread::sleep_for(300ms);
    model.stopCapture();
    EXPECT_FALSE(model.isCapturing());
    ASSERT_TRUE(queue.pumpUntil([&] { return idle() && counts() == expected; }, 5s))
        << "captured " << model.captureCounts().captured;
    EXPECT_EQ(model.captureCounts().dropped, 0u);

    const std::string saved = TavTest::tempDir() + "/kept.pcapng";
    model.saveCapture(saved);
    EXPECT_EQ(streamCounts(saved), expected);
}

TEST_F(CaptureModelTest, AModeSwitchEndsTheCaptureAndDropsItsSegments) {
    model.startCapture(net.listening());
    net.replay(TavTest::generated("switch", {"--sv", "1", "--duration", "0.2"}));
    ASSERT_TRUE(queue.pumpUntil([&] { return idle() && !counts().empty(); }, 5s));
    const auto segments =
        std::filesystem::path(model.getDb().svProto.svs.begin()->files.begin()->path);

    model.setPcapMode();
    EXPECT_FALSE(model.isCapturing());
    EXPECT_FALSE(model.hasCapture());
    EXPECT_TRUE(counts().empty());
    EXPECT_FALSE(std::filesystem::exists(segments.parent_path()));
}

TEST_F(CaptureModelTest, AnInterfaceThatGoesAwayStopsTheCaptureAndSaysWhy) {
    std::string reason;
    model.signalCaptureStopped.connect([&](const std::string& why) { reason = why; });
    model.startCapture(net.listening());
    net.replay(TavTest::generated("gone", {"--sv", "1", "--duration", "0.2"}));
    ASSERT_TRUE(queue.pumpUntil([&] { return idle() && !counts().empty(); }, 5s));
    const auto before = counts();

    ASSERT_EQ(net.ip("link del " + net.listening()), 0);
    ASSERT_TRUE(queue.pumpUntil([&] { return !reason.empty(); }, 5s));
    EXPECT_FALSE(model.isCapturing());
    EXPECT_TRUE(model.hasCapture());
    ASSERT_TRUE(queue.pumpUntil([&] { return idle(); }, 5s));
    EXPECT_EQ(counts(), before);
}

} // namespace
