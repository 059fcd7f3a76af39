#include "tools/session/UiCall.h"

#include <glib.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

namespace TavSession {

namespace {

struct Call {
    const std::function<void()>* job;
    std::promise<void> done;
};

gboolean runCall(gpointer data) {
    auto* call = static_cast<Call*>(data);
    (*call->job)();
    call->done.set_value();
    return G_SOURCE_REMOVE;
}

} // namespace

void runOnUi(const std::function<void()>& job) {
    Call call{&job, {}};
    auto done = call.done.get_future();
    g_main_context_invoke(nullptr, runCall, &call);
    if (done.wait_for(std::chrono::minutes(1)) != std::future_status::ready) {
        std::fprintf(stderr, "session: the main loop has not answered for a minute\n");
        std::abort();
    }
}

void waitFor(const std::string& what, const std::function<bool()>& done,
             std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline)
            throw SessionError("timed out waiting for " + what);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

void waitUntil(const std::string& what, const std::function<bool()>& done,
               std::chrono::milliseconds limit) {
    waitFor(
        what, [&] { return onUi(done); }, limit);
}

} // namespace TavSession
