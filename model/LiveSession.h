#pragma once

#include "capture/LiveCapture.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace TavNA {

// A capture the model owns in ETHERNET mode, and the segments it has handed
// over that the model has yet to read into its database or let go of. The
// session outlives its capture thread: what it kept stays readable until the
// model is reset.
class LiveSession {
public:
    // What waits for the model: segments to read, and segments the ring let
    // go whose frames must leave the database before their files go.
    struct Pending {
        std::vector<std::string> closed;
        std::vector<std::string> retired;
        bool empty() const { return closed.empty() && retired.empty(); }
    };
    // Capture thread: something waits, or the interface failed.
    using Wake = std::function<void()>;
    using Failed = std::function<void(const std::string& reason)>;

    // Starts capturing; throws TavCapture::CaptureError.
    LiveSession(TavCapture::CaptureOptions options, Wake wake, Failed failed);
    ~LiveSession();
    LiveSession(const LiveSession&) = delete;
    LiveSession& operator=(const LiveSession&) = delete;

    void stop() { capture_->stop(); }
    bool running() const { return capture_->running(); }
    TavCapture::CaptureCounts counts() const { return capture_->counts(); }
    void save(const std::string& path) const { capture_->save(path); }
    std::vector<std::string> segments() const { return capture_->segments(); }
    const std::string& interfaceName() const { return interface_; }

    Pending take();

private:
    void _handOver(TavCapture::SegmentBatch batch);

    std::string interface_;
    Wake wake_;
    std::mutex mutex_;
    Pending pending_;
    std::unique_ptr<TavCapture::LiveCapture> capture_;
};

} // namespace TavNA
