#include "job/BackgroundJob.h"

#include "job/EveryCore.h"

namespace TavJob {

void BackgroundJob::stop() {
    cancel_.store(true);
    // Whatever the stopped work posted but has not run yet is stale now.
    current_->store(0);
    if (thread_.joinable())
        thread_.join();
    busy_.store(false);
}

void BackgroundJob::lowerPriority() {
    lowerThreadPriority();
}

void BackgroundJob::handOver(std::uint64_t number, Task task) {
    std::weak_ptr<std::atomic<std::uint64_t>> current = current_;
    post_([current, number, task = std::move(task)] {
        const auto live = current.lock();
        if (live && live->load() == number)
            task();
    });
}

} // namespace TavJob
