#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace Tav {

// Queues a task to run once on the GTK main loop. Callable from any thread and
// before the loop runs; never blocks on the interface thread. Tasks start in
// the order they were posted.
void beginUpdateView(const std::function<void()>& task);

// Posting work that must not outlive the object that posted it.
class UpdateViewGuard {
public:
    // Kept by its owner in a std::shared_ptr; queued tasks hold a weak copy and
    // are dropped once the owner and its token are gone.
    class LifetimeToken {};

    static std::shared_ptr<LifetimeToken> makeToken() { return std::make_shared<LifetimeToken>(); }

    // Runs `task` on the interface thread only if `token` still lives then.
    // Owners live on the interface thread, so a live token means a live owner
    // for the task's whole run.
    template <typename Task>
    static void safeBeginUpdateView(std::weak_ptr<LifetimeToken> token, Task&& task) {
        beginUpdateView([token = std::move(token),
                         task = std::decay_t<Task>(std::forward<Task>(task))]() mutable {
            if (auto alive = token.lock())
                task();
        });
    }
};

} // namespace Tav
