#include "platform/parser/GuardedCopy.h"

#include <atomic>
#include <csetjmp>
#include <csignal>
#include <cstring>
#include <mutex>

namespace TavIec61850Parser {

namespace {

// Where a fault inside a copy on this thread lands; null outside copies. It is
// set before the first fault can come, so the handler never makes the thread's
// storage.
thread_local sigjmp_buf* landing = nullptr;
struct sigaction previous {};

// A fault outside a copy is none of ours: it goes to whoever handled it before,
// or ends the process as it always would have.
void onBusError(int signal, siginfo_t* info, void* context) {
    if (landing != nullptr)
        siglongjmp(*landing, 1);
    if ((previous.sa_flags & SA_SIGINFO) != 0 && previous.sa_sigaction != nullptr) {
        previous.sa_sigaction(signal, info, context);
        return;
    }
    if (previous.sa_handler != SIG_DFL && previous.sa_handler != SIG_IGN) {
        previous.sa_handler(signal);
        return;
    }
    ::signal(SIGBUS, SIG_DFL);
    ::raise(SIGBUS);
}

// The handler runs unblocked (SA_NODEFER), so jumping out of it leaves the
// thread's signal mask as it was, and the jump need not save and restore it.
void install() {
    struct sigaction action {};
    action.sa_sigaction = onBusError;
    action.sa_flags = SA_SIGINFO | SA_NODEFER | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGBUS, &action, &previous);
}

} // namespace

bool guardedCopy(void* to, const void* from, std::size_t n) {
    static std::once_flag installed;
    std::call_once(installed, install);
    sigjmp_buf here;
    if (sigsetjmp(here, 0) != 0) {
        landing = nullptr;
        return false;
    }
    landing = &here;
    std::atomic_signal_fence(std::memory_order_seq_cst);
    std::memcpy(to, from, n);
    std::atomic_signal_fence(std::memory_order_seq_cst);
    landing = nullptr;
    return true;
}

} // namespace TavIec61850Parser
