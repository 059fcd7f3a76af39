#include "model/LiveSession.h"

#include <algorithm>
#include <utility>

namespace TavNA {

LiveSession::LiveSession(TavCapture::CaptureOptions options, Wake wake, Failed failed)
    : interface_(options.interface), wake_(std::move(wake)) {
    capture_ = std::make_unique<TavCapture::LiveCapture>(
        std::move(options),
        TavCapture::LiveCapture::Listener{
            [this](TavCapture::SegmentBatch batch) { _handOver(std::move(batch)); },
            std::move(failed)});
}

// The capture thread ends before the queue it fills goes.
LiveSession::~LiveSession() {
    capture_->stop();
}

LiveSession::Pending LiveSession::take() {
    std::lock_guard lock(mutex_);
    return std::exchange(pending_, {});
}

void LiveSession::_handOver(TavCapture::SegmentBatch batch) {
    {
        std::lock_guard lock(mutex_);
        // A segment retired before it was read needs no reading: only its
        // file has to go.
        for (const std::string& retired : batch.retired)
            std::erase(pending_.closed, retired);
        pending_.retired.insert(pending_.retired.end(), batch.retired.begin(), batch.retired.end());
        pending_.closed.push_back(std::move(batch.closed));
    }
    if (wake_)
        wake_();
}

} // namespace TavNA
