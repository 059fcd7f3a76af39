#pragma once

#include "health/StreamChecks.h"
#include "health/StreamHealth.h"
#include "platform/parser/StreamRecords.h"
#include "stream/StreamClocks.h"

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace TavHealth {

// A stream of either kind, owned by the capture database.
struct HealthTarget {
    const TavIec61850Parser::Sv* sv = nullptr;
    const TavIec61850Parser::Goose* goose = nullptr;
    // The database's clocks, kept alive while the check runs.
    std::shared_ptr<TavStream::StreamClocks> clocks;
    // What the configuration says the SV stream sends, where it says.
    SvNominal nominal;
};

// Checks streams one after another on a thread of its own. It reads the
// database without a lock: its owner stops it before anything changes the
// database.
class HealthWorker {
public:
    // Called on the worker thread after each stream: its place in the list
    // given to start, and what was found, or why the frames could not be read
    // (a file's failure by its reason alone, as the parser words it).
    using Deliver = std::function<void(std::size_t, std::shared_ptr<const StreamHealth>,
                                       const std::string& error)>;

    HealthWorker() = default;
    HealthWorker(const HealthWorker&) = delete;
    HealthWorker& operator=(const HealthWorker&) = delete;
    ~HealthWorker() { stop(); }

    // Stops what runs, then checks `targets` in order.
    void start(std::vector<HealthTarget> targets, Deliver deliver);
    // Cancels the current stream and joins; nothing is delivered after it returns.
    void stop();
    bool running() const { return thread_.joinable(); }

private:
    std::thread thread_;
    std::atomic<bool> cancel_{false};
};

} // namespace TavHealth
