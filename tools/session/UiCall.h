#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace TavSession {

// A step of a session that did not come true; its message says which.
class SessionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Runs `job` on the GTK main thread and returns when it has run. A main loop
// that does not answer within a minute is a hung application: the process
// aborts with a message, since nothing else could end the wait.
void runOnUi(const std::function<void()>& job);

// The same, returning the job's result. Widgets are touched only inside.
template <typename F> auto onUi(F&& job) -> std::invoke_result_t<F&> {
    using Result = std::invoke_result_t<F&>;
    std::packaged_task<Result()> task(std::forward<F>(job));
    auto result = task.get_future();
    runOnUi([&task] { task(); });
    return result.get();
}

// Asks `done` every few milliseconds, on the calling thread, until it holds;
// throws SessionError naming `what` when `limit` passes first. `done` may ask
// the main thread itself.
void waitFor(const std::string& what, const std::function<bool()>& done,
             std::chrono::milliseconds limit = std::chrono::seconds(20));

// The same with `done` asked on the main thread.
void waitUntil(const std::string& what, const std::function<bool()>& done,
               std::chrono::milliseconds limit = std::chrono::seconds(20));

} // namespace TavSession
