#include "job/EveryCore.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace TavJob {

void lowerThreadPriority() {
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::syscall(SYS_gettid)), 10);
}

void forEachOnEveryCore(std::size_t count, const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next{0};
    const auto run = [&] {
        for (std::size_t i = next++; i < count; i = next++)
            work(i);
    };
    const std::size_t helpers = std::min<std::size_t>(
        std::max(1u, std::thread::hardware_concurrency()) - 1, count > 1 ? count - 1 : 0);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < helpers; ++t)
        threads.emplace_back([&] {
            lowerThreadPriority();
            run();
        });
    run();
    for (auto& t : threads)
        t.join();
}

} // namespace TavJob
