#pragma once

namespace TavView {

// The visible part of a recording: a window [from, to] in seconds that never
// leaves [0, duration] and never shrinks below a microsecond (unless the whole
// recording is shorter). Knows nothing about pixels.
class TimeWindow {
public:
    static constexpr double MinWidth = 1e-6;

    double from() const { return from_; }
    double to() const { return to_; }
    double width() const { return to_ - from_; }
    double duration() const { return duration_; }
    bool scrollable() const { return duration_ > 0.0; }

    // A window that showed the whole recording keeps showing all of it, so
    // that a recording growing file by file stays in view.
    void setDuration(double duration);
    // Keeps the requested width where possible and shifts the window inside.
    void setRange(double from, double to);
    // factor < 1 zooms in; the time under `anchor` stays where it is.
    void zoomAround(double anchor, double factor);
    void panBy(double seconds);
    void showAll();

private:
    double duration_ = 0.0;
    double from_ = 0.0;
    double to_ = 0.0;
};

} // namespace TavView
