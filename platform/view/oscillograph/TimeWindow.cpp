#include "platform/view/oscillograph/TimeWindow.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace TavView {

void TimeWindow::setDuration(double duration) {
    if (!std::isfinite(duration) || duration < 0.0)
        duration = 0.0;
    const bool wasWhole = width() <= 0.0 || (from_ <= 0.0 && to_ >= duration_);
    duration_ = duration;
    if (wasWhole)
        showAll();
    else
        setRange(from_, to_);
}

void TimeWindow::setRange(double from, double to) {
    if (!std::isfinite(from) || !std::isfinite(to))
        return;
    if (to < from)
        std::swap(from, to);
    const double width = std::clamp(to - from, std::min(MinWidth, duration_), duration_);
    from_ = std::clamp(from, 0.0, duration_ - width);
    to_ = from_ + width;
}

void TimeWindow::zoomAround(double anchor, double factor) {
    if (!(factor > 0.0) || width() <= 0.0)
        return;
    const double share = std::clamp((anchor - from_) / width(), 0.0, 1.0);
    const double clamped = std::clamp(width() * factor, std::min(MinWidth, duration_), duration_);
    const double from = anchor - share * clamped;
    setRange(from, from + clamped);
}

void TimeWindow::panBy(double seconds) {
    setRange(from_ + seconds, to_ + seconds);
}

void TimeWindow::showAll() {
    from_ = 0.0;
    to_ = duration_;
}

} // namespace TavView
