#pragma once

#include <cstddef>
#include <functional>

namespace TavIec61850Parser {

// Turns bytes read into at most about 200 calls of the progress callback, so
// that a listener redrawing on each call is not flooded on a big file.
class ProgressReporter {
public:
    static constexpr std::size_t kSteps = 200;

    ProgressReporter(std::function<void(double)> callback, std::size_t total)
        : callback_(std::move(callback)), total_(total), step_(total / kSteps + 1), next_(step_) {}

    void at(std::size_t position) {
        if (position < next_ || !callback_)
            return;
        next_ = (position / step_ + 1) * step_;
        callback_(static_cast<double>(position) / static_cast<double>(total_));
    }
    void done() {
        if (callback_)
            callback_(1.0);
    }

private:
    std::function<void(double)> callback_;
    std::size_t total_;
    std::size_t step_;
    std::size_t next_;
};

} // namespace TavIec61850Parser
