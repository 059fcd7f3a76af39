// A job's result or progress reaches the interface only while nothing newer
// started, the job was not stopped, and the job still exists: the interface
// thread is stood in for by a queue that runs what was posted when asked.
#include "job/BackgroundJob.h"

#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using TavJob::BackgroundJob;

class PostedTasks {
public:
    BackgroundJob::Post poster() {
        return [this](BackgroundJob::Task task) {
            std::lock_guard<std::mutex> lock(mutex_);
            tasks_.push_back(std::move(task));
        };
    }
    std::size_t waiting() {
        std::lock_guard<std::mutex> lock(mutex_);
        return tasks_.size();
    }
    void waitFor(std::size_t count) {
        for (int i = 0; i < 5000 && waiting() < count; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        ASSERT_GE(waiting(), count);
    }
    void runAll() {
        std::vector<BackgroundJob::Task> now;
        {
            std::lock_guard<std::mutex> lock(mutex_);
            now.swap(tasks_);
        }
        for (auto& task : now)
            task();
    }

private:
    std::mutex mutex_;
    std::vector<BackgroundJob::Task> tasks_;
};

TEST(BackgroundJob, OnlyTheNewestUnstoppedWorkOfALiveJobIsHandedOver) {
    PostedTasks posted;
    std::vector<int> shown;
    const auto show = [&](int v) { shown.push_back(v); };
    {
        BackgroundJob job(posted.poster());
        // The first finishes and posts, but the interface is busy until the
        // second has started: the first's result is stale by then.
        job.start<int>([](const std::atomic<bool>&, const auto&) { return 1; },
                       std::function<void(int)>(show));
        posted.waitFor(1);
        job.start<int>(
            [](const std::atomic<bool>&, const BackgroundJob::Progress& progress) {
                progress(0.5);
                return 2;
            },
            std::function<void(int)>(show),
            [&](double share) { shown.push_back(int(share * 10)); });
        posted.waitFor(3);
        posted.runAll();
        EXPECT_EQ(shown, (std::vector<int>{5, 2}));

        // Stopped: work that waits for its cancel ends, and nothing of it shows.
        shown.clear();
        job.start<int>(
            [](const std::atomic<bool>& cancel, const BackgroundJob::Progress& progress) {
                progress(0.1);
                while (!cancel.load())
                    std::this_thread::yield();
                return 3;
            },
            std::function<void(int)>(show), [&](double) { shown.push_back(-1); });
        posted.waitFor(1);
        job.stop();
        EXPECT_FALSE(job.running());
        posted.runAll();
        EXPECT_TRUE(shown.empty());

        // A user's cancel: the work ends early and what it says of that shows.
        job.start<int>(
            [](const std::atomic<bool>& cancel, const auto&) {
                while (!cancel.load())
                    std::this_thread::yield();
                return 6;
            },
            std::function<void(int)>(show));
        EXPECT_TRUE(job.running());
        job.cancel();
        posted.waitFor(1);
        posted.runAll();
        EXPECT_EQ(shown, (std::vector<int>{6}));
        EXPECT_FALSE(job.running());
        shown.clear();

        // Done, posted, and the job destroyed before the interface runs it.
        job.start<int>([](const std::atomic<bool>&, const auto&) { return 4; },
                       std::function<void(int)>(show));
        posted.waitFor(1);
    }
    posted.runAll();
    EXPECT_TRUE(shown.empty());
}

} // namespace
