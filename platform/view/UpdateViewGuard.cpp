#include "platform/view/UpdateViewGuard.h"

#include "platform/common/Log.h"

#include <chrono>
#include <deque>
#include <exception>
#include <glib.h>
#include <mutex>

namespace Tav {

namespace {

// How long one dispatch may run tasks before it lets the loop draw and read input.
constexpr auto sliceBudget = std::chrono::milliseconds(5);

struct TaskQueue {
    std::mutex mutex;
    std::deque<std::function<void()>> tasks;
    // Idle sources attached and not yet dispatched.
    int sources = 0;
};

// Never destroyed: a worker may still post while static objects are torn down.
TaskQueue& queue() {
    static auto* q = new TaskQueue;
    return *q;
}

gboolean runSlice(gpointer);

void attachSourceLocked(TaskQueue& q) {
    ++q.sources;
    g_idle_add_full(G_PRIORITY_DEFAULT_IDLE, runSlice, nullptr, nullptr);
}

void runGuarded(const std::function<void()>& task) {
    try {
        if (task)
            task();
    } catch (const std::exception& e) {
        TavLog::Log::writeError(std::string("Interface task failed: ") + e.what());
    } catch (...) {
        TavLog::Log::writeError("Interface task failed with an unknown exception");
    }
}

// Runs queued tasks, front first, for one time slice. While tasks remain, a
// successor source stays attached before each task starts: a task that spins
// a nested loop (a modal dialog) lets the successor carry on with the tasks
// behind it, so they still start in posting order and none waits for the
// dialog to close.
gboolean runSlice(gpointer) {
    TaskQueue& q = queue();
    {
        std::lock_guard<std::mutex> lock(q.mutex);
        --q.sources;
    }
    const auto deadline = std::chrono::steady_clock::now() + sliceBudget;
    for (;;) {
        std::function<void()> task;
        {
            std::lock_guard<std::mutex> lock(q.mutex);
            if (q.tasks.empty())
                return G_SOURCE_REMOVE;
            task = std::move(q.tasks.front());
            q.tasks.pop_front();
            if (!q.tasks.empty() && q.sources == 0)
                attachSourceLocked(q);
        }
        runGuarded(task);
        if (std::chrono::steady_clock::now() >= deadline)
            return G_SOURCE_REMOVE;
    }
}

} // namespace

void beginUpdateView(const std::function<void()>& task) {
    TaskQueue& q = queue();
    std::lock_guard<std::mutex> lock(q.mutex);
    q.tasks.push_back(task);
    if (q.sources == 0)
        attachSourceLocked(q);
}

} // namespace Tav
