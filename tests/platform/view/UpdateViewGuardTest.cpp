#include "platform/view/UpdateViewGuard.h"
#include "tests/support/GuiTest.h"

#include <gtest/gtest.h>

#include <glibmm/main.h>
#include <mutex>
#include <thread>
#include <vector>

namespace {

// What ran, where, in which order; filled on the interface thread only, but
// read by the test after the loop has run them.
struct Journal {
    std::vector<int> order;
    bool offThread = false;
    std::thread::id mainThread = std::this_thread::get_id();

    std::function<void()> entry(int n) {
        return [this, n] {
            if (std::this_thread::get_id() != mainThread)
                offThread = true;
            order.push_back(n);
        };
    }
};

std::vector<int> iota(int from, int to) {
    std::vector<int> v;
    for (int i = from; i < to; ++i)
        v.push_back(i);
    return v;
}

TEST(UpdateViewGuard, TasksFromWorkersRunOnTheInterfaceThreadInPostingOrder) {
    Journal journal;
    constexpr int count = 2000;
    // Posted before the loop runs at all, and with no loop to block on.
    std::thread worker([&] {
        for (int i = 0; i < count; ++i)
            Tav::beginUpdateView(journal.entry(i));
    });
    worker.join();
    EXPECT_TRUE(journal.order.empty()) << "posting must not run anything";
    ASSERT_TRUE(TavTest::pumpUntil([&] { return journal.order.size() == count; }));
    EXPECT_EQ(journal.order, iota(0, count));
    EXPECT_FALSE(journal.offThread);
}

TEST(UpdateViewGuard, TasksFromSeveralThreadsEachKeepTheirOrder) {
    constexpr int threads = 4;
    constexpr int perThread = 500;
    Journal journal;
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t)
        workers.emplace_back([&, t] {
            for (int i = 0; i < perThread; ++i)
                Tav::beginUpdateView(journal.entry(t * perThread + i));
        });
    // The loop drains while the workers are still posting.
    ASSERT_TRUE(TavTest::pumpUntil(
        [&] { return journal.order.size() == static_cast<size_t>(threads * perThread); }));
    for (auto& w : workers)
        w.join();
    std::vector<std::vector<int>> perWorker(threads);
    for (int n : journal.order)
        perWorker[n / perThread].push_back(n);
    for (int t = 0; t < threads; ++t)
        EXPECT_EQ(perWorker[t], iota(t * perThread, (t + 1) * perThread));
    EXPECT_FALSE(journal.offThread);
}

TEST(UpdateViewGuard, ATaskPostedWhileDrainingRunsAfterThoseAlreadyQueued) {
    Journal journal;
    Tav::beginUpdateView([&] {
        journal.order.push_back(0);
        Tav::beginUpdateView(journal.entry(3));
    });
    Tav::beginUpdateView(journal.entry(1));
    Tav::beginUpdateView(journal.entry(2));
    ASSERT_TRUE(TavTest::pumpUntil([&] { return journal.order.size() == 4; }));
    EXPECT_EQ(journal.order, iota(0, 4));
}

TEST(UpdateViewGuard, AModalTaskDoesNotHoldBackTheTasksBehindIt) {
    // Stands in for a message box: a nested loop that only a later task ends.
    Journal journal;
    auto nested = Glib::MainLoop::create();
    Tav::beginUpdateView([&] {
        journal.order.push_back(0);
        nested->run();
        journal.order.push_back(99);
    });
    Tav::beginUpdateView(journal.entry(1));
    Tav::beginUpdateView([&] {
        journal.order.push_back(2);
        nested->quit();
    });
    ASSERT_TRUE(TavTest::pumpUntil([&] { return journal.order.size() == 4; }));
    EXPECT_EQ(journal.order, (std::vector<int>{0, 1, 2, 99}));
}

TEST(UpdateViewGuard, AFailingTaskDoesNotStopTheQueue) {
    Journal journal;
    Tav::beginUpdateView([] { throw std::runtime_error("broken task"); });
    Tav::beginUpdateView(journal.entry(1));
    ASSERT_TRUE(TavTest::pumpUntil([&] { return journal.order.size() == 1; }));
}

TEST(UpdateViewGuard, TasksOfADeadTokenDoNothing) {
    Journal journal;
    auto alive = Tav::UpdateViewGuard::makeToken();
    auto dying = Tav::UpdateViewGuard::makeToken();
    std::thread worker([&] {
        for (int i = 0; i < 100; ++i) {
            Tav::UpdateViewGuard::safeBeginUpdateView(alive, journal.entry(i));
            Tav::UpdateViewGuard::safeBeginUpdateView(dying, journal.entry(1000 + i));
        }
    });
    worker.join();
    dying.reset();
    // A token that dies while its tasks are being run stops the rest of them.
    Tav::UpdateViewGuard::safeBeginUpdateView(alive, [&] { alive.reset(); });
    Tav::UpdateViewGuard::safeBeginUpdateView(alive, journal.entry(-1));
    bool drained = false;
    Tav::beginUpdateView([&] { drained = true; });
    ASSERT_TRUE(TavTest::pumpUntil([&] { return drained; }));
    EXPECT_EQ(journal.order, iota(0, 100));
}

} // namespace
