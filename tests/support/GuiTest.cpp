#include "tests/support/GuiTest.h"

#include <glibmm/main.h>

namespace TavTest {

void pumpPending() {
    auto ctx = Glib::MainContext::get_default();
    while (ctx->pending())
        ctx->iteration(false);
}

bool pumpUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
    auto ctx = Glib::MainContext::get_default();
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline)
            return done();
        if (!ctx->iteration(false))
            g_usleep(1000);
    }
    return true;
}

void pumpFor(std::chrono::milliseconds duration) {
    pumpUntil([] { return false; }, duration);
}

} // namespace TavTest
