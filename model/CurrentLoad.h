#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <sigc++/signal.h>
#include <thread>

namespace TavNA {

// A load is one parse of one file, numbered from 1. Everything the parse
// worker hands to the interface belongs to the load that was current when it
// was handed over, and does nothing if another load has begun since, or the
// model was reset. This is the one rule that keeps late work of an earlier
// parse away from what a later one shows.
//
// From a load's begin until it settles, the worker writes the database and at
// its end replaces the stream tree: nothing on the interface may read either
// then. Views that point into the tree retire on signalBegun and come back on
// signalSettled.
class CurrentLoad {
public:
    using Number = std::uint64_t;
    // Lets a posting owner's work be dropped once the owner is gone.
    using Owner = std::weak_ptr<void>;
    using Task = std::function<void()>;
    using Poster = std::function<void(Task)>;

    // Made on the interface thread, which it remembers.
    CurrentLoad();

    // How work reaches the interface thread. Without one (a model with no
    // window) posted work runs where it is posted.
    void setPoster(Poster poster);

    // Interface thread: a new load becomes current; work of earlier ones is
    // stale from now on.
    Number begin();
    // Interface thread: no load is current any more (a reset).
    void retire();
    // Worker, as its last act: the load settles on the interface thread,
    // unless another has begun by then.
    void settle();

    Number number() const { return current.load(); }
    // True from begin until the load has settled or was retired.
    bool isRunning() const { return running; }
    bool isInterfaceThread() const { return std::this_thread::get_id() == interfaceThread; }

    // Work for the interface thread on behalf of the current load: run at once
    // when already there, else posted and run only if the load is still the
    // current one and the owner still lives.
    void deliver(Owner owner, Task task);
    // Always posted, with the same rule.
    void post(Owner owner, Task task);
    // Posted for a source that outlives loads, such as a live capture: run
    // whichever load is then current, as long as the owner lives.
    void postOwned(Owner owner, Task task);

    sigc::signal<void()> signalBegun;
    sigc::signal<void()> signalSettled;
    // Interface thread, on a reset: what the stopped load posted is dropped,
    // so whatever waited for its end must answer this instead.
    sigc::signal<void()> signalRetired;

private:
    void _post(std::optional<Owner> owner, Task task);

    // Work queued for the interface may outlive the model that queued it.
    std::shared_ptr<void> self;
    std::atomic<Number> current{0};
    bool running = false;
    std::thread::id interfaceThread;
    Poster poster;
};

} // namespace TavNA
