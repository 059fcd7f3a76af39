#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <thread>
#include <utility>

namespace TavJob {

// One piece of work at a time on a thread of its own. Starting another, or
// stopping, cancels and joins the one that runs; its result and progress are
// then never handed over. A cancel alone asks the work to end early and still
// hands over what it returns (a user's cancel that the window reports). What is handed over goes
// through `post`, which the owner makes from the load's guard, so that a result of an earlier load
// or of a destroyed owner is dropped there too.
class BackgroundJob {
public:
    using Task = std::function<void()>;
    using Post = std::function<void(Task)>;
    using Progress = std::function<void(double)>;

    explicit BackgroundJob(Post post) : post_(std::move(post)) {}
    BackgroundJob(const BackgroundJob&) = delete;
    BackgroundJob& operator=(const BackgroundJob&) = delete;
    ~BackgroundJob() { stop(); }

    // `work(cancel, progress)` runs on the job's thread; `done(result)` and
    // `onProgress(share)` on the interface thread.
    template <typename Result, typename Work>
    void start(Work work, std::function<void(Result)> done, Progress onProgress = {}) {
        stop();
        const std::uint64_t number = ++generation_;
        current_->store(number);
        cancel_.store(false);
        busy_.store(true);
        thread_ = std::thread([this, number, work = std::move(work), done = std::move(done),
                               onProgress = std::move(onProgress)]() mutable {
            lowerPriority();
            const Progress progress = [this, number, onProgress](double share) {
                if (onProgress)
                    handOver(number, [onProgress, share] { onProgress(share); });
            };
            Result result = work(cancel_, progress);
            handOver(number, [this, done = std::move(done), result = std::move(result)]() mutable {
                busy_.store(false);
                done(std::move(result));
            });
        });
    }

    // Cancels and joins; nothing of the stopped work is handed over after this.
    void stop();
    // Asks the work to end early; what it returns is still handed over.
    void cancel() { cancel_.store(true); }
    // From start until the result is handed over or the work stopped.
    bool running() const { return busy_.load(); }

private:
    // The interface thread, on a small machine, must keep a core.
    static void lowerPriority();
    void handOver(std::uint64_t number, Task task);

    Post post_;
    std::thread thread_;
    std::atomic<bool> cancel_{false};
    std::atomic<bool> busy_{false};
    // The work whose results may still be handed over, 0 for none; read by
    // posted tasks that may run after the job is gone.
    std::shared_ptr<std::atomic<std::uint64_t>> current_ =
        std::make_shared<std::atomic<std::uint64_t>>(0);
    std::uint64_t generation_ = 0;
};

} // namespace TavJob
